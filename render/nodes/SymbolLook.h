#pragma once

#include "framework/ogl/Agl.h"
#include "framework/types/Color4f.h"
#include "framework/utility/Scoped.h"
#include "render/nodes/LoadedSymbol.h"

#include <bitset>
#include <cstddef>
#include <memory>

namespace Qor::Chart::Render {

/// How a symbol is drawn in some place: in its own colours and under the render styles around it.
struct SymbolLook {
    Types::Color4f color; ///< its alpha has the opacity in it
    bool isTransparent; ///< something behind it may be seen through it
    std::bitset<2> textures = {}; ///< units that it shows
    float opacity = 1; ///< of the styles alone

    /// Switches the units on, for as long as AGL_TEXTURE_BIT is saved.
    void EnableTextures(Ogl::Agl& p_agl) const {
        for (std::size_t unit = 0; unit < textures.size(); ++unit) {
            if (!textures[unit])
                continue;
            p_agl.ActiveTexture(Ogl::Tokens::AGL_TEXTURE0 + static_cast<Ogl::Token>(unit));
            p_agl.Enable(Ogl::Tokens::AGL_TEXTURE_2D);
        }
    }
    /// What to draw of the symbol.
    std::shared_ptr<Ogl::PrimitiveBuffer const> const& BufferOf(
        LoadedSymbol const& p_symbol, Utility::Scoped<Ogl::Agl>& p_agl) const {
        return textures[1] ? p_symbol.TwiceTexturedBuffer(p_agl) : p_symbol.Buffer();
    }
};

} // namespace Qor::Chart::Render
