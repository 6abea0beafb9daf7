#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace Qor::Chart::Library {

/// A named sequence of colours, evenly spread, each 0xRRGGBB.
struct ColorMapTable {
    std::string_view name;
    std::span<std::uint32_t const> colors;
};

/// The sequences that the library has; the first is the default.
std::span<ColorMapTable const> ColorMapTables();

} // namespace Qor::Chart::Library
