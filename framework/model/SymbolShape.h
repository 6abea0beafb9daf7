#pragma once

#include "framework/Export.h"

#include <span>
#include <string_view>

namespace Qor::Chart::Model {

/// The built-in shapes. Each one fills the cube from -0.5 to 0.5 in every direction and points along the positive z axis
/// where it has a direction.
enum class SymbolShape : int {
    Unset = 0,
    Cube,
    Sphere,
    Cylinder,
    Cone,
    Arrow,
    Tetrahedron,
    Octahedron,
    Cross,
};

/// The names of all shapes, by value: "Unset", "Cube" and so on.
QOR_FRAMEWORK_API std::span<std::string_view const> NamesOf(SymbolShape) noexcept;

} // namespace Qor::Chart::Model
