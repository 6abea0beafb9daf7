#include "framework/library/TexturedQuad.h"

#include "framework/library/PlainState.h"
#include "framework/ogl/PushAttribScope.h"
#include "framework/utility/Scoped.h"

#include <cmath>
#include <optional>

namespace Qor::Chart::Library {

using namespace Ogl::Tokens;

TexturedQuad::TexturedQuad(double p_width, double p_height) : _width(p_width), _height(p_height) {}

TexturedQuad::TexturedQuad(Types::Viewport<0> const& p_rectangle)
    : TexturedQuad(static_cast<double>(p_rectangle.width), static_cast<double>(p_rectangle.height)) {
    SetPosition(static_cast<double>(p_rectangle.x), static_cast<double>(p_rectangle.y));
}

TexturedQuad& TexturedQuad::SetPosition(double p_x, double p_y) {
    _x = p_x;
    _y = p_y;
    return *this;
}

TexturedQuad& TexturedQuad::SetDepth(double p_depth) {
    _depth = p_depth;
    return *this;
}

TexturedQuad& TexturedQuad::SetColor(QColor const& p_color) {
    _color = Types::Color4f(p_color);
    return *this;
}

TexturedQuad& TexturedQuad::SetPart(double p_left, double p_bottom, double p_right, double p_top) {
    _lowerLeft = {p_left, p_bottom};
    _upperRight = {p_right, p_top};
    return *this;
}

void TexturedQuad::operator()(Utility::Unscoped<Ogl::Agl> const& p_agl, Texture const& p_texture) const {
    Utility::Scoped<Ogl::Agl> const scope(p_agl);
    Draw(*scope, p_texture);
}

void TexturedQuad::Draw(Ogl::Agl& p_agl, Texture const& p_texture) const {
    bool const hasArea = _width > 0 && _height > 0 && std::isfinite(_x + _y + _width + _height + _depth);
    if (!hasArea || !p_texture.IsValid()) {
        return;
    }
    Ogl::PushAttribScope const saved(p_agl, AGL_ALL_ATTRIB_BITS);
    SetPlainState(p_agl);
    p_texture.Bind(p_agl);
    p_agl.TexEnv(AGL_TEXTURE_ENV_MODE, AGL_MODULATE);
    p_agl.TexSampling(std::nullopt);
    p_agl.Color(_color);
    p_agl.MatrixMode(AGL_TEXTURE);
    p_agl.PushMatrix();
    p_agl.LoadIdentity();

    p_agl.Begin(AGL_QUADS);
    p_agl.TexCoord(_lowerLeft.s, _lowerLeft.t);
    p_agl.Vertex(_x, _y, _depth);
    p_agl.TexCoord(_upperRight.s, _lowerLeft.t);
    p_agl.Vertex(_x + _width, _y, _depth);
    p_agl.TexCoord(_upperRight.s, _upperRight.t);
    p_agl.Vertex(_x + _width, _y + _height, _depth);
    p_agl.TexCoord(_lowerLeft.s, _upperRight.t);
    p_agl.Vertex(_x, _y + _height, _depth);
    p_agl.End();
    p_agl.PopMatrix();
}

} // namespace Qor::Chart::Library
