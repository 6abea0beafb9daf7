#pragma once

#include "framework/Export.h"
#include "framework/types/BoundingBox.h"
#include "framework/types/Vector3.h"

#include <iosfwd>
#include <optional>

namespace Qor::Chart::Types {

class Matrix4;

/// A half-line: a start and a direction, for instance from the eye through a pixel. The direction need not have length
/// 1; distances along the ray count in its length. Default-constructed it has no direction and hits nothing.
template <class T>
struct QOR_FRAMEWORK_API Ray_Base {
    Vector3_Base<T> origin;
    Vector3_Base<T> direction;

    constexpr Ray_Base() = default;
    constexpr Ray_Base(Vector3_Base<T> const& p_origin, Vector3_Base<T> const& p_direction)
        : origin(p_origin), direction(p_direction) {}

    constexpr bool operator==(Ray_Base const&) const = default;

    /// True when origin and direction are finite and the direction is not zero.
    bool IsDefined() const;
    constexpr Vector3_Base<T> PointAt(T p_distance) const { return origin + direction * p_distance; }
    /// The distance, zero or more, at which the ray is closest to the point; 0 for a ray without a direction.
    T ClosestTo(Vector3_Base<T> const& p_point) const;
    /// The distance at which the ray enters the box, 0 when it starts inside; nothing when it misses the box or either
    /// is undefined.
    std::optional<T> Enters(BoundingBox_Base<T> const& p_box) const;
    /// The same ray in the coordinate system that the affine matrix leads to; the direction keeps its scale, so that
    /// distances along the ray stay the same numbers.
    Ray_Base Transformed(Matrix4 const& p_matrix) const;
};

/// Writes "origin -> direction". Exists for float and double.
template <class T>
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, Ray_Base<T> const& p_ray);

} // namespace Qor::Chart::Types
