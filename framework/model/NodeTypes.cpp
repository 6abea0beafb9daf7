#include "framework/model/NodeTypes.h"

#include "framework/model/Action.h"
#include "framework/model/Bitmap.h"
#include "framework/model/Group.h"
#include "framework/model/Light.h"
#include "framework/model/Pane.h"
#include "framework/model/SceneGraph.h"
#include "framework/model/SimpleObject.h"
#include "framework/model/Symbol.h"
#include "framework/model/Toolbar.h"

#include <algorithm>
#include <array>

namespace Qor::Chart::Model {

namespace {

template <class Node>
constexpr NodeType TypeOf(std::string_view p_name, std::string_view p_documentation) {
    return {p_name, p_documentation, []() -> Core::Ptr<ModelNode> { return Core::MakeNode<Node>(); },
        &Node::ClassProperties};
}

constexpr std::array Offered{
    TypeOf<Action>("Action", "Something that the user can have done: a button of a toolbar."),
    TypeOf<Bitmap>("Bitmap", "One image in front of what its pane shows."),
    TypeOf<Group>("Group", "Nodes that belong together."),
    TypeOf<Light>("Light", "A source of light."),
    TypeOf<Pane>("Pane", "A rectangle of the chart surface with a view of its own."),
    TypeOf<SceneGraph>("SceneGraph", "The root of a three-dimensional scene."),
    TypeOf<SimpleObject>("SimpleObject", "One symbol somewhere in the scene, in one colour."),
    TypeOf<Symbol>("Symbol", "What simple objects look like."),
    TypeOf<Toolbar>("Toolbar", "A bar of buttons in a pane, one for each of its actions."),
};

} // namespace

std::span<NodeType const> NodeTypes() noexcept {
    return Offered;
}

NodeType const* FindNodeType(std::string_view p_name) noexcept {
    auto const* const found =
        std::find_if(Offered.begin(), Offered.end(), [&](NodeType const& p_type) { return p_type.name == p_name; });
    return found == Offered.end() ? nullptr : found;
}

} // namespace Qor::Chart::Model
