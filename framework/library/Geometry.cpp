#include "framework/library/Geometry.h"

#include "framework/library/Shapes.h"
#include "framework/utility/Ensure.h"

#include <cstddef>
#include <utility>

namespace Qor::Chart::Library {

std::shared_ptr<Ogl::PrimitiveBuffer const> const& Geometry::Buffer(Shape p_shape) const {
    auto index = static_cast<std::size_t>(p_shape);
    if (!QOR_ENSURE(index < _buffers.size())) {
        index = static_cast<std::size_t>(Shape::Cube);
    }
    auto& buffer = _buffers[index];
    if (!buffer) {
        Mesh mesh = Shapes::Build(AllShapes[index]);
        buffer = std::make_shared<Ogl::PrimitiveBuffer const>(
            std::make_shared<Ogl::IndexBuffer const>(mesh.kind, std::move(mesh.indices)),
            std::make_shared<Ogl::VertexBuffer const>(std::move(mesh.vertices)));
    }
    return buffer;
}

} // namespace Qor::Chart::Library
