#include "framework/ogl/GenericShader.h"

namespace Qor::Chart::Ogl {

GenericShader::GenericShader(State const& p_state, ShaderSource const& p_source)
    : Shader(p_source, static_cast<std::uint32_t>(p_state.Options().to_ulong())) {}

} // namespace Qor::Chart::Ogl
