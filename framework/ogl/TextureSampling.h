#pragma once

#include "framework/Export.h"
#include "framework/ogl/Tokens.h"
#include "framework/types/Color4f.h"

namespace Qor::Chart::Types {
struct TextureUnit;
}

namespace Qor::Chart::Ogl {

/// How a texture is read between and beyond its pixels. The defaults suit an image on a screen. Held and compared as bytes
/// by the state: it has no padding.
struct TextureSampling {
    Token minification = Tokens::AGL_LINEAR; ///< AGL_NEAREST, AGL_LINEAR or one of the four with mipmaps
    Token magnification = Tokens::AGL_LINEAR; ///< AGL_NEAREST or AGL_LINEAR
    Token wrapS =
        Tokens::AGL_CLAMP_TO_EDGE; ///< AGL_REPEAT, AGL_MIRRORED_REPEAT, AGL_CLAMP_TO_EDGE or AGL_CLAMP_TO_BORDER
    Token wrapT = Tokens::AGL_CLAMP_TO_EDGE;
    Types::Color4f borderColor{0, 0, 0, 0}; ///< what lies beyond a border
    float lodBias = 0; ///< added to the mipmap level
    float maxAnisotropy = 1; ///< at least 1; cut to what the device can

    constexpr bool operator==(TextureSampling const&) const = default;

    bool NeedsMipmaps() const { return minification >= Tokens::AGL_NEAREST_MIPMAP_NEAREST; }
    /// False when a filter or a wrap is none of the constants above, or a number is not finite.
    QOR_FRAMEWORK_API bool IsValid() const;
    /// The filters, wraps, border colour, bias and anisotropy of a texture unit.
    QOR_FRAMEWORK_API static TextureSampling Of(Types::TextureUnit const& p_unit);
};

} // namespace Qor::Chart::Ogl
