#include "host/Camera.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <vector>

namespace Qor::Chart::Host {

namespace {

using Box = Camera::Box;
using Vector = Camera::Vector;

/// Part of the viewport that the box may fill.
constexpr double Filling = 0.94;
/// How near the eye may come to the box at least, in radii.
constexpr double MinDistance = 0.05;
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

struct Direction {
    std::string_view name;
    double azimuth;
    double elevation;
};
/// In the order of `Camera::View`.
std::array<Direction, 7> const Directions{{{"front", 0, 0}, {"back", 180, 0}, {"left", -90, 0}, {"right", 90, 0},
    {"top", 0, 90}, {"bottom", 0, -90}, {"isometric", 45, std::atan(std::sqrt(0.5)) * 180 / std::numbers::pi}}};

/// A pixel relative to the middle of the viewport, in halves of its shorter side.
Camera::Pixel FromMiddle(Camera::Pixel const& p_pixel, Types::Viewport<0> const& p_viewport) {
    double const half = std::min(p_viewport.width, p_viewport.height) / 2.0;
    return {(p_pixel.x - p_viewport.x - p_viewport.width / 2.0) / half,
        (p_pixel.y - p_viewport.y - p_viewport.height / 2.0) / half};
}

bool IsUsable(Camera::Pixel const& p_pixel, Types::Viewport<0> const& p_viewport) {
    return std::isfinite(p_pixel.x) && std::isfinite(p_pixel.y) && !p_viewport.IsEmpty();
}

/// The corners of boxes as they are seen: relative to p_center, x to the right, y up, z towards the viewer.
std::vector<Vector> Corners(std::span<Box const> p_boxes, Vector const& p_center, Types::Matrix4 const& p_rotation) {
    std::vector<Vector> corners;
    corners.reserve(p_boxes.size() * 8);
    for (Box const& box : p_boxes) {
        for (unsigned corner = 0; corner < 8; ++corner)
            corners.push_back((p_rotation * Types::Vector4_Base<double>(box.Corner(corner) - p_center, 0)).XYZ());
    }
    return corners;
}

/// How far points lie to either side of an axis, each moved outwards by p_slope times its nearness.
struct Spread {
    double left = -HUGE_VAL;
    double right = -HUGE_VAL;
};

Spread SpreadOf(std::span<Vector const> p_points, int p_axis, double p_slope) {
    Spread spread;
    for (Vector const& point : p_points) {
        spread.left = std::max(spread.left, p_slope * point.z - point[p_axis]);
        spread.right = std::max(spread.right, p_slope * point.z + point[p_axis]);
    }
    return spread;
}

/// The distance of the nearest eye that sees all points between two planes that open by p_slope to either side: both
/// planes touch the outermost points then.
double DistanceFor(std::span<Vector const> p_points, int p_axis, double p_slope) {
    Spread const spread = SpreadOf(p_points, p_axis, p_slope);
    return (spread.left + spread.right) / 2 / p_slope;
}

double NearestOf(std::span<Vector const> p_points) {
    double nearest = -HUGE_VAL;
    for (Vector const& point : p_points)
        nearest = std::max(nearest, point.z);
    return nearest;
}

/// Where an eye at this distance stands on an axis so that it sees the points as far to the left as to the right.
double MiddleOf(std::span<Vector const> p_points, int p_axis, double p_distance) {
    double low = HUGE_VAL;
    double high = -HUGE_VAL;
    for (Vector const& point : p_points) {
        low = std::min(low, point[p_axis]);
        high = std::max(high, point[p_axis]);
    }
    for (int step = 0; step < 60 && low < high; ++step) {
        double const middle = (low + high) / 2;
        double left = HUGE_VAL;
        double right = -HUGE_VAL;
        for (Vector const& point : p_points) {
            double const seen = (point[p_axis] - middle) / (p_distance - point.z);
            left = std::min(left, seen);
            right = std::max(right, seen);
        }
        (left + right > 0 ? low : high) = middle;
    }
    return (low + high) / 2;
}

} // namespace

void Camera::Fit(Box const& p_box, Types::Viewport<0> const& p_viewport, std::span<Box const> p_parts) {
    _box = Usable(p_box);
    std::span<Box const> const parts = _box == p_box && !p_parts.empty() ? p_parts : std::span<Box const>(&_box, 1);
    std::vector<Vector> const corners = Corners(parts, _box.Center(), Rotation());
    HalfSize const half = HalfSizeOf(p_viewport);
    double const radius = RadiusOf(_box);

    if (_mode == Render::ProjectionMode::Orthographic) {
        Spread const x = SpreadOf(corners, 0, 0);
        Spread const y = SpreadOf(corners, 1, 0);
        _panX = (x.right - x.left) / 2;
        _panY = (y.right - y.left) / 2;
        double const needed = std::max((x.left + x.right) / half.x, (y.left + y.right) / half.y) / 2 / Filling;
        _zoom = needed > radius * 1e-9 ? radius / needed : 1.0;
        return;
    }
    double const opening = std::tan(HalfAngle) * Filling;
    double const distance = std::max({DistanceFor(corners, 0, opening * half.x),
        DistanceFor(corners, 1, opening * half.y), NearestOf(corners) + radius * MinDistance});
    _panX = MiddleOf(corners, 0, distance);
    _panY = MiddleOf(corners, 1, distance);
    _zoom = radius / std::sin(HalfAngle) / distance;
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

void Camera::Look(View p_view) {
    Direction const& direction = Directions[static_cast<std::size_t>(p_view)];
    Look(direction.azimuth, direction.elevation);
}

std::optional<Camera::View> Camera::ViewOf(std::string_view p_name) {
    auto const found = std::find_if(Directions.begin(), Directions.end(),
        [p_name](Direction const& p_direction) { return p_direction.name == p_name; });
    if (found == Directions.end())
        return std::nullopt;
    return static_cast<View>(found - Directions.begin());
}

void Camera::Orbit(Pixel const& p_from, Pixel const& p_to, Types::Viewport<0> const& p_viewport) {
    if (!IsUsable(p_from, p_viewport) || !IsUsable(p_to, p_viewport))
        return;
    Pixel const way = FromMiddle(p_to, p_viewport) - FromMiddle(p_from, p_viewport);
    Orbit(-way.x / 2 * DegreesPerSide, -way.y / 2 * DegreesPerSide);
}

double Camera::EyeDistance() const {
    return RadiusOf(_box) / std::sin(HalfAngle) / _zoom;
}

double Camera::HalfSide(double p_depth) const {
    if (_mode == Render::ProjectionMode::Orthographic)
        return RadiusOf(_box) / _zoom;
    return (EyeDistance() - p_depth) * std::tan(HalfAngle);
}

double Camera::DepthOf(std::optional<Vector> const& p_point) const {
    if (!p_point || !IsFinite(*p_point))
        return 0;
    double const depth = (Rotation() * Types::Vector4_Base<double>(*p_point - _box.Center(), 0)).z;
    bool const isSeen = _mode == Render::ProjectionMode::Orthographic || depth < EyeDistance() * (1 - 1e-9);
    return isSeen ? depth : 0;
}

void Camera::Pan(
    Pixel const& p_from, Pixel const& p_to, Types::Viewport<0> const& p_viewport, std::optional<Vector> const& p_at) {
    if (!IsUsable(p_from, p_viewport) || !IsUsable(p_to, p_viewport))
        return;
    Pixel const way = (FromMiddle(p_to, p_viewport) - FromMiddle(p_from, p_viewport)) * HalfSide(DepthOf(p_at));
    _panX -= way.x;
    _panY -= way.y;
}

void Camera::ZoomAbout(
    double p_factor, Pixel const& p_pointer, Types::Viewport<0> const& p_viewport, std::optional<Vector> const& p_at) {
    if (!std::isfinite(p_factor) || !(p_factor > 0) || !IsUsable(p_pointer, p_viewport))
        return;
    // The box moves along the view, and the picture stays, until its centre is as deep as the point is.
    double const depth = DepthOf(p_at);
    double const ofSameEye = RadiusOf(_box) / std::sin(HalfAngle) / (EyeDistance() - depth);
    bool const isPerspective = _mode == Render::ProjectionMode::Perspective;
    if (depth != 0 && (!isPerspective || ofSameEye <= MaxZoom)) {
        Vector const way = (Rotation().Transposed() * Types::Vector4_Base<double>(0, 0, depth, 0)).XYZ();
        _box = Box(_box.Min() + way, _box.Max() + way);
        _zoom = isPerspective ? ofSameEye : _zoom;
    }
    double const before = HalfSide(0);
    _zoom = std::clamp(_zoom * p_factor, std::min(MinZoom, _zoom), std::max(MaxZoom, _zoom));
    Pixel const way = FromMiddle(p_pointer, p_viewport) * (before - HalfSide(0));
    _panX += way.x;
    _panY += way.y;
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
