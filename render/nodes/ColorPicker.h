#pragma once

#include "framework/core/Reference.h"
#include "framework/model/ColorPicker.h"
#include "render/Export.h"
#include "render/nodes/ColorPickerWidget.h"
#include "render/nodes/WidgetNode.h"

#include <optional>

namespace Qor::Chart::Render {

/// The visual node of a colour picker: a panel over the scene of its pane. What the user does with it changes the
/// model's colour at once; when he has settled for one, the model's recent colours follow and its listeners are told.
class QOR_VIS_API ColorPicker : public WidgetNode {
public:
    ColorPicker();
    ~ColorPicker() override;

    /// Mirrors a model node from now on. One that is no colour picker is reported and refused.
    void Attach(Core::Ptr<Model::ModelNode> const& p_model);

    Core::WeakPtr<Model::ModelNode> SourceModel() const override;

private:
    Widget& GetWidget() override { return _widget; }
    std::optional<Placement> Placed(DrawContext const& p_context) override;
    NodeStatus DoUpdate(UpdateContext const& p_context) override;

    void Commit(QColor const& p_color);

    Core::WeakRef<Model::ColorPicker> _picker;
    ColorPickerWidget _widget;
};

} // namespace Qor::Chart::Render
