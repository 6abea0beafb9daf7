#include "framework/library/Style.h"

#include "framework/library/Pattern.h"

namespace Qor::Chart::Library {

using namespace Ogl::Tokens;

namespace {

void Switch(Ogl::Agl& p_agl, Ogl::Token p_capability, bool p_on) {
    p_on ? p_agl.Enable(p_capability) : p_agl.Disable(p_capability);
}

} // namespace

void LineStyle::Apply(Ogl::Agl& p_agl) const {
    p_agl.LineWidth(width);
    Switch(p_agl, AGL_LINE_STIPPLE, pattern != Solid);
    p_agl.LineStipple(patternFactor, pattern);
}

void PointStyle::Apply(Ogl::Agl& p_agl) const {
    p_agl.PointSize(size);
    Switch(p_agl, AGL_POINT_SMOOTH, isRound);
}

void FillStyle::Apply(Ogl::Agl& p_agl) const {
    Ogl::Token const mode = kind == Kind::Outlined ? AGL_LINE : kind == Kind::Corners ? AGL_POINT : AGL_FILL;
    p_agl.PolygonMode(AGL_FRONT_AND_BACK, mode);
    Switch(p_agl, AGL_POLYGON_STIPPLE, kind == Kind::Hatched || kind == Kind::Screened);
    if (kind == Kind::Hatched) {
        p_agl.PolygonStipple(Pattern::HatchPattern().data());
    } else if (kind == Kind::Screened) {
        p_agl.PolygonStipple(Pattern::PolygonStipplePattern(density).data());
    }
    Switch(p_agl, AGL_CULL_FACE, sides != Sides::Both);
    if (sides != Sides::Both) {
        p_agl.CullFace(sides == Sides::Front ? AGL_BACK : AGL_FRONT);
    }
}

void Style::Apply(Ogl::Agl& p_agl) const {
    if (color) {
        p_agl.Color(*color);
    }
    if (line) {
        line->Apply(p_agl);
    }
    if (point) {
        point->Apply(p_agl);
    }
    if (fill) {
        fill->Apply(p_agl);
    }
    if (isLit) {
        Switch(p_agl, AGL_LIGHTING, *isLit);
    }
    if (isTransparent) {
        Switch(p_agl, AGL_BLEND, *isTransparent);
        p_agl.BlendEquation(AGL_FUNC_ADD);
        p_agl.BlendFunc(AGL_SRC_ALPHA, AGL_ONE_MINUS_SRC_ALPHA);
    }
}

StyleScope::StyleScope(Ogl::Agl& p_agl, Style const& p_style) : _agl(p_agl) {
    _agl.PushAttrib(AGL_ALL_ATTRIB_BITS);
    p_style.Apply(_agl);
}

StyleScope::~StyleScope() {
    _agl.PopAttrib();
}

} // namespace Qor::Chart::Library
