#pragma once

#include "framework/core/Reference.h"
#include "framework/model/TextBox.h"
#include "render/Export.h"
#include "render/nodes/TextWidget.h"
#include "render/nodes/WidgetNode.h"

#include <optional>
#include <string>

namespace Qor::Chart::Render {

/// The visual node of a text in a pane: a label, or a field that takes keys. It follows the model; what the user has
/// settled for is written there, and `Model::Events::TextEditedArgs` is raised. While the user types, other changes of
/// the model leave the edit alone; another text takes its place.
class QOR_VIS_API TextBox : public WidgetNode {
public:
    TextBox();
    ~TextBox() override;

    /// Mirrors a model node from now on. One that is no text box is reported and refused.
    void Attach(Core::Ptr<Model::ModelNode> const& p_model);

    Core::WeakPtr<Model::ModelNode> SourceModel() const override;

    TextWidget const& Field() const noexcept { return _widget; }

private:
    Widget& GetWidget() override { return _widget; }
    std::optional<Placement> Placed(DrawContext const& p_context) override;
    NodeStatus DoUpdate(UpdateContext const& p_context) override;

    void Commit();

    Core::WeakRef<Model::TextBox> _model;
    TextWidget _widget;
    std::wstring _followed; ///< the model's text, as of the last update
};

} // namespace Qor::Chart::Render
