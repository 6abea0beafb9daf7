#include "render/nodes/PaneDecoration.h"

#include "render/nodes/OverlayShapes.h"

#include "render/context/DrawContext.h"
#include "framework/library/Box.h"
#include "framework/library/FilledBox.h"
#include "framework/library/PlainState.h"
#include "framework/ogl/Agl.h"
#include "framework/ogl/PushAttribScope.h"
#include "framework/ogl/Text.h"
#include "framework/types/Color4f.h"
#include "framework/utility/Scoped.h"

namespace Qor::Chart::Render {

namespace {

using namespace Ogl::Tokens;
using Agl = Utility::Scoped<Ogl::Agl>;

constexpr double BackgroundDepth = -0.999;
constexpr float GripLineWidth = 7;
constexpr float TitleGap = 2; ///< between a title and the buttons beside it
constexpr int BandAlpha = 50;
constexpr int UpwardBandAlpha = 100;

/// Takes the pane's pixels while it lives, whatever the scene's matrices are.
class PixelMatrices {
public:
    PixelMatrices(Agl& p_agl, Types::Viewport<0> const& p_pane) : _agl(p_agl) {
        _agl->MatrixMode(AGL_PROJECTION);
        _agl->PushMatrix();
        _agl->LoadIdentity();
        _agl->Ortho2D(p_pane);
        _agl->MatrixMode(AGL_MODELVIEW);
        _agl->PushMatrix();
        _agl->LoadIdentity();
    }
    ~PixelMatrices() {
        _agl->MatrixMode(AGL_PROJECTION);
        _agl->PopMatrix();
        _agl->MatrixMode(AGL_MODELVIEW);
        _agl->PopMatrix();
    }
    PixelMatrices(PixelMatrices const&) = delete;
    PixelMatrices& operator=(PixelMatrices const&) = delete;

private:
    Agl& _agl;
};

/// Shows the current colour alone, in front of everything. To be called within a `PushAttrib` of all groups.
void SetFlatState(Agl& p_agl) {
    Library::SetPlainState(*p_agl);
    p_agl->Disable(AGL_DEPTH_TEST);
    p_agl->Disable(AGL_LINE_SMOOTH);
}

void DrawLine(Agl& p_agl, Types::Pos const& p_from, Types::Pos const& p_to) {
    p_agl->Pixel(p_from.x, p_from.y);
    p_agl->Pixel(p_to.x, p_to.y);
}

} // namespace

PaneDecoration::PaneDecoration(DrawContext const& p_context) : _context(p_context), _pane(p_context.Viewport().Top()) {}

void PaneDecoration::DrawBackground(QColor const& p_lower, std::optional<QColor> const& p_upper) const {
    if (p_lower.alpha() == 0)
        return;
    QColor const& upper = p_upper ? *p_upper : p_lower;
    Agl agl(_context.Graphics());
    Ogl::PushAttribScope const saved(agl, AGL_ALL_ATTRIB_BITS);
    SetFlatState(agl);
    agl->DepthMask(false);
    PixelMatrices const matrices(agl, _pane);
    agl->Begin(AGL_QUADS);
    agl->Color(p_lower);
    agl->Pixel(0, 0, BackgroundDepth);
    agl->Pixel(_pane.width, 0, BackgroundDepth);
    agl->Color(upper);
    agl->Pixel(_pane.width, _pane.height, BackgroundDepth);
    agl->Pixel(0, _pane.height, BackgroundDepth);
    agl->End();
}

void PaneDecoration::DrawBorder(QColor const& p_color) const {
    Library::Box const border(p_color);
    border(_context.Graphics(), Rectangle(0, 0, _pane.width - 1, _pane.height - 1));
}

void PaneDecoration::DrawTitleBar(Rectangle const& p_bar, QColor const& p_color) const {
    Library::Box const box(Qt::darkGray, p_color);
    box(_context.Graphics(), p_bar);
}

void PaneDecoration::DrawTitle(
    Rectangle const& p_bar, std::wstring const& p_title, Ogl::Text& p_font, float p_buttonsBegin) const {
    if (p_title.empty())
        return;
    Rectangle place = p_bar;
    auto const titleEnd = p_bar.x + (p_bar.width + static_cast<float>(p_font.Extents(p_title).width)) / 2;
    if (titleEnd + TitleGap > p_buttonsBegin)
        place.width = p_buttonsBegin - TitleGap - p_bar.x;
    p_font.SetColor(QColor(Qt::black));
    Agl agl(_context.Graphics());
    p_font.Draw(*agl, p_title, place);
}

void PaneDecoration::DrawGrips(std::optional<PaneLayout::Grip> p_hovered) const {
    Agl agl(_context.Graphics());
    Ogl::PushAttribScope const saved(agl, AGL_ALL_ATTRIB_BITS);
    SetFlatState(agl);
    agl->LineWidth(GripLineWidth);
    agl->Begin(AGL_LINES);
    for (PaneLayout::Grip const grip : PaneLayout::Grips) {
        agl->Color(grip == p_hovered ? _context.Schema().Top().highlightColor : QColor(Qt::darkGray));
        PaneLayout::GripLines const lines = PaneLayout::LinesOf(grip, _pane);
        DrawLine(agl, lines.corner, lines.alongWidth);
        DrawLine(agl, lines.corner, lines.alongHeight);
    }
    agl->End();
}

void PaneDecoration::DrawRubberBand(Rectangle const& p_band, bool p_isInset) const {
    Rectangle bounds = _pane;
    if (p_isInset)
        bounds.Grow(-1);
    Types::Schema const& schema = _context.Schema().Top();
    Rectangle band = p_band.Normalized().Clamp(bounds).Translate(-_pane.x, -_pane.y);
    band.Normalize().Grow(static_cast<float>(schema.rubberBandMargin));

    using Library::FilledBox;
    QColor const& color = schema.highlightColor;
    FilledBox const solid(color, OverlayShapes::WithAlpha(color, BandAlpha), FilledBox::Mode::Solid);
    solid(_context.Graphics(), band);
    if (p_band.height > 0) {
        FilledBox const hatched(color, OverlayShapes::WithAlpha(color, UpwardBandAlpha), FilledBox::Mode::Hatched);
        hatched(_context.Graphics(), band);
    }
}

} // namespace Qor::Chart::Render
