#include "framework/ogl/PickVolume.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace Qor::Chart::Ogl {

namespace {

using Vector4 = PickVolume::Vector4;

/// More corners than clipping a triangle by all planes can leave, rounding errors included.
constexpr std::size_t MaxCorners = 24;

struct Polygon {
    std::array<Vector4, MaxCorners> corners;
    std::size_t size = 0;

    void Add(Vector4 const& p_corner) {
        if (size < MaxCorners) {
            corners[size++] = p_corner;
        }
    }
};

/// A row of the matrix as a linear function.
Vector4 Row(Types::Matrix4 const& p_matrix, int p_row) {
    return {p_matrix.At(p_row, 0), p_matrix.At(p_row, 1), p_matrix.At(p_row, 2), p_matrix.At(p_row, 3)};
}

/// The part of a convex polygon, or of a line as a polygon of two corners, on the positive side of the plane.
void Clip(Polygon const& p_polygon, Vector4 const& p_plane, Polygon& p_result) {
    p_result.size = 0;
    Vector4 const* from = &p_polygon.corners[p_polygon.size - 1];
    double fromDistance = Dot(p_plane, *from);
    for (std::size_t i = 0; i < p_polygon.size; ++i) {
        Vector4 const& to = p_polygon.corners[i];
        double const toDistance = Dot(p_plane, to);
        if ((fromDistance >= 0) != (toDistance >= 0)) {
            p_result.Add(*from + (to - *from) * (fromDistance / (fromDistance - toDistance)));
        }
        if (toDistance >= 0) {
            p_result.Add(to);
        }
        from = &to;
        fromDistance = toDistance;
    }
}

} // namespace

PickVolume::PickVolume(PickArea const& p_area, Types::Matrix4 const& p_modelView, Types::Matrix4 const& p_projection,
    State const& p_state) {
    PixelRectangle const& viewport = p_state.viewport.rectangle;
    double const left = std::max<double>(p_area.left, viewport.x);
    double const bottom = std::max<double>(p_area.bottom, viewport.y);
    double const right = std::min<double>(p_area.right, viewport.x + viewport.width);
    double const top = std::min<double>(p_area.top, viewport.y + viewport.height);
    if (!(left < right && bottom < top)) {
        _isEmpty = true;
        return;
    }
    Types::Matrix4 const matrix = p_projection * p_modelView;
    _x = Row(matrix, 0);
    _y = Row(matrix, 1);
    _w = Row(matrix, 3);
    Vector4 const z = Row(matrix, 2);
    auto const normalized = [](double p_pixel, int p_origin, int p_extent) {
        return 2 * (p_pixel - p_origin) / p_extent - 1;
    };
    AddPlane(_x - _w * normalized(left, viewport.x, viewport.width));
    AddPlane(_w * normalized(right, viewport.x, viewport.width) - _x);
    AddPlane(_y - _w * normalized(bottom, viewport.y, viewport.height));
    AddPlane(_w * normalized(top, viewport.y, viewport.height) - _y);
    AddPlane(_w + z);
    AddPlane(_w - z);
    Types::Matrix4 const transposed = p_modelView.Transposed();
    for (std::size_t i = 0; i < ClipPlaneCount; ++i) {
        if (p_state.IsEnabled(EnableBit::ClipPlane0 << i)) {
            AddPlane(transposed * p_state.clipPlanes.planes[i]);
        }
    }
    double const nearDepth = static_cast<double>(p_state.viewport.nearDepth);
    double const farDepth = static_cast<double>(p_state.viewport.farDepth);
    _depth = z * ((farDepth - nearDepth) / 2) + _w * ((farDepth + nearDepth) / 2);

    if (p_state.IsEnabled(EnableBit::CullFace)) {
        _cullsFront = p_state.polygon.cullFace != Tokens::AGL_BACK;
        _cullsBack = p_state.polygon.cullFace != Tokens::AGL_FRONT;
    }
    _isFrontClockwise = p_state.polygon.frontFace == Tokens::AGL_CW;
}

void PickVolume::AddPlane(Vector4 const& p_plane) {
    _planes[_planeCount++] = p_plane;
}

