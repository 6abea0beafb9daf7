#include "framework/model/LegendSwatch.h"

#include <array>

namespace Qor::Chart::Model {

std::span<std::string_view const> NamesOf(LegendSwatch) noexcept {
    static constexpr std::array<std::string_view, 7> Names{
        "Automatic", "Color", "Symbol", "Line", "Point", "ColorMap", "Blank"};
    return Names;
}

} // namespace Qor::Chart::Model
