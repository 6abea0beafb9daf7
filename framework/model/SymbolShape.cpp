#include "framework/model/SymbolShape.h"

#include <array>

namespace Qor::Chart::Model {

std::span<std::string_view const> NamesOf(SymbolShape) noexcept {
    static constexpr std::array<std::string_view, 9> names{
        "Unset", "Cube", "Sphere", "Cylinder", "Cone", "Arrow", "Tetrahedron", "Octahedron", "Cross"};
    return names;
}

} // namespace Qor::Chart::Model
