#pragma once

#include "framework/Export.h"

#include <iosfwd>

namespace Qor::Chart::Types {

/// A place in whole pixels; the origin is the lower left corner of whatever the place is relative to.
struct Pos {
    int x = 0;
    int y = 0;

    constexpr Pos() = default;
    constexpr Pos(int p_x, int p_y) : x(p_x), y(p_y) {}

    constexpr bool operator==(Pos const&) const = default;

    constexpr Pos& operator+=(Pos const& p_other) {
        x += p_other.x;
        y += p_other.y;
        return *this;
    }
    constexpr Pos& operator-=(Pos const& p_other) {
        x -= p_other.x;
        y -= p_other.y;
        return *this;
    }
    friend constexpr Pos operator+(Pos p_a, Pos const& p_b) { return p_a += p_b; }
    friend constexpr Pos operator-(Pos p_a, Pos const& p_b) { return p_a -= p_b; }
};

/// Writes "(x, y)".
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, Pos const& p_pos);

} // namespace Qor::Chart::Types
