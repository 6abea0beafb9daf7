#pragma once

#include "framework/Export.h"
#include "framework/types/BoundingBox.h"
#include "framework/types/Vector3.h"
#include "framework/types/Vector4.h"
#include "framework/types/Viewport.h"

#include <array>
#include <cstddef>
#include <iosfwd>

namespace Qor::Chart::Types {

class Matrix4;

/// The volume in space that projects into a rectangle of the window, bounded by six planes: what lies in it may be
/// picked or seen through the rectangle. Default-constructed it is undefined and holds nothing.
template <class T>
class QOR_FRAMEWORK_API Frustum_Base {
public:
    enum class Side : std::size_t { Left, Right, Bottom, Top, Near, Far };

    constexpr Frustum_Base() = default;
    /// The part of the view volume that projects into p_rectangle. Rectangle and viewport are in window pixels; the
    /// planes are in the coordinates to which p_modelView applies. An empty rectangle or viewport, or a matrix that is
    /// not finite, leaves the frustum undefined.
    Frustum_Base(Viewport<0> const& p_rectangle, Matrix4 const& p_modelView, Matrix4 const& p_projection,
        Viewport<0> const& p_viewport);

    constexpr bool operator==(Frustum_Base const&) const = default;

    constexpr bool IsDefined() const { return _defined; }
    /// The plane as (normal, offset): a point is on the inner side when Dot(normal, point) + offset >= 0. The normal
    /// has length 1, or is zero for a side that bounds nothing.
    constexpr Vector4_Base<T> const& Plane(Side p_side) const { return _planes[static_cast<std::size_t>(p_side)]; }
    /// True when the point lies inside or on the boundary.
    bool Contains(Vector3_Base<T> const& p_point) const;
    /// False only when the box lies wholly outside one of the planes. A box near a corner may be taken for
    /// intersecting although it is not.
    bool MayIntersect(BoundingBox_Base<T> const& p_box) const;
    /// True when the whole box lies inside.
    bool Contains(BoundingBox_Base<T> const& p_box) const;

    /// The projection that spreads what is drawn into p_rectangle over the whole of p_viewport; applied on the left of a
    /// projection matrix. The identity when either rectangle is empty.
    static Matrix4 PickMatrix(Viewport<0> const& p_rectangle, Viewport<0> const& p_viewport);

private:
    std::array<Vector4_Base<T>, 6> _planes{};
    bool _defined = false;
};

/// Writes the six planes, or "[undefined]". Exists for float and double.
template <class T>
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, Frustum_Base<T> const& p_frustum);

} // namespace Qor::Chart::Types
