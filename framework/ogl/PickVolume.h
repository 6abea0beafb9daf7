#pragma once

#include "framework/Export.h"
#include "framework/ogl/State.h"
#include "framework/types/BoundingBox.h"
#include "framework/types/Matrix4.h"
#include "framework/types/Vector4.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

namespace Qor::Chart::Ogl {

/// A rectangle of the window, in pixels.
struct PickArea {
    double left = 0;
    double bottom = 0;
    double right = 0;
    double top = 0;
};

/// What a pick can hit: the part of the view volume that projects into a rectangle of the window and lies on the positive
/// side of all enabled clip planes, given as half-spaces of the object coordinates that a model-view matrix takes.
/// Primitives are clipped there, so that no vertex has to be transformed.
class QOR_FRAMEWORK_API PickVolume {
public:
    using Vector4 = Types::Vector4_Base<double>;
    /// Six planes of the view volume and the clip planes.
    static constexpr std::size_t MaxPlanes = 6 + ClipPlaneCount;
    /// The depth of what lies outside.
    static constexpr double NoHit = std::numeric_limits<double>::infinity();

    /// Takes viewport, depth range, clip planes, culling and winding from the state.
    PickVolume(PickArea const& p_area, Types::Matrix4 const& p_modelView, Types::Matrix4 const& p_projection,
        State const& p_state);

    /// True when nothing can be hit: the area lies outside the viewport, or the viewport is empty.
    bool IsEmpty() const { return _isEmpty; }
    /// False when the box is certainly outside.
    bool MayTouch(Types::BoundingBox_Base<double> const& p_box) const;

    /// The nearest window depth of the part of a primitive that is inside, or NoHit. Polygons are triangles of convex
    /// polygons, wound as those; a face that is culled is not hit, nor is anything that has an infinite or undefined
    /// coordinate.
    double PointDepth(Vector4 const& p_point) const;
    double LineDepth(Vector4 const& p_begin, Vector4 const& p_end) const;
    double TriangleDepth(Vector4 const& p_a, Vector4 const& p_b, Vector4 const& p_c) const;
    /// The same for one to three corners. What lies behind p_nearest as a whole may be left out.
    double Depth(std::span<Vector4 const> p_corners, double p_nearest = NoHit) const;

    /// Planes with the inside on their positive side.
    std::span<Vector4 const> Planes() const { return std::span(_planes).first(_planeCount); }
    /// The half-space of what is nearer than a window depth.
    Vector4 NearerThan(double p_depth) const { return _w * p_depth - _depth; }
    /// Clip coordinate w: positive in front of the eye.
    double W(Vector4 const& p_point) const { return Dot(_w, p_point); }
    double WindowDepth(Vector4 const& p_point) const { return Dot(_depth, p_point) / Dot(_w, p_point); }

private:
    void AddPlane(Vector4 const& p_plane);
    bool IsCulled(Vector4 const& p_a, Vector4 const& p_b, Vector4 const& p_c) const;
    double NearestDepth(std::span<Vector4 const> p_corners) const;
    double ClippedDepth(std::span<Vector4 const> p_corners, std::uint32_t p_planes) const;

    std::array<Vector4, MaxPlanes> _planes;
    std::size_t _planeCount = 0;
    Vector4 _x; ///< clip coordinates x and y, as linear functions of the position
    Vector4 _y;
    Vector4 _w;
    Vector4 _depth; ///< window depth times w
    bool _isEmpty = false;
    bool _cullsFront = false;
    bool _cullsBack = false;
    bool _isFrontClockwise = false;
};

} // namespace Qor::Chart::Ogl
