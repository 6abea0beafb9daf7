#include "render/nodes/ToolbarPainter.h"

#include "render/nodes/OverlayShapes.h"
#include "render/nodes/SchemaFont.h"
#include "render/context/DrawContext.h"
#include "framework/library/Box.h"
#include "framework/library/TexturedQuad.h"
#include "framework/ogl/Agl.h"
#include "framework/ogl/PushAttribScope.h"
#include "framework/ogl/Text.h"
#include "framework/types/Math.h"
#include "framework/utility/Scoped.h"

#include <algorithm>

namespace Qor::Chart::Render {

namespace {

using namespace Ogl::Tokens;
using Agl = Utility::Scoped<Ogl::Agl>;
using Rectangle = Types::Viewport<0>;

// Lengths at pixel ratio 1.
constexpr float ThinnerThanTitleBar = 4;
constexpr float LabelPadding = 4;
constexpr float TipPadding = 4;
constexpr float WidestTip = 300;

} // namespace

ToolbarPainter::ToolbarPainter(DrawContext const& p_context, SchemaFont& p_font)
    : _context(p_context), _font(p_font), _ratio(OverlayShapes::PixelRatio(p_context)) {
    _font.Take(p_context);
    _font->SetHorizontalAlignment(Ogl::HorizontalAlignment::Center);
    _font->SetVerticalAlignment(Ogl::VerticalAlignment::Center);
}

float ToolbarPainter::Side() const {
    auto const titleBar = static_cast<float>(_context.Schema().Top().titleBarHeight);
    return ToolbarLayout::Scaled(titleBar - ThinnerThanTitleBar, _ratio);
}

float ToolbarPainter::WidthOf(ToolbarButton const& p_button) const {
    if (p_button.texture)
        return Side();
    auto const text = static_cast<float>(_font->Extents(p_button.label).width);
    return text + 2 * ToolbarLayout::Scaled(LabelPadding, _ratio);
}

Types::Size ToolbarPainter::TipSize(std::wstring const& p_tip, Types::Size const& p_pane) const {
    int const padding = 2 * static_cast<int>(ToolbarLayout::Scaled(TipPadding, _ratio));
    int const width = std::min(static_cast<int>(ToolbarLayout::Scaled(WidestTip, _ratio)), p_pane.width - padding);
    Types::Size const text = _font->Extents(p_tip, std::max(width, 1));
    return {std::min(text.width + padding, p_pane.width), std::min(text.height + padding, p_pane.height)};
}

void ToolbarPainter::DrawBar(ToolbarLayout const& p_layout) const {
    Types::Schema const& schema = _context.Schema().Top();
    OverlayShapes::DrawFrame(_context, p_layout.bar, schema.borderColor, schema.titleColor);
    if (p_layout.handle.IsEmpty())
        return;
    float const line = ToolbarLayout::Scaled(1, _ratio);
    Rectangle const& handle = p_layout.handle;
    for (float const at : {line, 4 * line}) {
        Rectangle const mark = p_layout.isVertical ? Rectangle(handle.x, handle.y + at, handle.width, line)
                                                   : Rectangle(handle.x + at, handle.y, line, handle.height);
        Library::Box const box({}, schema.borderColor);
        box(_context.Graphics(), mark);
    }
}

void ToolbarPainter::DrawButton(ToolbarButton const& p_button, Rectangle const& p_place, Look p_look) const {
    Types::Schema const& schema = _context.Schema().Top();
    bool const isPressed = p_look == Look::Pressed;
    OverlayShapes::DrawButtonGround(
        _context, p_place, {p_button.isEnabled, p_button.isChecked, p_look == Look::Hovered, isPressed ? 1.0F : 0.0F});
    Rectangle place = p_place;
    if (isPressed && p_button.isEnabled)
        place.Translate(ToolbarLayout::Scaled(1, _ratio), -ToolbarLayout::Scaled(1, _ratio));
    QColor const& color = p_button.isEnabled ? schema.textColor : schema.disabledColor;
    if (!p_button.texture) {
        DrawText(p_button.label, place, color);
        return;
    }
    Library::TexturedQuad quad(OverlayShapes::Fitted(*p_button.texture, place));
    if (p_button.isSign)
        quad.SetColor(color);
    else if (!p_button.isEnabled)
        quad.SetColor(OverlayShapes::WithAlpha(Qt::white, OverlayShapes::DisabledImageAlpha));
    quad(_context.Graphics(), *p_button.texture);
}

void ToolbarPainter::DrawTip(std::wstring const& p_tip, Rectangle const& p_place) const {
    Types::Schema const& schema = _context.Schema().Top();
    OverlayShapes::DrawFrame(_context, p_place, schema.borderColor, schema.titleColor);
    float const padding = ToolbarLayout::Scaled(TipPadding, _ratio);
    DrawText(p_tip, OverlayShapes::Inset(p_place, padding, padding), schema.textColor);
}

void ToolbarPainter::DrawText(std::wstring const& p_text, Rectangle const& p_place, QColor const& p_color) const {
    _font->SetColor(p_color);
    Agl agl(_context.Graphics());
    _font->Draw(*agl, p_text, p_place);
}

} // namespace Qor::Chart::Render
