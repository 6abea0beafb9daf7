#pragma once

#include "framework/Export.h"
#include "framework/ogl/DeviceResource.h"
#include "framework/ogl/State.h"
#include "framework/types/BoundingBox.h"
#include "framework/types/Color4f.h"
#include "framework/types/Vector3.h"
#include "framework/types/Vector4.h"

#include <array>
#include <bitset>
#include <cstddef>
#include <vector>

namespace Qor::Chart::Ogl {

/// Which attributes the vertices of a buffer have.
struct AttributeInfo {
    static constexpr std::size_t Position = 0;
    static constexpr std::size_t Normal = 1;
    static constexpr std::size_t Color = 2;
    static constexpr std::size_t TexCoord0 = 3; ///< and one more for each further texture unit
    static constexpr std::size_t TexCoord1 = 4;
    static constexpr std::size_t Count = TexCoord0 + TextureUnitCount;

    std::bitset<Count> flags;

    bool operator==(AttributeInfo const&) const = default;
};

/// What a vertex buffer is made of: one array per attribute, each empty or as long as the positions.
struct VertexData {
    std::vector<Types::Vector3_Base<float>> positions; ///< in object coordinates
    std::vector<Types::Vector3_Base<float>> normals; ///< in object coordinates, of length 1
    std::vector<Types::Color4f> colors;
    std::array<std::vector<Types::Vector4_Base<float>>, TextureUnitCount> texCoords; ///< s, t, r, q for each unit
};

/// The vertices of a shape, kept in memory for picking and copied to a device when they are first drawn there. It never
/// changes after construction and is shared by handle between all primitive buffers and objects that use it.
class QOR_FRAMEWORK_API VertexBuffer : public DeviceResource {
public:
    /// An attribute whose array is neither empty nor as long as the positions is reported and left out.
    explicit VertexBuffer(VertexData p_data);

    AttributeInfo const& Info() const { return _info; }
    std::size_t Size() const { return _data.positions.size(); }
    VertexData const& Data() const { return _data; }
    /// Around all positions that are finite, in object coordinates.
    Types::BoundingBox_Base<double> const& Bounds() const { return _bounds; }

private:
    VertexData _data;
    AttributeInfo _info;
    Types::BoundingBox_Base<double> _bounds;
};

} // namespace Qor::Chart::Ogl
