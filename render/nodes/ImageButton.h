#pragma once

#include "framework/core/Reference.h"
#include "framework/model/ImageButton.h"
#include "render/Export.h"
#include "render/nodes/SchemaFont.h"
#include "render/nodes/TextureWidget.h"
#include "render/nodes/ToolTip.h"
#include "render/nodes/ToolbarButton.h"
#include "render/nodes/WidgetNode.h"

#include <memory>
#include <optional>

namespace Qor::Chart::Render {

/// The visual node of a button that stands alone in a pane. It shows the image of its action or, without one that can
/// be had, the label; a click, and Space or Return while it has the focus, is one on the model's button. What the
/// action throws leaves the handler. When the pointer rests on it, the action's tool tip appears as a toolbar's does.
class QOR_VIS_API ImageButton : public WidgetNode {
public:
    ImageButton();
    ~ImageButton() override;

    /// Mirrors a model node from now on. One that is no image button is reported and refused.
    void Attach(Core::Ptr<Model::ModelNode> const& p_model);

    Core::WeakPtr<Model::ModelNode> SourceModel() const override;

    Event::Result OnMouseOver(EventInformation& p_event) override;
    void OnMouseOut(EventInformation& p_event) override;
    Event::Result OnDragBegin(EventInformation& p_event) override;
    Event::Result OnClick(EventInformation& p_event) override;
    Event::Result OnKeyPress(EventInformation& p_event) override;

private:
    Widget& GetWidget() override { return _widget; }
    std::optional<Placement> Placed(DrawContext const& p_context) override;
    NodeStatus DoUpdate(UpdateContext const& p_context) override;
    DrawResult DoHighlightOverlay(DrawContext const& p_context) override;

    void Click();

    Core::WeakRef<Model::ImageButton> _button;
    TextureWidget _widget;
    ToolbarButton _shown; ///< of the action, as of the last update
    ToolTip _tip;
    SchemaFont _font; ///< of tips
};

} // namespace Qor::Chart::Render
