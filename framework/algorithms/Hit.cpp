#include "framework/algorithms/Hit.h"

#include "framework/types/Vector4.h"

#include <cmath>
#include <optional>

namespace Qor::Chart::Algorithms {

using Types::Matrix4;
using Vector3 = Types::Vector3_Base<double>;
using Vector4 = Types::Vector4_Base<double>;

namespace {

Vector3 Xyz(Vector4 const& p_vector) {
    return {p_vector.x, p_vector.y, p_vector.z};
}

/// From one point to another in homogeneous coordinates, up to a positive factor. The first must be finite; the second may
/// be infinitely far away.
Vector3 Towards(Vector4 const& p_from, Vector4 const& p_to) {
    Vector3 const across = Xyz(p_to) * p_from.w - Xyz(p_from) * p_to.w;
    return p_from.w * p_to.w < 0 ? -across : across;
}

} // namespace

bool Hit::IsHit(Types::Viewport<0> const& p_viewport, Types::Pos const& p_pos) {
    return p_viewport.Contains(p_pos);
}

bool Hit::Unproject(Types::Pos const& p_pos, Matrix4 const& p_modelView, Matrix4 const& p_projection,
    Types::Viewport<0> const& p_viewport, Types::Ray_Base<double>& p_ray) {
    p_ray = {};
    if (p_viewport.IsEmpty()) {
        return false;
    }
    // One by one: the product of a steep projection and a large model-view matrix loses digits.
    std::optional<Matrix4> const fromClip = p_projection.Inverse();
    std::optional<Matrix4> const fromEye = p_modelView.Inverse();
    if (!fromClip || !fromEye) {
        return false;
    }
    double const x = 2 * (p_pos.x - static_cast<double>(p_viewport.x)) / p_viewport.width - 1;
    double const y = 2 * (p_pos.y - static_cast<double>(p_viewport.y)) / p_viewport.height - 1;
    Vector4 const near = *fromClip * Vector4(x, y, -1, 1);
    Vector4 const far = *fromClip * Vector4(x, y, 1, 1);
    if (near.w == 0) {
        return false;
    }
    // The direction is taken in eye coordinates, where the near plane is close to the origin.
    Vector3 const towards = Types::Normalized(Towards(near, far));
    Vector4 const origin = *fromEye * Vector4(near.x / near.w, near.y / near.w, near.z / near.w, 1);
    Vector4 const direction = *fromEye * Vector4(towards.x, towards.y, towards.z, 0);
    if (origin.w == 0) {
        return false;
    }
    Types::Ray_Base<double> const ray(Xyz(origin) / origin.w, Types::Normalized(Xyz(direction)));
    if (!ray.IsDefined()) {
        return false;
    }
    p_ray = ray;
    return true;
}

} // namespace Qor::Chart::Algorithms
