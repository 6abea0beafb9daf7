#include "host/Camera.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Qor::Chart::Host {

namespace {

using Box = Camera::Box;
using Vector = Camera::Vector;

/// Part of the viewport that the box may fill.
constexpr double Filling = 0.94;
/// Half the opening angle of the perspective along the shorter side of the viewport, as `Agl::Perspective` has it.
double const HalfAngle = std::numbers::pi / 8;

double RadiusOf(Box const& p_box) {
    return Length(p_box.Extents()) / 2;
}

Box Usable(Box const& p_box) {
    if (p_box.IsDefined() && RadiusOf(p_box) > 0 && std::isfinite(RadiusOf(p_box)))
        return p_box;
    Box around;
    if (!p_box.IsDefined() || !std::isfinite(RadiusOf(p_box)))
        around.Add(Vector());
    else
        around.Add(p_box);
    around.Grow(0.5);
    return around;
}

struct HalfSize {
    double x;
    double y;
};

/// Half the sides of the view at the centre of the box, in radii of the sphere around it.
HalfSize HalfSizeOf(Types::Viewport<0> const& p_viewport) {
    if (p_viewport.IsEmpty())
        return {1, 1};
    double const shorter = std::min(p_viewport.width, p_viewport.height);
    return {static_cast<double>(p_viewport.width) / shorter, static_cast<double>(p_viewport.height) / shorter};
}

} // namespace

// Each corner must stay between the two sides of the view, which open with the distance from the eye. The nearest eye for
// which all do, and the pan that puts the picture in the middle, follow from the outermost corners on either side.
void Camera::Fit(Box const& p_box, Types::Viewport<0> const& p_viewport, std::span<Box const> p_parts) {
    _box = Usable(p_box);
    std::span<Box const> const parts = _box == p_box && !p_parts.empty() ? p_parts : std::span<Box const>(&_box, 1);
    HalfSize const half = HalfSizeOf(p_viewport);
    Types::Matrix4 const rotation = Rotation();
    bool const isPerspective = _mode == Render::ProjectionMode::Perspective;
    double const opening = isPerspective ? std::tan(HalfAngle) : 0.0;
    double const slopeX = opening * half.x * Filling;
    double const slopeY = opening * half.y * Filling;

    double left = -HUGE_VAL;
    double right = -HUGE_VAL;
    double down = -HUGE_VAL;
    double up = -HUGE_VAL;
    for (Box const& part : parts) {
        for (unsigned corner = 0; corner < 8; ++corner) {
            Vector const seen = (rotation * Types::Vector4_Base<double>(part.Corner(corner) - _box.Center(), 0)).XYZ();
            left = std::max(left, slopeX * seen.z - seen.x);
            right = std::max(right, slopeX * seen.z + seen.x);
            down = std::max(down, slopeY * seen.z - seen.y);
            up = std::max(up, slopeY * seen.z + seen.y);
        }
    }
    _panX = (right - left) / 2;
    _panY = (up - down) / 2;
    // The sides of the view, at the centre of the box, of an eye that sees the whole box.
    double const needed = std::max((left + right) / 2 / half.x, (down + up) / 2 / half.y) / Filling;
    double const offered = RadiusOf(_box) / (isPerspective ? std::cos(HalfAngle) : 1.0);
    _zoom = needed > 0 ? offered / needed : 1.0;
}

void Camera::Look(double p_azimuth, double p_elevation) {
    if (!std::isfinite(p_azimuth) || !std::isfinite(p_elevation))
        return;
    _azimuth = std::remainder(p_azimuth, 360.0);
    _elevation = std::clamp(p_elevation, -90.0, 90.0);
}

void Camera::Orbit(double p_azimuth, double p_elevation) {
    Look(_azimuth + p_azimuth, _elevation + p_elevation);
}

Types::Matrix4 Camera::Rotation() const {
    Types::Matrix4 const toYUp = _up == UpAxis::Z ? Types::Matrix4::Rotation(-90, {1, 0, 0}) : Types::Matrix4();
    return Types::Matrix4::Rotation(_elevation, {1, 0, 0}) * Types::Matrix4::Rotation(-_azimuth, {0, 1, 0}) * toYUp;
}

Types::Matrix4 Camera::Matrix(Box const& p_box) const {
    Types::Matrix4 const own =
        Types::Matrix4::Scaling(_zoom) * Types::Matrix4::Translation({-_panX, -_panY, 0}) * Rotation();
    if (!p_box.IsDefined() || p_box == _box)
        return own;
    // The projection is laid out in radii of its box: another box is the same picture, scaled, around another centre.
    double const otherRadius = RadiusOf(p_box) > 0 ? RadiusOf(p_box) : 1.0;
    return Types::Matrix4::Scaling(otherRadius / RadiusOf(_box)) * own *
        Types::Matrix4::Translation(p_box.Center() - _box.Center());
}

} // namespace Qor::Chart::Host
