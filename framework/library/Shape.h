#pragma once

#include "framework/Export.h"

#include <array>
#include <string_view>

namespace Qor::Chart::Library {

/// The shapes that symbols can have. All fill the unit box from (-0.5, -0.5, -0.5) to (0.5, 0.5, 0.5) around the origin,
/// where nothing else is said; those with a direction point along the positive z axis.
enum class Shape {
    Cube,
    Sphere,
    Cylinder,
    Cone,
    Arrow,
    Tetrahedron, ///< regular: its corners are four of the box's
    Octahedron,
    Cross, ///< three bars along the axes
    Pyramid, ///< on a square
    Disc, ///< a tenth as high as wide
    Torus, ///< 0.3 high
};

inline constexpr std::array AllShapes{Shape::Cube, Shape::Sphere, Shape::Cylinder, Shape::Cone, Shape::Arrow,
    Shape::Tetrahedron, Shape::Octahedron, Shape::Cross, Shape::Pyramid, Shape::Disc, Shape::Torus};

/// The name as it is written above; empty for a value that is no shape.
QOR_FRAMEWORK_API std::string_view NameOf(Shape p_shape);

} // namespace Qor::Chart::Library
