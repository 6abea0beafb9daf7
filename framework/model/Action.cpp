#include "framework/model/Action.h"

namespace Qor::Chart::Model {

Property<Action, std::wstring> const Action::LabelProperty(
    Field<&Action::_label>, {1, "label", "What the action is called, shown where it has no image."}, std::wstring());

Property<Action, std::wstring> const Action::ToolTipProperty(Field<&Action::_toolTip>,
    {2, "toolTip", "What is said about the action when the pointer rests on it; empty says the label."},
    std::wstring());

Property<Action, std::string> const Action::ImageFileProperty(Field<&Action::_imageFile>,
    {3, "imageFile", "The name of a built-in image or the path of one; empty shows the label."}, std::string());

Property<Action, bool> const Action::CheckedProperty(
    Field<&Action::_checked>, {4, "checked", "Whether the action shows as chosen."}, false);

PropertyList const& Action::ClassProperties() {
    static PropertyList const properties(
        ModelNode::ClassProperties(), {&LabelProperty, &ToolTipProperty, &ImageFileProperty, &CheckedProperty});
    return properties;
}

Action::Action(std::string const& p_name, std::wstring p_label) {
    SetName(p_name);
    SetLabel(std::move(p_label));
}

Action::~Action() = default;

bool Action::Execute() const {
    if (!IsEnabled() || !_execute)
        return false;
    Function const execute = _execute; // it may give the action another one
    execute();
    return true;
}

Core::Ptr<ModelNode> Action::NewOfSameClass() const {
    return Core::MakeNode<Action>();
}

void Action::CopyTo(ModelNode& p_clone) const {
    dynamic_cast<Action&>(p_clone)._execute = _execute;
}

} // namespace Qor::Chart::Model
