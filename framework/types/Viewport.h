#pragma once

#include "framework/Export.h"
#include "framework/types/DefinedAs.h"
#include "framework/types/Pos.h"
#include "framework/types/Size.h"

#include <iosfwd>

namespace Qor::Chart::Types {

/// A rectangle to draw into. Kind 0 is absolute, in pixels of the window; kind 1 is relative to a parent rectangle. The
/// origin is the lower left corner in both.
template <int Kind>
struct Viewport;

/// An absolute rectangle in pixels. Default-constructed it is empty, at the origin.
template <>
struct QOR_FRAMEWORK_API Viewport<0> {
    float x = 0;
    float y = 0;
    float width = 0;
    float height = 0;

    constexpr Viewport() = default;
    constexpr Viewport(float p_x, float p_y, float p_width, float p_height)
        : x(p_x), y(p_y), width(p_width), height(p_height) {}
    /// Where a relative rectangle lies inside an absolute parent.
    Viewport(Viewport<1> const& p_relative, Viewport const& p_parent);

    constexpr bool operator==(Viewport const&) const = default;

    constexpr float Right() const { return x + width; }
    constexpr float Top() const { return y + height; }
    /// True unless both sides are greater than zero.
    constexpr bool IsEmpty() const { return !(width > 0) || !(height > 0); }
    /// The origin without its fractions.
    Pos Origin() const;
    /// The extent without its fractions.
    Size Extent() const;
    /// True when the point lies inside or on the left or lower side; points on the right or upper side belong to the
    /// neighbour.
    constexpr bool Contains(float p_x, float p_y) const { return p_x >= x && p_y >= y && p_x < Right() && p_y < Top(); }
    constexpr bool Contains(Pos const& p_pos) const {
        return Contains(static_cast<float>(p_pos.x), static_cast<float>(p_pos.y));
    }

    /// Turns negative sides around, so that the same rectangle has a width and a height of zero or more.
    Viewport& Normalize();
    /// Keeps what lies inside p_bounds; both rectangles are taken as normalised. Without anything in common the result
    /// is empty and lies on the side of p_bounds that is nearest.
    Viewport& Clamp(Viewport const& p_bounds);
    /// Moves every side outwards by p_margin pixels, inwards when it is negative; a side never becomes shorter than 0.
    Viewport& Grow(float p_margin);
    constexpr Viewport& Translate(float p_x, float p_y) {
        x += p_x;
        y += p_y;
        return *this;
    }

    Viewport Normalized() const { return Viewport(*this).Normalize(); }
    Viewport Clamped(Viewport const& p_bounds) const { return Viewport(*this).Clamp(p_bounds); }
};

/// One coordinate of a relative rectangle: a part of the parent's extent plus a number of pixels. The field definedAs
/// says which of the two follows when the coordinate is set from absolute pixels; the other one is kept.
struct QOR_FRAMEWORK_API RelativeLength {
    double fraction = 0;
    double pixels = 0;
    DefinedAs definedAs = DefinedAs::Fraction;

    static constexpr RelativeLength Fraction(double p_fraction, double p_pixels = 0) {
        return {p_fraction, p_pixels, DefinedAs::Fraction};
    }
    static constexpr RelativeLength Pixels(double p_pixels, double p_fraction = 0) {
        return {p_fraction, p_pixels, DefinedAs::Pixels};
    }

    constexpr bool operator==(RelativeLength const&) const = default;

    /// The length in pixels inside a parent of the given extent.
    constexpr double Resolve(double p_parentExtent) const { return fraction * p_parentExtent + pixels; }
    /// The coordinate, meant in the same way as this one, that resolves to p_pixels. A fraction of a parent without an
    /// extent cannot be told: this coordinate is returned as it is, as it is for arguments that are not finite.
    RelativeLength Following(double p_pixels, double p_parentExtent) const;
};

/// A rectangle relative to a parent. Default-constructed it fills the parent.
template <>
struct QOR_FRAMEWORK_API Viewport<1> {
    RelativeLength x;
    RelativeLength y;
    RelativeLength width = RelativeLength::Fraction(1);
    RelativeLength height = RelativeLength::Fraction(1);

    constexpr Viewport() = default;
    constexpr Viewport(RelativeLength const& p_x, RelativeLength const& p_y, RelativeLength const& p_width,
        RelativeLength const& p_height)
        : x(p_x), y(p_y), width(p_width), height(p_height) {}
    /// Four fractions of the parent.
    constexpr Viewport(double p_x, double p_y, double p_width, double p_height)
        : x(RelativeLength::Fraction(p_x))
        , y(RelativeLength::Fraction(p_y))
        , width(RelativeLength::Fraction(p_width))
        , height(RelativeLength::Fraction(p_height)) {}
    /// The relative rectangle that lies at p_absolute inside p_parent. Each coordinate stays defined as it is in
    /// p_current, by a fraction or by pixels.
    Viewport(Viewport<0> const& p_absolute, Viewport<0> const& p_parent, Viewport const& p_current);

    constexpr bool operator==(Viewport const&) const = default;
};

/// Writes "x, y, width, height".
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, Viewport<0> const& p_viewport);
/// Writes "x, y, width, height", each as "50%", "12px" or "50%+12px".
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, Viewport<1> const& p_viewport);
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, RelativeLength const& p_length);

} // namespace Qor::Chart::Types
