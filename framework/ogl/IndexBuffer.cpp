#include "framework/ogl/IndexBuffer.h"

#include "framework/utility/Ensure.h"

#include <utility>

namespace Qor::Chart::Ogl {

IndexBuffer::IndexBuffer(Token p_kind, std::vector<std::uint32_t> p_indices)
    : _kind(p_kind), _indices(std::move(p_indices)) {
    if (!QOR_ENSURE(p_kind <= Tokens::AGL_POLYGON)) {
        _kind = Tokens::AGL_POINTS;
        _indices.clear();
    }
}

} // namespace Qor::Chart::Ogl
