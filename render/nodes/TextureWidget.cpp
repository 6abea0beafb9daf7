#include "render/nodes/TextureWidget.h"

#include "render/nodes/OverlayShapes.h"
#include "render/nodes/ShortText.h"
#include "render/nodes/ToolbarLayout.h"
#include "render/events/EventInformation.h"
#include "render/events/EventSink.h"
#include "render/context/DrawContext.h"
#include "render/context/EventDispatcher.h"
#include "render/context/SceneCapabilities.h"
#include "framework/library/TexturedQuad.h"
#include "framework/ogl/Agl.h"
#include "framework/ogl/Text.h"
#include "framework/utility/Scoped.h"

#include <algorithm>
#include <utility>

namespace Qor::Chart::Render {

namespace {

using Agl = Utility::Scoped<Ogl::Agl>;

// Lengths at pixel ratio 1.
constexpr float FramePadding = 3;
constexpr float LabelPadding = 6;
constexpr float FocusLine = 2;
constexpr float ThinnerThanTitleBar = 4; ///< as the buttons of a toolbar

} // namespace

TextureWidget::TextureWidget(std::shared_ptr<Library::Texture const> p_texture)
    : _texture(std::move(p_texture)), _opacity(FadeCriteria()), _pressed(PressCriteria()) {}

TextureWidget::~TextureWidget() = default;

TextureWidget& TextureWidget::SetTexture(std::shared_ptr<Library::Texture const> p_texture) {
    _texture = std::move(p_texture);
    return *this;
}

TextureWidget& TextureWidget::SetLabel(std::wstring const& p_label) {
    _label = ShortText::Of(p_label);
    return *this;
}

TextureWidget& TextureWidget::SetToolTip(std::wstring p_text) {
    _toolTip = std::move(p_text);
    return *this;
}

TextureWidget& TextureWidget::SetTextureMode(TextureMode p_mode) noexcept {
    _mode = p_mode;
    return *this;
}

TextureWidget& TextureWidget::SetColor(QColor const& p_color) {
    _color = p_color;
    return *this;
}

TextureWidget& TextureWidget::SetFramed(bool p_framed) noexcept {
    _isFramed = p_framed;
    return *this;
}

TextureWidget& TextureWidget::SetChecked(bool p_checked) noexcept {
    _isChecked = p_checked;
    return *this;
}

TextureWidget& TextureWidget::SetClicked(std::function<void()> p_clicked) {
    _clicked = std::move(p_clicked);
    return *this;
}

void TextureWidget::FlagChanged(Flag p_flag) {
    _opacity.SetTarget(Has(FlagShown) ? 1.0F : 0.0F, Has(FlagAnimated));
    if (p_flag == FlagFocus && !Has(FlagFocus))
        _hidesFocus = false;
    if (p_flag != FlagDisabled || !Has(FlagDisabled))
        return;
    _isDown = false;
    _pressed.Jump(0);
}

Types::Size TextureWidget::PreferredSize(DrawContext const& p_context) {
    float const ratio = OverlayShapes::PixelRatio(p_context);
    auto const titleBar = static_cast<float>(p_context.Schema().Top().titleBarHeight);
    int const frame = _isFramed ? 2 * static_cast<int>(ToolbarLayout::Scaled(FramePadding, ratio)) : 0;
    int const side = static_cast<int>(ToolbarLayout::Scaled(titleBar - ThinnerThanTitleBar, ratio)) + frame;
    if (_texture || _label.empty())
        return {side, side};
    _font.Take(p_context);
    Types::Size const text = _font->Extents(_label);
    int const padding = 2 * static_cast<int>(ToolbarLayout::Scaled(LabelPadding, ratio));
    return {std::max(side, text.width + padding), std::max(side, text.height + frame)};
}

void TextureWidget::Draw(DrawContext const& p_context) {
    if (!p_context.Capabilities().AnimationsOn()) {
        _opacity.Jump();
        _pressed.Jump();
    }
    if (!_opacity.IsComplete() || !_pressed.IsComplete())
        p_context.Dispatcher().RequestRedraw(RedrawMilliseconds);
    float const opacity = _opacity.Value();
    if (opacity <= 0 || Rectangle().IsEmpty())
        return;
    DrawGround(p_context, opacity);
    DrawSign(p_context, opacity);
    DrawFocus(p_context, opacity);
}

void TextureWidget::DrawGround(DrawContext const& p_context, float p_opacity) const {
    using Shapes = OverlayShapes;
    Types::Schema const& schema = p_context.Schema().Top();
    if (_isFramed)
        Shapes::DrawFrame(p_context, Rectangle(), Shapes::Faded(schema.borderColor, p_opacity),
            Shapes::Faded(schema.titleColor, p_opacity));
    bool const isLit = !_isFramed && Has(FlagHover) && !Has(FlagDisabled);
    if (isLit)
        Shapes::DrawFrame(p_context, Rectangle(), Shapes::Faded(Qt::darkGray, p_opacity),
            Shapes::Faded(schema.highlightColor, p_opacity));
    Shapes::DrawButtonGround(p_context, Rectangle(),
        {!Has(FlagDisabled), _isChecked, Has(FlagHover) && !isLit, _pressed.Value(), p_opacity});
}

QColor TextureWidget::SignColor(DrawContext const& p_context) const {
    Types::Schema const& schema = p_context.Schema().Top();
    if (Has(FlagDisabled))
        return schema.disabledColor;
    return _color.isValid() ? _color : schema.textColor;
}

void TextureWidget::DrawSign(DrawContext const& p_context, float p_opacity) {
    using Shapes = OverlayShapes;
    float const ratio = Shapes::PixelRatio(p_context);
    Types::Viewport<0> place = Rectangle();
    if (_isFramed && _texture)
        place = Shapes::Inset(
            place, ToolbarLayout::Scaled(FramePadding, ratio), ToolbarLayout::Scaled(FramePadding, ratio));
    if (_pressed.Target() > 0)
        place.Translate(ToolbarLayout::Scaled(1, ratio), -ToolbarLayout::Scaled(1, ratio));
    if (_texture) {
        Library::TexturedQuad quad(Shapes::Fitted(*_texture, place));
        QColor const image = Has(FlagDisabled) ? Shapes::WithAlpha(Qt::white, Shapes::DisabledImageAlpha) : Qt::white;
        quad.SetColor(Shapes::Faded(_mode == TextureMode::Tinted ? SignColor(p_context) : image, p_opacity));
        quad(p_context.Graphics(), *_texture);
    } else if (!_label.empty()) {
        Types::Schema const& schema = p_context.Schema().Top();
        _font.Take(p_context);
        _font->SetHorizontalAlignment(Ogl::HorizontalAlignment::Center);
        _font->SetVerticalAlignment(Ogl::VerticalAlignment::Center);
        _font->SetColor(Shapes::Faded(Has(FlagDisabled) ? schema.disabledColor : schema.textColor, p_opacity));
        Agl agl(p_context.Graphics());
        _font->Draw(*agl, _label, Shapes::Inset(place, ToolbarLayout::Scaled(1, ratio), 0));
    }
}

void TextureWidget::DrawFocus(DrawContext const& p_context, float p_opacity) const {
    if (!Has(FlagFocus) || _hidesFocus)
        return;
    float const line = ToolbarLayout::Scaled(FocusLine, OverlayShapes::PixelRatio(p_context));
    OverlayShapes::DrawFrame(p_context, Rectangle(),
        OverlayShapes::Faded(p_context.Schema().Top().selectionColor, p_opacity), QColor(), line);
}

/// A button goes down at once, and up again in a while.
void TextureWidget::SetDown(bool p_isDown, EventInformation& p_event) {
    if (p_isDown)
        _pressed.Jump(1);
    else
        _pressed.SetTarget(0);
    p_event.Sink().RequestRedraw();
}

void TextureWidget::Click() {
    std::function<void()> const clicked = _clicked; // it may give the widget another one, or destroy it
    if (clicked)
        clicked();
}

bool TextureWidget::Press(Types::Pos const& p_pos, EventInformation& p_event) {
    if (Has(FlagDisabled) || !IsHit(p_pos))
        return false;
    _isDown = true;
    _hidesFocus = true;
    SetDown(true, p_event);
    return true;
}

void TextureWidget::Drag(Types::Pos const& p_pos, EventInformation& p_event) {
    if (_isDown && IsHit(p_pos) != IsPressed())
        SetDown(IsHit(p_pos), p_event);
}

void TextureWidget::Release(Types::Pos const& p_pos, EventInformation& p_event) {
    if (!std::exchange(_isDown, false))
        return;
    SetDown(false, p_event);
    bool const isBrokenOff = (p_event.buttons & EventInformation::ButtonMaskPrimary) != 0;
    if (IsHit(p_pos) && !isBrokenOff)
        Click();
}

bool TextureWidget::Key(EventInformation& p_event) {
    bool const isPress = p_event.key == EventInformation::KeySpace || p_event.key == EventInformation::KeyReturn;
    if (!isPress || Has(FlagDisabled))
        return false;
    _hidesFocus = false;
    SetDown(true, p_event);
    SetDown(false, p_event);
    Click();
    return true;
}

} // namespace Qor::Chart::Render
