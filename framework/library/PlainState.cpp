#include "framework/library/PlainState.h"

#include "framework/ogl/Agl.h"

namespace Qor::Chart::Library {

using namespace Ogl::Tokens;

void SetPlainState(Ogl::Agl& p_agl) {
    for (unsigned unit = p_agl.GetMaxTextures(); unit-- > 0;) {
        p_agl.ActiveTexture(AGL_TEXTURE0 + unit);
        p_agl.Disable(AGL_TEXTURE_2D);
    }
    for (Ogl::Token const capability :
        {AGL_LIGHTING, AGL_CULL_FACE, AGL_POLYGON_STIPPLE, AGL_LINE_STIPPLE, AGL_POLYGON_OFFSET_FILL}) {
        p_agl.Disable(capability);
    }
    p_agl.PolygonMode(AGL_FRONT_AND_BACK, AGL_FILL);
    p_agl.Enable(AGL_BLEND);
    p_agl.BlendEquation(AGL_FUNC_ADD);
    p_agl.BlendFunc(AGL_SRC_ALPHA, AGL_ONE_MINUS_SRC_ALPHA);
}

} // namespace Qor::Chart::Library
