#pragma once

#include "framework/Export.h"
#include "framework/ogl/PrimitiveBuffer.h"
#include "framework/ogl/Shader.h"
#include "framework/ogl/State.h"
#include "framework/ogl/Texture.h"

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace Qor::Chart::Ogl {

/// What one of several merged draws has of its own: the first three rows of its model-view matrix (to eye coordinates
/// without the origin of the projection) and its colour. 64 bytes, in the layout in which it goes to the device.
struct Instance {
    std::array<std::array<float, 4>, 3> rows;
    Types::Color4f color;
};
static_assert(sizeof(Instance) == 64);

/// A vertex between Begin and End, already in eye coordinates (without the origin of the projection).
struct ImmediateVertex {
    Types::Vector4_Base<float> position;
    Types::Vector3_Base<float> normal;
    Types::Color4f color;
};
/// The coordinates of such a vertex for each texture unit.
using ImmediateTexCoords = std::array<Types::Vector4_Base<float>, TextureUnitCount>;

/// A bit for each face that a draw of polygons shows.
namespace FaceBit {
inline constexpr std::uint8_t Front = 1;
inline constexpr std::uint8_t Back = 2;
inline constexpr std::uint8_t Both = 3;
} // namespace FaceBit

/// One step of a command list: a draw of instances of a primitive buffer, a draw of immediate vertices, or a clear.
struct Command {
    enum class Kind : std::uint8_t { Draw, Immediate, Clear };

    Kind kind = Kind::Draw;
    Pipeline pipeline = Pipeline::Triangles;
    std::uint8_t faces = FaceBit::Both;
    bool hasNormals = false; ///< vertices have normals
    bool hasColors = false; ///< vertices have colours of their own beside that of the draw
    std::uint32_t state = 0; ///< number of the state key
    std::uint32_t first = 0; ///< first instance, or first immediate index
    std::uint32_t count = 0; ///< instances, or immediate indices
    Token clearMask = 0; ///< buffers to clear
    std::uint32_t colorInstance = 0; ///< the instance with the colour of an immediate draw that has colours of its own
    PrimitiveBuffer const* buffer = nullptr;
    Shader const* shader = nullptr;
};

/// True when two draws, one after the other, may be carried out as one.
inline bool CanJoin(Command const& p_first, Command const& p_second) {
    bool const isAlike = p_first.buffer == p_second.buffer && p_first.state == p_second.state &&
        p_first.shader == p_second.shader && p_first.kind == p_second.kind && p_first.pipeline == p_second.pipeline &&
        p_first.faces == p_second.faces;
    // Draws of one shape agree in what its vertices have. Immediate ones with colours name one instance for all vertices.
    return isAlike &&
        (p_first.kind == Command::Kind::Draw ||
            (p_first.hasNormals == p_second.hasNormals && !p_first.hasColors && !p_second.hasColors));
}

/// Which version of each group is in force. Equal numbers mean equal groups.
struct StateKey {
    /// The version of a group that no command of the list depends on.
    static constexpr std::uint32_t NoVersion = 0xFFFFFFFF;

    std::array<std::uint32_t, StateItem::Count> version{};
    EnableBit::Type enables = 0;
};

/// Draws and clears in the order in which they were asked for, with everything that they need. Filled by `Agl`, which
/// merges consecutive draws that differ in nothing but transformation and colour; carried out by a back end. Groups of
/// state are kept once per change, not once per command. Emptying it keeps its memory for the next frame.
class QOR_FRAMEWORK_API CommandList {
public:
    std::vector<Command> commands;
    std::vector<Instance> instances;
    std::vector<ImmediateVertex> vertices;
    /// For the vertices of the same numbers; shorter when the last ones need none, and empty when none does.
    std::vector<ImmediateTexCoords> texCoords;
    std::vector<float> stippleStarts; ///< likewise: pixels that the line pattern has gone when a line starts there
    std::vector<std::uint32_t> indices; ///< into vertices
    std::vector<StateKey> states;

    /// Lets a draw whose instances or indices follow those of the last command join it; false when it cannot.
    bool Join(Command const& p_draw) {
        if (commands.empty() || !CanJoin(commands.back(), p_draw)) {
            return false;
        }
        commands.back().count += p_draw.count;
        return true;
    }

    /// Adds a version of a group and returns its number.
    std::uint32_t AddVersion(std::size_t p_item, State const& p_state) {
        return AddVersion(p_item, p_state.Item(p_item));
    }
    std::uint32_t AddVersion(std::size_t p_item, std::byte const* p_bytes);
    /// The bytes of a version of a group.
    std::byte const* Version(std::size_t p_item, std::uint32_t p_version) const {
        return (*_versions)[p_item].data() + p_version * State::ItemSize(p_item);
    }
    /// The whole state of a command.
    State Resolve(Command const& p_command) const;

    /// Keeps a resource alive until the list is emptied.
    void Keep(std::shared_ptr<void const> p_resource) { _kept.push_back(std::move(p_resource)); }
    /// The texture with that number, for back ends; nullptr when the number is 0 or no command needs it.
    Texture const* FindTexture(std::uint64_t p_id) const;
    /// All textures that commands of the list may need.
    std::vector<std::shared_ptr<Texture const>> const& Textures() const { return _textures; }
    void KeepTexture(std::shared_ptr<Texture const> p_texture);
    /// Takes over what the other list keeps alive.
    void TakeKept(CommandList& p_other);

    /// Makes those arrays that go with the vertices as long as these, unless they are empty.
    void Pad();
    bool IsEmpty() const { return commands.empty(); }
    void Clear();

private:
    using Versions = std::array<std::vector<std::byte>, StateItem::Count>;

    std::unique_ptr<Versions> _versions = std::make_unique<Versions>(); // apart, so that lists swap at little cost
    std::vector<std::shared_ptr<void const>> _kept;
    std::vector<std::shared_ptr<Texture const>> _textures;
};

} // namespace Qor::Chart::Ogl
