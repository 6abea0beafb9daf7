#pragma once

#include "framework/ogl/IndexBuffer.h"
#include "framework/ogl/VertexBuffer.h"
#include "framework/types/BoundingBox.h"

#include <memory>

namespace Qor::Chart::Library {

/// What can be drawn as a symbol: vertices, the primitives that join them, and the box around both. The buffers are shared
/// with everybody who uses the same symbol. Empty when default-constructed.
struct Symbol {
    std::shared_ptr<Ogl::IndexBuffer const> indices;
    std::shared_ptr<Ogl::VertexBuffer const> vertices;
    Types::BoundingBox_Base<double> bounds; ///< in the symbol's own coordinates

    explicit operator bool() const { return indices && vertices; }
};

} // namespace Qor::Chart::Library
