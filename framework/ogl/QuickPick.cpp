#include "framework/ogl/QuickPick.h"

#include <algorithm>
#include <cmath>

namespace Qor::Chart::Ogl {

namespace {

/// Viewports are rounded to pixels when they are set, and places to whole ones in them.
constexpr double Rounding = 2.0;

/// A box in the coordinates that the projection takes: its middle, and how far it reaches along each axis.
struct Reach {
    double middle[3];
    double extent[3];
};

Reach ReachOf(double const* p_m, Types::BoundingBox_Base<double> const& p_box) noexcept {
    auto const center = p_box.Center();
    auto const half = p_box.Extents() / 2;
    Reach reach{};
    for (int row = 0; row < 3; ++row) {
        reach.middle[row] = p_m[row] * center.x + p_m[4 + row] * center.y + p_m[8 + row] * center.z + p_m[12 + row];
        reach.extent[row] =
            std::fabs(p_m[row]) * half.x + std::fabs(p_m[4 + row]) * half.y + std::fabs(p_m[8 + row]) * half.z;
    }
    return reach;
}

/// Whether some of the box is where p_sign times a clip coordinate is at least p_sign times p_bound times w.
bool IsBeyond(double const* p_p, int p_row, double p_sign, double p_bound, Reach const& p_reach) noexcept {
    double farthest = p_sign * (p_p[12 + p_row] - p_bound * p_p[12 + 3]);
    for (int axis = 0; axis < 3; ++axis) {
        double const slope = p_sign * (p_p[4 * axis + p_row] - p_bound * p_p[4 * axis + 3]);
        farthest += slope * p_reach.middle[axis] + std::fabs(slope) * p_reach.extent[axis];
    }
    return !(farthest < 0);
}

} // namespace

bool QuickPick::MayHit(Types::Viewport<0> const& p_viewport, Types::Matrix4 const& p_projection,
    Types::Pos const& p_position, Types::Size const& p_tolerance, Types::Matrix4 const& p_modelView,
    Types::BoundingBox_Base<double> const& p_box) noexcept {
    double const* const m = p_modelView.Data();
    bool const isAffine = m[3] == 0 && m[7] == 0 && m[11] == 0 && m[15] == 1;
    if (!isAffine || !p_box.IsDefined() || p_viewport.IsEmpty())
        return true;
    Reach const reach = ReachOf(m, p_box);
    double const* const p = p_projection.Data();
    double const width = static_cast<double>(p_viewport.width) / 2;
    double const halfX = std::max(p_tolerance.width, 1) + Rounding;
    if (!IsBeyond(p, 0, 1, (p_position.x - halfX) / width - 1, reach) ||
        !IsBeyond(p, 0, -1, (p_position.x + halfX) / width - 1, reach))
        return false;
    double const height = static_cast<double>(p_viewport.height) / 2;
    double const halfY = std::max(p_tolerance.height, 1) + Rounding;
    return IsBeyond(p, 1, 1, (p_position.y - halfY) / height - 1, reach) &&
        IsBeyond(p, 1, -1, (p_position.y + halfY) / height - 1, reach);
}

} // namespace Qor::Chart::Ogl
