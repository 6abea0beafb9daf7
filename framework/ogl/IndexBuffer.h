#pragma once

#include "framework/Export.h"
#include "framework/ogl/Tokens.h"

#include <cstdint>
#include <vector>

namespace Qor::Chart::Ogl {

/// How vertices join into primitives: a primitive kind (`AGL_POINTS` to `AGL_POLYGON`) and the vertices in the order in
/// which that kind reads them. It never changes after construction and is shared by handle.
class QOR_FRAMEWORK_API IndexBuffer {
public:
    /// An unknown kind is reported, and the buffer is empty.
    IndexBuffer(Token p_kind, std::vector<std::uint32_t> p_indices);

    Token Kind() const { return _kind; }
    std::vector<std::uint32_t> const& Indices() const { return _indices; }

private:
    Token _kind;
    std::vector<std::uint32_t> _indices;
};

} // namespace Qor::Chart::Ogl
