#pragma once

#include "framework/Export.h"
#include "framework/library/Mesh.h"
#include "framework/library/Shape.h"

namespace Qor::Chart::Library {

/// Builds the meshes of the built-in shapes: triangles with positions, normals and texture coordinates. Each is a closed
/// surface inside the unit box around the origin, its triangles counter-clockwise when seen from outside, its normals
/// outward and of length 1; edges are sharp where the shape has an edge.
class QOR_FRAMEWORK_API Shapes {
public:
    /// What a full circle is divided into when nothing else is asked for.
    static constexpr unsigned DefaultSegments = 32;

    /// The mesh of a shape. p_segments is what a full circle of a round shape is divided into, taken as at least 4 and at
    /// most 1024 and rounded up to a multiple of 4, so that round shapes touch the unit box too. A value that is no shape is
    /// reported and gives the cube.
    static Mesh Build(Shape p_shape, unsigned p_segments = DefaultSegments);
};

} // namespace Qor::Chart::Library
