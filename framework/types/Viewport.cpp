#include "framework/types/Viewport.h"

#include "framework/types/Math.h"

#include <cmath>
#include <ostream>

namespace Qor::Chart::Types {

namespace {

/// Limits one side of a rectangle to an interval; a side that lies inside is left exactly as it is.
void ClampSide(float& p_start, float& p_length, float p_boundsStart, float p_boundsLength) {
    float const boundsEnd = p_boundsStart + p_boundsLength;
    float const end = p_start + p_length;
    if (p_start >= p_boundsStart && end <= boundsEnd) {
        return;
    }
    p_start = Math::Clamp(p_start, p_boundsStart, boundsEnd);
    p_length = Math::Clamp(end, p_boundsStart, boundsEnd) - p_start;
}

void GrowSide(float& p_start, float& p_length, float p_margin) {
    if (p_length + 2 * p_margin < 0) {
        p_start += p_length / 2;
        p_length = 0;
        return;
    }
    p_start -= p_margin;
    p_length += 2 * p_margin;
}

void NormalizeSide(float& p_start, float& p_length) {
    if (p_length < 0) {
        p_start += p_length;
        p_length = -p_length;
    }
}

} // namespace

Viewport<0>::Viewport(Viewport<1> const& p_relative, Viewport const& p_parent)
    : x(static_cast<float>(p_parent.x + p_relative.x.Resolve(p_parent.width)))
    , y(static_cast<float>(p_parent.y + p_relative.y.Resolve(p_parent.height)))
    , width(static_cast<float>(p_relative.width.Resolve(p_parent.width)))
    , height(static_cast<float>(p_relative.height.Resolve(p_parent.height))) {}

Pos Viewport<0>::Origin() const {
    return {Math::Truncate(x), Math::Truncate(y)};
}

Size Viewport<0>::Extent() const {
    return {Math::Truncate(width), Math::Truncate(height)};
}

Viewport<0>& Viewport<0>::Normalize() {
    NormalizeSide(x, width);
    NormalizeSide(y, height);
    return *this;
}

Viewport<0>& Viewport<0>::Clamp(Viewport const& p_bounds) {
    ClampSide(x, width, p_bounds.x, p_bounds.width);
    ClampSide(y, height, p_bounds.y, p_bounds.height);
    return *this;
}

Viewport<0>& Viewport<0>::Grow(float p_margin) {
    GrowSide(x, width, p_margin);
    GrowSide(y, height, p_margin);
    return *this;
}

RelativeLength RelativeLength::Following(double p_pixels, double p_parentExtent) const {
    RelativeLength result = *this;
    if (definedAs == DefinedAs::Pixels) {
        result.pixels = p_pixels - fraction * p_parentExtent;
    } else {
        result.fraction = (p_pixels - pixels) / p_parentExtent;
    }
    return std::isfinite(result.pixels) && std::isfinite(result.fraction) ? result : *this;
}

Viewport<1>::Viewport(Viewport<0> const& p_absolute, Viewport<0> const& p_parent, Viewport const& p_current)
    : x(p_current.x.Following(static_cast<double>(p_absolute.x) - p_parent.x, p_parent.width))
    , y(p_current.y.Following(static_cast<double>(p_absolute.y) - p_parent.y, p_parent.height))
    , width(p_current.width.Following(p_absolute.width, p_parent.width))
    , height(p_current.height.Following(p_absolute.height, p_parent.height)) {}

std::ostream& operator<<(std::ostream& p_stream, Viewport<0> const& p_viewport) {
    return p_stream << p_viewport.x << ", " << p_viewport.y << ", " << p_viewport.width << ", " << p_viewport.height;
}

std::ostream& operator<<(std::ostream& p_stream, RelativeLength const& p_length) {
    bool const showFraction =
        p_length.fraction != 0.0 || (p_length.pixels == 0.0 && p_length.definedAs == DefinedAs::Fraction);
    if (showFraction) {
        p_stream << p_length.fraction * 100.0 << '%';
    }
    if (p_length.pixels != 0.0 || !showFraction) {
        p_stream << (showFraction && p_length.pixels > 0.0 ? "+" : "") << p_length.pixels << "px";
    }
    return p_stream;
}

std::ostream& operator<<(std::ostream& p_stream, Viewport<1> const& p_viewport) {
    return p_stream << p_viewport.x << ", " << p_viewport.y << ", " << p_viewport.width << ", " << p_viewport.height;
}

} // namespace Qor::Chart::Types
