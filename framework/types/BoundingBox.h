#pragma once

#include "framework/Export.h"
#include "framework/types/Vector3.h"

#include <iosfwd>
#include <limits>

namespace Qor::Chart::Types {

class Matrix4;

/// An axis-aligned box around a set of points, for instance around everything below a node. Default-constructed it is
/// undefined: the box of no points, neutral when merged. A defined box is always finite and ordered: points that are
/// infinite or NaN are refused and reported by the return value.
template <class T>
class QOR_FRAMEWORK_API BoundingBox_Base {
public:
    using Point = Vector3_Base<T>;

    constexpr BoundingBox_Base() = default;
    /// The box of two opposite corners, in any order. A corner that is not finite leaves the box undefined.
    BoundingBox_Base(Point const& p_corner, Point const& p_opposite) {
        if (!IsFinite(p_corner) || !IsFinite(p_opposite)) {
            return;
        }
        _min = ComponentMin(p_corner, p_opposite);
        _max = ComponentMax(p_corner, p_opposite);
    }

    /// Makes the box undefined again.
    constexpr void Reset() { *this = BoundingBox_Base(); }

    /// Widens the box to hold the point. Returns false, with the box unchanged, for a point that is not finite.
    bool Add(Point const& p_point) {
        if (!IsFinite(p_point)) {
            return false;
        }
        _min = ComponentMin(_min, p_point);
        _max = ComponentMax(_max, p_point);
        return true;
    }
    /// Widens the box to hold another. Returns false, with the box unchanged, when the other is undefined.
    bool Add(BoundingBox_Base const& p_box) {
        if (!p_box.IsDefined()) {
            return false;
        }
        _min = ComponentMin(_min, p_box._min);
        _max = ComponentMax(_max, p_box._max);
        return true;
    }

    /// Moves every side outwards by the margin of its axis. A negative margin shrinks the box, at most to its centre.
    /// An undefined box stays undefined. Returns false, with the box unchanged, for a margin that is not finite or when
    /// the grown box would not be finite.
    bool Grow(Point const& p_margin);
    bool Grow(T p_margin) { return Grow(Point(p_margin, p_margin, p_margin)); }

    constexpr bool IsDefined() const { return _min.x <= _max.x; }
    /// The lowest corner; the origin for an undefined box.
    constexpr Point Min() const { return IsDefined() ? _min : Point(); }
    /// The highest corner; the origin for an undefined box.
    constexpr Point Max() const { return IsDefined() ? _max : Point(); }
    /// The middle; the origin for an undefined box.
    constexpr Point Center() const { return Min() * T(0.5) + Max() * T(0.5); }
    /// The lengths of the three edges (whole lengths, not halves); zero for an undefined box.
    constexpr Point Extents() const { return Max() - Min(); }
    /// One of the eight corners: bit 0 of p_index picks the high x, bit 1 the high y, bit 2 the high z.
    constexpr Point Corner(unsigned p_index) const {
        Point const low = Min();
        Point const high = Max();
        return {(p_index & 1U) ? high.x : low.x, (p_index & 2U) ? high.y : low.y, (p_index & 4U) ? high.z : low.z};
    }

    /// True when the point lies inside or on the boundary.
    constexpr bool Contains(Point const& p_point) const {
        return _min.x <= p_point.x && p_point.x <= _max.x && _min.y <= p_point.y && p_point.y <= _max.y &&
            _min.z <= p_point.z && p_point.z <= _max.z;
    }
    /// True when the boxes share at least one point; false when either is undefined.
    constexpr bool Intersects(BoundingBox_Base const& p_box) const {
        return _min.x <= p_box._max.x && p_box._min.x <= _max.x && _min.y <= p_box._max.y && p_box._min.y <= _max.y &&
            _min.z <= p_box._max.z && p_box._min.z <= _max.z;
    }

    /// The smallest box around the eight transformed corners. Undefined for an undefined box, for a matrix that is not
    /// finite, and for a perspective matrix that sends part of the box behind the eye.
    BoundingBox_Base Transformed(Matrix4 const& p_matrix) const;

    constexpr bool operator==(BoundingBox_Base const&) const = default;

private:
    static constexpr T Infinite = std::numeric_limits<T>::infinity();

    Point _min{Infinite, Infinite, Infinite};
    Point _max{-Infinite, -Infinite, -Infinite};
};

/// Writes "[(x, y, z), (x, y, z)]", or "[undefined]". Exists for float and double.
template <class T>
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, BoundingBox_Base<T> const& p_box);

} // namespace Qor::Chart::Types
