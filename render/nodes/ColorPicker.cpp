#include "render/nodes/ColorPicker.h"

#include "render/nodes/OverlayShapes.h"
#include "render/context/SceneCapabilities.h"
#include "render/context/UpdateContext.h"
#include "framework/model/Events.h"

namespace Qor::Chart::Render {

static_assert(ColorPickerWidget::MostRecentColors == Model::ColorPicker::MostRecentColors);

ColorPicker::ColorPicker() : _picker(*this, "color picker") {
    ConnectAll();
    _widget.SetChanged([this](QColor const& p_color) {
        if (Core::Ptr<Model::ColorPicker> const model = _picker.Lock())
            model->SetColor(p_color);
    });
    _widget.SetCommitted([this](QColor const& p_color) { Commit(p_color); });
}

ColorPicker::~ColorPicker() = default;

void ColorPicker::Attach(Core::Ptr<Model::ModelNode> const& p_model) {
    _picker.Attach(p_model);
}

Core::WeakPtr<Model::ModelNode> ColorPicker::SourceModel() const {
    return _picker.Get();
}

void ColorPicker::Commit(QColor const& p_color) {
    Core::Ptr<Model::ColorPicker> const model = _picker.Lock();
    if (!model)
        return;
    model->SetRecentColors(_widget.RecentColors());
    model->Delegate().Raise(Model::Events::ColorPickedArgs(model, p_color));
}

/// The widget keeps its hue and its former colour while the model says what it has been told by the widget.
NodeStatus ColorPicker::DoUpdate(UpdateContext const& p_context) {
    if (Core::Ptr<Model::ColorPicker> const model = _picker.Lock()) {
        _widget.SetAlphaShown(model->IsAlphaShown());
        _widget.SetRecentColors(model->RecentColors());
        _widget.SetColor(model->Color());
    }
    _widget.Set(Widget::FlagAnimated, p_context.Capabilities().AnimationsOn());
    return NodeStatusOk;
}

std::optional<WidgetNode::Placement> ColorPicker::Placed(DrawContext const& p_context) {
    Core::Ptr<Model::ColorPicker> const model = _picker.Lock();
    if (!model || !model->IsVisible())
        return std::nullopt;
    Types::Size const size =
        ColorPickerLayout::PreferredSize(OverlayShapes::PixelRatio(p_context), model->IsAlphaShown());
    return Placement{model->GetXPosition(), model->GetYPosition(), size};
}

} // namespace Qor::Chart::Render
