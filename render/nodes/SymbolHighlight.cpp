#include "render/nodes/SymbolHighlight.h"

#include "render/nodes/BlendOver.h"
#include "render/nodes/LoadedSymbol.h"
#include "render/context/DrawContext.h"
#include "framework/ogl/Agl.h"
#include "framework/ogl/Bind.h"
#include "framework/ogl/PushAttribScope.h"

#include <cmath>
#include <cstdint>

namespace Qor::Chart::Render {

namespace {

using namespace Ogl::Tokens;
using Agl = Utility::Scoped<Ogl::Agl>;

/// The distance between colours, as sum over the channels, below which one cannot mark the other.
constexpr double TooAlike = 0.6;
/// The rings come this part of the depth range nearer than the surface, so that they lie on what touches it.
constexpr double RingLift = 0.001;
constexpr Ogl::Token SavedState = AGL_CURRENT_BIT | AGL_COLOR_BUFFER_BIT | AGL_DEPTH_BUFFER_BIT | AGL_ENABLE_BIT |
    AGL_LINE_BIT | AGL_POINT_BIT | AGL_POLYGON_BIT | AGL_STENCIL_BUFFER_BIT | AGL_VIEWPORT_BIT;

QColor ContrastOf(QColor const& p_color) {
    double const luminance = 0.299 * p_color.redF() + 0.587 * p_color.greenF() + 0.114 * p_color.blueF();
    return luminance > 0.5 ? QColor(0, 0, 0) : QColor(255, 255, 255);
}

bool AreAlike(QColor const& p_a, QColor const& p_b) {
    double const distance = std::fabs(p_a.redF() - p_b.redF()) + std::fabs(p_a.greenF() - p_b.greenF()) +
        std::fabs(p_a.blueF() - p_b.blueF());
    return distance < TooAlike;
}

Types::Color4f SurfaceOf(Ogl::Highlight const& p_look, QColor const& p_object, float p_amount) {
    if (!AreAlike(p_look.Color(), p_object))
        return Types::Color4f(p_look.Blend(p_object, p_amount));
    QColor contrast = ContrastOf(p_object);
    contrast.setAlphaF(p_look.Color().alphaF() / 2);
    return Types::Color4f(Ogl::Highlight(contrast).Blend(p_object, p_amount));
}

Types::Color4f Opaque(QColor const& p_color, float p_amount) {
    Types::Color4f color(p_color);
    color.alpha = p_amount;
    return color;
}

/// Marks the pixels of what is drawn in one bit of the stencil buffer; does nothing without a bit.
class StencilMark {
public:
    StencilMark(Agl& p_agl, Utility::BoundedCounter const& p_bits)
        : _agl(p_agl), _bit(p_bits.Available() > 0 ? std::uint32_t{1} << p_bits.Value() : 0) {
        if (_bit == 0)
            return;
        _agl->Enable(AGL_STENCIL_TEST);
        _agl->StencilMask(_bit);
        _agl->StencilFunc(AGL_ALWAYS, static_cast<int>(_bit), _bit);
        _agl->StencilOp(AGL_KEEP, AGL_KEEP, AGL_REPLACE);
    }
    /// What is drawn from now on stays outside the mark.
    void KeepOut() {
        if (_bit == 0)
            return;
        _agl->StencilFunc(AGL_NOTEQUAL, static_cast<int>(_bit), _bit);
        _agl->StencilOp(AGL_KEEP, AGL_KEEP, AGL_KEEP);
    }
    /// What is drawn from now on takes the mark away and leaves no colour.
    bool Erase() {
        if (_bit == 0)
            return false;
        _agl->StencilFunc(AGL_ALWAYS, 0, _bit);
        _agl->StencilOp(AGL_KEEP, AGL_KEEP, AGL_ZERO);
        _agl->ColorMask(false, false, false, false);
        return true;
    }

private:
    Agl& _agl;
    std::uint32_t _bit;
};

} // namespace

SymbolHighlight::SymbolHighlight(Ogl::Highlight const& p_look, SymbolLook const& p_object, float p_amount)
    : _object(p_object)
    , _surface(SurfaceOf(p_look, p_object.color.ToQColor(), p_amount))
    , _innerRing(Opaque(p_look.Color(), p_amount))
    , _outerRing(Opaque(ContrastOf(p_look.Color()), p_amount))
    , _ringWidth(p_look.LineWidth())
    , _amount(p_amount) {
    if (p_object.isTransparent)
        _surface.alpha *= p_amount; // the draw pass has drawn it already
}

void SymbolHighlight::Draw(DrawContext const& p_context, Agl& p_agl, LoadedSymbol const& p_symbol) const {
    Ogl::PushAttribScope const saved(p_agl, SavedState);
    p_agl->DepthFunc(AGL_LEQUAL);
    if (_amount > 0)
        DrawRings(p_context, p_agl, p_symbol);
    else
        DrawSurface(p_context, p_agl, p_symbol);
}

void SymbolHighlight::DrawSurface(DrawContext const& p_context, Agl& p_agl, LoadedSymbol const& p_symbol) const {
    Ogl::PushAttribScope const saved(p_agl, AGL_CURRENT_BIT | AGL_COLOR_BUFFER_BIT | AGL_TEXTURE_BIT);
    Ogl::Bind<Ogl::Shader> const shader(p_agl, p_symbol.Shader(p_context, p_agl));
    if (_surface.alpha < 1.0F || _object.isTransparent)
        BlendOver(p_agl);
    _object.EnableTextures(*p_agl);
    p_agl->Color(_surface);
    p_agl->Draw(_object.BufferOf(p_symbol, p_agl));
}

/// Wide edges stick out of the surface by half their width; what they cover of it is masked.
void SymbolHighlight::DrawRings(DrawContext const& p_context, Agl& p_agl, LoadedSymbol const& p_symbol) const {
    StencilMark mark(p_agl, p_context.StencilBits().Top());
    DrawSurface(p_context, p_agl, p_symbol);
    Ogl::Bind<Ogl::Shader> const shader(p_agl, p_symbol.FlatShader(p_context, p_agl));
    float const pointSize = p_agl->Current().point.size;
    mark.KeepOut();
    BlendOver(p_agl);
    p_agl->DepthMask(false);
    auto const& depths = p_agl->Current().viewport;
    double const nearest = static_cast<double>(depths.nearDepth);
    double const farthest = static_cast<double>(depths.farDepth);
    p_agl->DepthRange(nearest, farthest - RingLift * (farthest - nearest));
    p_agl->Disable(AGL_LIGHTING);
    p_agl->PolygonMode(AGL_FRONT_AND_BACK, AGL_LINE);
    for (bool const isOuter : {true, false}) {
        float const reach = (isOuter ? 4.0F : 2.0F) * _ringWidth;
        p_agl->LineWidth(reach);
        p_agl->PointSize(pointSize + reach);
        p_agl->Color(isOuter ? _outerRing : _innerRing);
        p_agl->Draw(p_symbol.Buffer());
    }
    if (!mark.Erase())
        return;
    p_agl->PolygonMode(AGL_FRONT_AND_BACK, AGL_FILL);
    p_agl->PointSize(pointSize);
    p_agl->DepthRange(nearest, farthest);
    p_agl->Draw(p_symbol.Buffer());
}

} // namespace Qor::Chart::Render
