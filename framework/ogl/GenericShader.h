#pragma once

#include "framework/Export.h"
#include "framework/ogl/Shader.h"
#include "framework/types/Color4f.h"

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace Qor::Chart::Ogl {

/// The shader of simple objects. It lights with the lights in force, whatever the material: the object's colour is its
/// ambient and diffuse colour. When lighting is off or no light is in force it lights with a headlight of its own at the
/// viewer, if the state says so, else it leaves colours as they are. Both faces are lit. Vertices without normals (points
/// and lines, mostly) keep their colour.
class QOR_FRAMEWORK_API GenericShader : public Shader {
public:
    /// What the alpha of textures and vertices means.
    enum class AlphaMode : std::uint8_t {
        Automatic, ///< it lets through what lies behind, where there is any
        Opaque, ///< nothing
        Cutout, ///< a pixel is seen as a whole, or not at all when its alpha is below the cutoff
        Blended, ///< as automatic, also for what could be opaque
    };

    /// What is wanted of whoever draws with the shader, beside its two options. Part of it is done by the shader, the
    /// rest by them.
    struct Look {
        float opacity = 1; ///< a factor of the alpha of what is drawn
        AlphaMode alphaMode = AlphaMode::Automatic;
        float alphaCutoff = 0.5F;
        std::bitset<2> textures; ///< units whose texture is to be seen
        std::bitset<2> translucentTextures; ///< those of them that are not opaque everywhere
        bool hidesVertexColors = false;
        std::optional<Types::Color4f> color; ///< of what names none

        bool operator==(Look const&) const = default;
    };

    /// The two options of a generic shader, and the look that goes with them.
    class QOR_FRAMEWORK_API State {
    public:
        /// Bit 0: light with a headlight when no other light is in force.
        static constexpr std::size_t Headlight = 0;
        /// Bit 1: vertices with colours of their own are drawn in these, multiplied by the current colour, and the
        /// texture units are applied. Clear: everything is drawn in the current colour alone, but for the textures of
        /// the look.
        static constexpr std::size_t VertexColors = 1;

        /// With the headlight, without the colours of vertices.
        State() = default;
        explicit State(std::bitset<2> const& p_options) : _options(p_options) {}
        State(std::bitset<2> const& p_options, Look const& p_look)
            : _options(p_options), _look(p_look), _isPlain(p_look == Look()) {}

        std::bitset<2> const& Options() const { return _options; }
        Look const& GetLook() const { return _look; }
        /// Whether the look is the usual one.
        bool IsPlain() const { return _isPlain; }
        /// What a program is made for: the two options, and in further bits what the shader does of the look.
        std::uint32_t ProgramOptions() const;
        bool operator==(State const&) const = default;

    private:
        std::bitset<2> _options{1};
        Look _look;
        bool _isPlain = true;
    };

    explicit GenericShader(State const& p_state, ShaderSource const& p_source = ShaderSource::Generic());

    /// The two options, without a look.
    State CurrentState() const { return State(std::bitset<2>(Options())); }
};

} // namespace Qor::Chart::Ogl
