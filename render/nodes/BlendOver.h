#pragma once

#include "framework/ogl/Agl.h"
#include "framework/utility/Scoped.h"

namespace Qor::Chart::Render {

/// Draws from now on over what is there, by the alpha of what is drawn.
inline void BlendOver(Utility::Scoped<Ogl::Agl>& p_agl) {
    p_agl->Enable(Ogl::Tokens::AGL_BLEND);
    p_agl->BlendFunc(Ogl::Tokens::AGL_SRC_ALPHA, Ogl::Tokens::AGL_ONE_MINUS_SRC_ALPHA);
}

} // namespace Qor::Chart::Render