bool PickVolume::MayTouch(Types::BoundingBox_Base<double> const& p_box) const {
    if (_isEmpty || !p_box.IsDefined()) {
        return false;
    }
    auto const low = p_box.Min();
    auto const high = p_box.Max();
    auto const planes = Planes();
    return std::none_of(planes.begin(), planes.end(), [&](Vector4 const& p_plane) {
        Vector4 const innermost(
            p_plane.x > 0 ? high.x : low.x, p_plane.y > 0 ? high.y : low.y, p_plane.z > 0 ? high.z : low.z, 1);
        return Dot(p_plane, innermost) < 0;
    });
}

double PickVolume::PointDepth(Vector4 const& p_point) const {
    return Depth(std::span(&p_point, 1));
}

double PickVolume::LineDepth(Vector4 const& p_begin, Vector4 const& p_end) const {
    return Depth(std::array{p_begin, p_end});
}

double PickVolume::TriangleDepth(Vector4 const& p_a, Vector4 const& p_b, Vector4 const& p_c) const {
    return Depth(std::array{p_a, p_b, p_c});
}

double PickVolume::Depth(std::span<Vector4 const> p_corners, double p_nearest) const {
    Vector4 const nearer = NearerThan(std::min(p_nearest, 2.0));
    bool const isBehind = std::all_of(
        p_corners.begin(), p_corners.end(), [&](Vector4 const& p_corner) { return Dot(nearer, p_corner) < 0; });
    if (_isEmpty || isBehind) {
        return NoHit;
    }
    std::uint32_t crossed = 0;
    for (std::size_t plane = 0; plane < _planeCount; ++plane) {
        std::size_t outside = 0;
        for (Vector4 const& corner : p_corners) {
            double const distance = Dot(_planes[plane], corner);
            if (!std::isfinite(distance)) {
                return NoHit;
            }
            outside += distance < 0 ? 1 : 0;
        }
        if (outside == p_corners.size()) {
            return NoHit;
        }
        crossed |= outside > 0 ? 1U << plane : 0U;
    }
    bool const culls = (_cullsFront || _cullsBack) && p_corners.size() == 3;
    if (culls && IsCulled(p_corners[0], p_corners[1], p_corners[2])) {
        return NoHit;
    }
    return crossed != 0 ? ClippedDepth(p_corners, crossed) : NearestDepth(p_corners);
}

// The determinant of the clip coordinates x, y and w has the sign of the area of whatever part is in front of the eye.
bool PickVolume::IsCulled(Vector4 const& p_a, Vector4 const& p_b, Vector4 const& p_c) const {
    auto const clip = [this](
                          Vector4 const& p) { return Types::Vector3_Base<double>(Dot(_x, p), Dot(_y, p), Dot(_w, p)); };
    auto const [ax, ay, aw] = clip(p_a);
    auto const [bx, by, bw] = clip(p_b);
    auto const [cx, cy, cw] = clip(p_c);
    double const area = ax * (by * cw - bw * cy) + ay * (bw * cx - bx * cw) + aw * (bx * cy - by * cx);
    bool const isFront = _isFrontClockwise ? area < 0 : area > 0;
    return isFront ? _cullsFront : _cullsBack;
}

double PickVolume::ClippedDepth(std::span<Vector4 const> p_corners, std::uint32_t p_planes) const {
    std::array<Polygon, 2> polygons;
    std::size_t current = 0;
    for (Vector4 const& corner : p_corners) {
        polygons[current].Add(corner);
    }
    for (; p_planes != 0; p_planes &= p_planes - 1) {
        Clip(polygons[current], _planes[static_cast<std::size_t>(std::countr_zero(p_planes))], polygons[1 - current]);
        current = 1 - current;
        if (polygons[current].size == 0) {
            return NoHit;
        }
    }
    return NearestDepth(std::span(polygons[current].corners).first(polygons[current].size));
}

double PickVolume::NearestDepth(std::span<Vector4 const> p_corners) const {
    double nearest = NoHit;
    for (Vector4 const& corner : p_corners) {
        double const depth = WindowDepth(corner);
        nearest = depth < nearest ? depth : nearest;
    }
    return nearest == NoHit ? NoHit : std::clamp(nearest, 0.0, 1.0);
}

} // namespace Qor::Chart::Ogl
