#include "framework/ogl/TextureSampling.h"

#include "framework/types/TextureUnit.h"

#include <cmath>

namespace Qor::Chart::Ogl {

using namespace Tokens;

namespace {

bool IsWrap(Token p_wrap) {
    return p_wrap == AGL_REPEAT || p_wrap == AGL_MIRRORED_REPEAT || p_wrap == AGL_CLAMP_TO_EDGE ||
        p_wrap == AGL_CLAMP_TO_BORDER;
}

bool IsFilter(Token p_filter) {
    return p_filter == AGL_NEAREST || p_filter == AGL_LINEAR;
}

} // namespace

bool TextureSampling::IsValid() const {
    bool const isMipmapped = minification >= AGL_NEAREST_MIPMAP_NEAREST && minification <= AGL_LINEAR_MIPMAP_LINEAR;
    return (IsFilter(minification) || isMipmapped) && IsFilter(magnification) && IsWrap(wrapS) && IsWrap(wrapT) &&
        std::isfinite(lodBias) && std::isfinite(maxAnisotropy) && maxAnisotropy >= 1;
}

TextureSampling TextureSampling::Of(Types::TextureUnit const& p_unit) {
    TextureSampling sampling;
    sampling.minification = static_cast<Token>(p_unit.minification);
    sampling.magnification = static_cast<Token>(p_unit.magnification);
    sampling.wrapS = static_cast<Token>(p_unit.wrapS);
    sampling.wrapT = static_cast<Token>(p_unit.wrapT);
    sampling.borderColor = p_unit.borderColor;
    sampling.lodBias = p_unit.lodBias;
    sampling.maxAnisotropy = p_unit.maxAnisotropy;
    return sampling;
}

} // namespace Qor::Chart::Ogl
