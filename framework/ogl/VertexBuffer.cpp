#include "framework/ogl/VertexBuffer.h"

#include "framework/utility/Ensure.h"

#include <utility>

namespace Qor::Chart::Ogl {

namespace {

/// True when the attribute is there; one of the wrong length is reported and emptied.
template <class T>
bool Accept(std::vector<T>& p_values, std::size_t p_size) {
    if (!QOR_ENSURE_TEXT(p_values.empty() || p_values.size() == p_size, "attribute.size() == positions.size()")) {
        p_values = {};
    }
    return !p_values.empty();
}

} // namespace

VertexBuffer::VertexBuffer(VertexData p_data) : _data(std::move(p_data)) {
    std::size_t const size = _data.positions.size();
    _info.flags[AttributeInfo::Position] = size != 0;
    _info.flags[AttributeInfo::Normal] = Accept(_data.normals, size);
    _info.flags[AttributeInfo::Color] = Accept(_data.colors, size);
    for (std::size_t unit = 0; unit < TextureUnitCount; ++unit) {
        _info.flags[AttributeInfo::TexCoord0 + unit] = Accept(_data.texCoords[unit], size);
    }
    for (Types::Vector3_Base<float> const& position : _data.positions) {
        _bounds.Add(Types::Vector3_Base<double>(position));
    }
}

} // namespace Qor::Chart::Ogl
