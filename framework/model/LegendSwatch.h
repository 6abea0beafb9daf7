#pragma once

#include "framework/Export.h"

#include <span>
#include <string_view>

namespace Qor::Chart::Model {

/// What stands beside the text of a legend's entry.
enum class LegendSwatch : int {
    Automatic = 0, ///< the bar of the colour map, else the symbol, else an area in the colour of the entry
    Color = 1, ///< an area in the colour of the entry
    Symbol = 2, ///< the symbol of the entry, or that of its target
    Line = 3, ///< a piece of a line
    Point = 4, ///< a point
    ColorMap = 5, ///< the bar of a colour map below the text, with values
    Blank = 6, ///< nothing
};

QOR_FRAMEWORK_API std::span<std::string_view const> NamesOf(LegendSwatch) noexcept;

} // namespace Qor::Chart::Model
