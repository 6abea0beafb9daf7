#include "framework/library/Shape.h"

#include <cstddef>

namespace Qor::Chart::Library {

std::string_view NameOf(Shape p_shape) {
    static constexpr std::array<std::string_view, AllShapes.size()> Names{"Cube", "Sphere", "Cylinder", "Cone", "Arrow",
        "Tetrahedron", "Octahedron", "Cross", "Pyramid", "Disc", "Torus"};
    auto const index = static_cast<std::size_t>(p_shape);
    return index < Names.size() ? Names[index] : std::string_view();
}

} // namespace Qor::Chart::Library
