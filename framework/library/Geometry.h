#pragma once

#include "framework/Export.h"
#include "framework/library/Shape.h"
#include "framework/ogl/PrimitiveBuffer.h"

#include <array>
#include <memory>

namespace Qor::Chart::Library {

/// The built-in shapes ready to be drawn, each made on first need and kept. One serves any number of graphics handles: a
/// buffer has its copy in every device that draws it. For one thread.
class QOR_FRAMEWORK_API Geometry {
public:
    Geometry() = default;
    Geometry(Geometry const&) = delete;
    Geometry& operator=(Geometry const&) = delete;

    /// The cube of edge 1 around the origin.
    std::shared_ptr<Ogl::PrimitiveBuffer const> const& UnitCube() const { return Buffer(Shape::Cube); }

    /// The buffer of a shape, always the same one. A value that is no shape is reported and gives the cube.
    std::shared_ptr<Ogl::PrimitiveBuffer const> const& Buffer(Shape p_shape) const;

private:
    mutable std::array<std::shared_ptr<Ogl::PrimitiveBuffer const>, AllShapes.size()> _buffers;
};

} // namespace Qor::Chart::Library
