#include "render/nodes/TextBox.h"

#include "render/nodes/OverlayShapes.h"
#include "render/nodes/ToolbarLayout.h"
#include "render/context/DrawContext.h"
#include "render/context/SceneCapabilities.h"
#include "render/context/UpdateContext.h"
#include "framework/model/Events.h"

#include <utility>

namespace Qor::Chart::Render {

namespace {

TextWidget::Mode ModeOf(Model::TextBox const& p_model) {
    switch (p_model.GetMode()) {
    case Model::TextBox::Mode::Editable:
        return TextWidget::Mode::Editable;
    case Model::TextBox::Mode::ReadOnly:
        return TextWidget::Mode::ReadOnly;
    default:
        return TextWidget::Mode::Label;
    }
}

} // namespace

TextBox::TextBox() : _model(*this, "text box") {
    ConnectAll();
    _widget.SetCommitted([this] { Commit(); });
}

TextBox::~TextBox() = default;

void TextBox::Attach(Core::Ptr<Model::ModelNode> const& p_model) {
    _model.Attach(p_model);
}

Core::WeakPtr<Model::ModelNode> TextBox::SourceModel() const {
    return _model.Get();
}

NodeStatus TextBox::DoUpdate(UpdateContext const& p_context) {
    Core::Ptr<Model::TextBox> const model = _model.Lock();
    if (!model)
        return NodeStatusOk;
    bool const isOtherMode = _widget.GetMode() != ModeOf(*model);
    _widget.SetMode(ModeOf(*model))
        .SetMaxLength(static_cast<std::size_t>(model->MaxLength()))
        .SetFramed(model->IsFramed())
        .SetCentered(model->IsCentered());
    if (_widget.Placeholder() != model->Placeholder())
        _widget.SetPlaceholder(model->Placeholder());
    if (isOtherMode || _followed != model->Text()) { // fields have changed what labels can show
        _followed = model->Text();
        _widget.SetText(_followed);
    }
    _widget.Set(Widget::FlagAnimated, p_context.Capabilities().AnimationsOn());
    return NodeStatusOk;
}

std::optional<WidgetNode::Placement> TextBox::Placed(DrawContext const& p_context) {
    Core::Ptr<Model::TextBox> const model = _model.Lock();
    if (!model || !model->IsVisible())
        return std::nullopt;
    Types::Size const size = SizeOf(model->Width(), model->Height(), p_context, [&](int p_width) {
        int const most = p_width > 0 ? p_width : p_context.Viewport().Top().Extent().width;
        return _widget.PreferredSize(p_context, most);
    });
    return Placement{model->GetXPosition(), model->GetYPosition(), size};
}

void TextBox::Commit() {
    Core::Ptr<Model::TextBox> const model = _model.Lock();
    if (!model)
        return;
    std::wstring former = std::exchange(_followed, _widget.Text());
    model->SetText(_followed);
    model->Delegate().Raise(
        Model::Events::TextEditedArgs(Core::WeakPtr<Model::ModelNode>(model), model->Text(), std::move(former)));
}

} // namespace Qor::Chart::Render
