#include "framework/model/Toolbar.h"

#include "framework/model/PropertyChecks.h"

namespace Qor::Chart::Model {

Property<Toolbar, Types::XPosition> const Toolbar::XPositionProperty(Field<&Toolbar::_x>,
    {1, "x", "How far the bar lies from the left or right side of its pane."}, Types::XPosition(),
    Detail::CheckPosition<Types::XPosition>);

Property<Toolbar, Types::YPosition> const Toolbar::YPositionProperty(Field<&Toolbar::_y>,
    {2, "y", "How far the bar lies from the lower or upper side of its pane."}, Types::YPosition(),
    Detail::CheckPosition<Types::YPosition>);

Property<Toolbar, bool> const Toolbar::VerticalProperty(
    Field<&Toolbar::_vertical>, {3, "vertical", "Whether the buttons stand one below the other."}, false);

Property<Toolbar, bool> const Toolbar::MovableProperty(
    Field<&Toolbar::_movable>, {4, "movable", "Whether the user may drag the bar."}, true);

PropertyList const& Toolbar::ClassProperties() {
    static PropertyList const properties(
        ModelNode::ClassProperties(), {&XPositionProperty, &YPositionProperty, &VerticalProperty, &MovableProperty});
    return properties;
}

Toolbar::~Toolbar() = default;

std::vector<Core::Ptr<Action>> Toolbar::Actions() const {
    std::vector<Core::Ptr<Action>> actions;
    for (Core::Ptr<ModelNode> const& child : *this) {
        if (auto action = Core::DynamicCast<Action>(child))
            actions.push_back(std::move(action));
    }
    return actions;
}

Core::Ptr<ModelNode> Toolbar::NewOfSameClass() const {
    return Core::MakeNode<Toolbar>();
}

} // namespace Qor::Chart::Model
