#pragma once

#include "framework/Export.h"

#include <array>

namespace Qor::Chart::Library {

/// Patterns to fill areas with.
class QOR_FRAMEWORK_API Pattern {
public:
    /// 32 by 32 bits, four bytes a row, as `Agl::PolygonStipple` takes them.
    using Stipple = std::array<unsigned char, 128>;

    /// An evenly spread pattern that lets p_sixteenths of every sixteen pixels through: 0 none, 16 all. Other numbers count
    /// as the nearer of the two. The pixels of a pattern are among those of every denser one.
    static Stipple const& PolygonStipplePattern(int p_sixteenths);
    /// Diagonal stripes, rising to the right, that let three of every eight pixels through.
    static Stipple const& HatchPattern();
};

} // namespace Qor::Chart::Library
