#include "render/nodes/TextureWidget.h"

#include "render/context/DrawContext.h"
#include "render/context/EventDispatcher.h"
#include "render/context/SceneCapabilities.h"
#include "framework/algorithms/Hit.h"
#include "framework/library/Box.h"
#include "framework/library/TexturedQuad.h"

#include <utility>

namespace Qor::Chart::Render {

namespace {

QColor Faded(QColor p_color, float p_opacity) {
    p_color.setAlphaF(p_color.alphaF() * p_opacity);
    return p_color;
}

} // namespace

TextureWidget::TextureWidget(std::shared_ptr<Library::Texture const> p_texture)
    : _texture(std::move(p_texture)), _opacity(FadeCriteria()) {}

void TextureWidget::Set(Flag p_flag, bool p_on) {
    _flags = p_on ? _flags | p_flag : _flags & ~static_cast<std::uint32_t>(p_flag);
    _opacity.SetTarget(Has(FlagShown) ? 1.0F : 0.0F, Has(FlagAnimated));
}

bool TextureWidget::IsHit(Types::Pos const& p_pos) const {
    return Algorithms::Hit::IsHit(_rectangle, p_pos);
}

void TextureWidget::Draw(DrawContext const& p_context) {
    if (!p_context.Capabilities().AnimationsOn())
        _opacity.Jump();
    if (!_opacity.IsComplete())
        p_context.Dispatcher().RequestRedraw(RedrawMilliseconds);
    float const opacity = _opacity.Value();
    if (opacity <= 0 || _rectangle.IsEmpty())
        return;
    if (Has(FlagHover)) {
        Types::Viewport<0> frame = _rectangle;
        frame.width -= 1;
        frame.height -= 1;
        Library::Box const background(
            Faded(Qt::darkGray, opacity), Faded(p_context.Schema().Top().highlightColor, opacity));
        background(p_context.Graphics(), frame);
    }
    if (!_texture)
        return;
    Library::TexturedQuad quad(_rectangle);
    quad.SetColor(Faded(_mode == TextureMode::Tinted ? _color : QColor(Qt::white), opacity));
    quad(p_context.Graphics(), *_texture);
}

} // namespace Qor::Chart::Render
