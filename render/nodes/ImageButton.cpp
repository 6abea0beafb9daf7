#include "render/nodes/ImageButton.h"

#include "render/nodes/OverlayShapes.h"
#include "render/nodes/PixelScope.h"
#include "render/nodes/ToolbarLayout.h"
#include "render/nodes/ToolbarPainter.h"
#include "render/events/EventInformation.h"
#include "render/context/DrawContext.h"
#include "render/context/SceneCapabilities.h"
#include "render/context/UpdateContext.h"
#include "framework/ogl/Agl.h"
#include "framework/ogl/Text.h"
#include "framework/utility/Scoped.h"

namespace Qor::Chart::Render {

namespace {

using Agl = Utility::Scoped<Ogl::Agl>;

} // namespace

ImageButton::ImageButton() : _button(*this, "image button") {
    ConnectAll();
    RegisterCB(HandledHighlightOverlay);
    _widget.SetFramed(true).SetColor(QColor()).SetClicked([this] { Click(); });
}

ImageButton::~ImageButton() = default;

void ImageButton::Attach(Core::Ptr<Model::ModelNode> const& p_model) {
    _button.Attach(p_model);
}

Core::WeakPtr<Model::ModelNode> ImageButton::SourceModel() const {
    return _button.Get();
}

void ImageButton::Click() {
    if (Core::Ptr<Model::ImageButton> const model = _button.Lock())
        model->Click();
}

NodeStatus ImageButton::DoUpdate(UpdateContext const& p_context) {
    Core::Ptr<Model::ImageButton> const model = _button.Lock();
    Core::Ptr<Model::Action> const action = model ? model->GetAction() : Core::Ptr<Model::Action>();
    _shown = action ? ToolbarButton::Of(p_context, action, &_shown, *this) : ToolbarButton();
    _widget.SetTexture(_shown.texture)
        .SetTextureMode(_shown.isSign ? TextureWidget::TextureMode::Tinted : TextureWidget::TextureMode::Image)
        .SetLabel(_shown.label)
        .SetToolTip(_shown.tip)
        .SetChecked(_shown.isChecked);
    _widget.Set(Widget::FlagDisabled, !action || !_shown.isEnabled);
    _widget.Set(Widget::FlagAnimated, p_context.Capabilities().AnimationsOn());
    return NodeStatusOk;
}

std::optional<WidgetNode::Placement> ImageButton::Placed(DrawContext const& p_context) {
    Core::Ptr<Model::ImageButton> const model = _button.Lock();
    if (!model || !model->IsVisible())
        return std::nullopt;
    Types::Size const size =
        SizeOf(model->Width(), model->Height(), p_context, [&](int) { return _widget.PreferredSize(p_context); });
    return Placement{model->GetXPosition(), model->GetYPosition(), size};
}

/// Tips come after everything that is drawn in the draw pass.
DrawResult ImageButton::DoHighlightOverlay(DrawContext const& p_context) {
    if (!_tip.IsShown() || _widget.ToolTip().empty() || !_widget.Has(Widget::FlagShown))
        return DrawResultDescend;
    Agl agl(p_context.Graphics());
    Types::Viewport<0> const& viewport = p_context.Viewport().Top();
    PixelScope const pixels(agl, viewport);
    ToolbarPainter const painter(p_context, _font);
    ToolbarLayout bar;
    bar.bar = _widget.Rectangle();
    bar.buttons = {bar.bar};
    bar.gap = ToolbarLayout::Scaled(bar.gap, painter.PixelRatio());
    Types::Size const pane = viewport.Extent();
    painter.DrawTip(_widget.ToolTip(), bar.TipPlace(pane, 0, painter.TipSize(_widget.ToolTip(), pane)));
    return DrawResultDescend;
}

Event::Result ImageButton::OnMouseOver(EventInformation& p_event) {
    _tip.Await(p_event, [this] { Refresh(); });
    return WidgetNode::OnMouseOver(p_event);
}

void ImageButton::OnMouseOut(EventInformation& p_event) {
    _tip.Hide(p_event);
    WidgetNode::OnMouseOut(p_event);
}

Event::Result ImageButton::OnDragBegin(EventInformation& p_event) {
    _tip.Hide(p_event);
    return WidgetNode::OnDragBegin(p_event);
}

Event::Result ImageButton::OnClick(EventInformation& p_event) {
    _tip.Hide(p_event);
    return WidgetNode::OnClick(p_event);
}

Event::Result ImageButton::OnKeyPress(EventInformation& p_event) {
    _tip.Hide(p_event);
    return WidgetNode::OnKeyPress(p_event);
}

} // namespace Qor::Chart::Render
