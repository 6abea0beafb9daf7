#include "framework/ogl/Shader.h"

namespace Qor::Chart::Ogl {

Shader::Shader(ShaderSource const& p_source, std::uint32_t p_options) : _source(p_source), _options(p_options) {}

Shader::~Shader() = default;

void Shader::Fail(std::string const& p_log) const {
    _log = p_log.empty() ? "The driver gives no reason." : p_log;
}

} // namespace Qor::Chart::Ogl
