#include "framework/model/ImageButton.h"

#include "framework/model/PropertyChecks.h"

namespace Qor::Chart::Model {

Property<ImageButton, bool> const ImageButton::CheckableProperty(
    Field<&ImageButton::_checkable>, {1, "checkable", "Whether a click checks and unchecks the action."}, false);

Property<ImageButton, Types::XPosition> const ImageButton::XPositionProperty(Field<&ImageButton::_x>,
    {2, "x", "How far the button lies from the left or right side of its pane."}, Types::XPosition(),
    Detail::CheckPosition<Types::XPosition>);

Property<ImageButton, Types::YPosition> const ImageButton::YPositionProperty(Field<&ImageButton::_y>,
    {3, "y", "How far the button lies from the lower or upper side of its pane."}, Types::YPosition(),
    Detail::CheckPosition<Types::YPosition>);

Property<ImageButton, double> const ImageButton::WidthProperty(Field<&ImageButton::_width>,
    {4, "width", "How wide the button is, in pixels; 0 is as wide as needed."}, 0, Detail::CheckSide);

Property<ImageButton, double> const ImageButton::HeightProperty(Field<&ImageButton::_height>,
    {5, "height", "How high the button is, in pixels; 0 is as high as needed."}, 0, Detail::CheckSide);

PropertyList const& ImageButton::ClassProperties() {
    static PropertyList const properties(ModelNode::ClassProperties(),
        {&CheckableProperty, &XPositionProperty, &YPositionProperty, &WidthProperty, &HeightProperty});
    return properties;
}

ImageButton::ImageButton() : _action(*this, "action") {
    SetAction(Core::MakeNode<Action>());
}

ImageButton::ImageButton(std::string const& p_name, std::wstring p_label) : _action(*this, "action") {
    SetName(p_name);
    SetAction(Core::MakeNode<Action>(p_name, std::move(p_label)));
}

ImageButton::~ImageButton() = default;

void ImageButton::Click() const {
    Core::Ptr<Action> const action = GetAction(); // it may give the button another one
    if (!action || !action->IsEnabled())
        return;
    if (_checkable)
        action->SetChecked(!action->IsChecked());
    action->Execute();
}

Core::Ptr<ModelNode> ImageButton::NewOfSameClass() const {
    return Core::MakeNode<ImageButton>();
}

void ImageButton::CopyTo(ModelNode& p_clone) const {
    dynamic_cast<ImageButton&>(p_clone).SetAction(GetAction());
}

} // namespace Qor::Chart::Model
