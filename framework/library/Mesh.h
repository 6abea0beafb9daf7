#pragma once

#include "framework/ogl/Tokens.h"
#include "framework/ogl/VertexBuffer.h"

#include <cstdint>
#include <vector>

namespace Qor::Chart::Library {

/// A shape in memory: vertices and the primitives that join them.
struct Mesh {
    Ogl::VertexData vertices;
    std::vector<std::uint32_t> indices;
    Ogl::Token kind = Ogl::Tokens::AGL_TRIANGLES;
};

} // namespace Qor::Chart::Library
