#include "framework/ogl/GenericShader.h"

#include <cmath>

namespace Qor::Chart::Ogl {

namespace {

// As the source of the shader reads them; the cutoff follows from bit 8 on, of 255.
constexpr std::uint32_t OptionTextures = 4;
constexpr std::uint32_t OptionCutout = 8;
constexpr std::uint32_t OptionOpaque = 16;

} // namespace

std::uint32_t GenericShader::State::ProgramOptions() const {
    auto bits = static_cast<std::uint32_t>(_options.to_ulong());
    bits |= _look.textures.any() ? OptionTextures : 0;
    if (_look.alphaMode == AlphaMode::Cutout) {
        bits |= OptionCutout | (static_cast<std::uint32_t>(std::lround(_look.alphaCutoff * 255)) << 8U);
    }
    return bits | (_look.alphaMode == AlphaMode::Opaque ? OptionOpaque : 0);
}

GenericShader::GenericShader(State const& p_state, ShaderSource const& p_source)
    : Shader(p_source, p_state.ProgramOptions()) {}

} // namespace Qor::Chart::Ogl
