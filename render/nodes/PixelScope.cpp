#include "render/nodes/PixelScope.h"

namespace Qor::Chart::Render {

using namespace Ogl::Tokens;

PixelScope::PixelScope(Utility::Scoped<Ogl::Agl>& p_agl, Types::Viewport<0> const& p_viewport)
    : _agl(*p_agl), _saved(_agl, AGL_ENABLE_BIT | AGL_TRANSFORM_BIT) {
    _agl.Disable(AGL_DEPTH_TEST);
    _agl.MatrixMode(AGL_PROJECTION);
    _agl.PushMatrix();
    _agl.LoadIdentity();
    _agl.Ortho2D(p_viewport);
    _agl.MatrixMode(AGL_MODELVIEW);
    _agl.PushMatrix();
    _agl.LoadIdentity();
}

PixelScope::~PixelScope() {
    _agl.MatrixMode(AGL_MODELVIEW);
    _agl.PopMatrix();
    _agl.MatrixMode(AGL_PROJECTION);
    _agl.PopMatrix();
}

} // namespace Qor::Chart::Render
