#pragma once

#include "framework/Export.h"

#include <iosfwd>

namespace Qor::Chart::Types {

/// A width and a height in whole pixels.
struct Size {
    int width = 0;
    int height = 0;

    constexpr Size() = default;
    constexpr Size(int p_width, int p_height) : width(p_width), height(p_height) {}

    constexpr bool operator==(Size const&) const = default;

    /// True when either side is zero or negative.
    constexpr bool IsEmpty() const { return width <= 0 || height <= 0; }
};

/// Writes "width x height".
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, Size const& p_size);

} // namespace Qor::Chart::Types
