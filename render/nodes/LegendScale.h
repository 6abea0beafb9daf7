#pragma once

#include "framework/library/ColorMap.h"
#include "framework/types/NumberFormat.h"
#include "render/Export.h"
#include "render/units/UnitSystemConverter.h"

#include <cstddef>
#include <string>
#include <vector>

namespace Qor::Chart::Render {

/// The values along the bar of a colour map, as they are shown: in the unit of display, at round values.
struct QOR_VIS_API LegendScale {
    struct Tick {
        double position; ///< along the bar, from 0 to 1
        std::string text;
    };

    Library::ColorMap map;
    UnitSystemConverter::Converter toDisplay; ///< from the unit of the map's range
    std::wstring unit; ///< of display; empty for plain numbers

    bool operator==(LegendScale const&) const = default;

    /// As many round values as may be had, at most the given number, with texts that differ from each other, in the
    /// order of the values. Empty when there is no number to write.
    std::vector<Tick> Ticks(Types::NiceIntervals::NumberFormat const& p_format, std::size_t p_most) const;

private:
    std::vector<double> Values(std::size_t p_most) const;
};

} // namespace Qor::Chart::Render
