#pragma once

#include "framework/Export.h"
#include "framework/ogl/Shader.h"

#include <bitset>

namespace Qor::Chart::Ogl {

/// The shader of simple objects. It lights with the lights in force, whatever the material: the object's colour is its
/// ambient and diffuse colour. When lighting is off or no light is in force it lights with a headlight of its own at the
/// viewer, if the state says so, else it leaves colours as they are. Both faces are lit. Vertices without normals (points
/// and lines, mostly) keep their colour.
class QOR_FRAMEWORK_API GenericShader : public Shader {
public:
    /// The two options of a generic shader.
    class QOR_FRAMEWORK_API State {
    public:
        /// Bit 0: light with a headlight when no other light is in force.
        static constexpr std::size_t Headlight = 0;
        /// Bit 1: vertices with colours of their own are drawn in these, multiplied by the current colour, and the
        /// texture units are applied. Clear: everything is drawn in the current colour alone.
        static constexpr std::size_t VertexColors = 1;

        /// With the headlight, without the colours of vertices.
        State() = default;
        explicit State(std::bitset<2> const& p_options) : _options(p_options) {}

        std::bitset<2> const& Options() const { return _options; }
        bool operator==(State const&) const = default;

    private:
        std::bitset<2> _options{1};
    };

    explicit GenericShader(State const& p_state, ShaderSource const& p_source = ShaderSource::Generic());

    State CurrentState() const { return State(std::bitset<2>(Options())); }
};

} // namespace Qor::Chart::Ogl
