#include "framework/model/NodeTypes.h"

#include "framework/model/Action.h"
#include "framework/model/Bitmap.h"
#include "framework/model/ColorPicker.h"
#include "framework/model/Group.h"
#include "framework/model/ImageButton.h"
#include "framework/model/Legend.h"
#include "framework/model/Light.h"
#include "framework/model/Pane.h"
#include "framework/model/RenderStyle.h"
#include "framework/model/SceneGraph.h"
#include "framework/model/SelectionList.h"
#include "framework/model/SimpleObject.h"
#include "framework/model/Statistics.h"
#include "framework/model/Symbol.h"
#include "framework/model/TextBox.h"
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
    TypeOf<ColorPicker>("ColorPicker", "A panel in a pane with which the user picks a colour."),
    TypeOf<Group>("Group", "Nodes that belong together."),
    TypeOf<ImageButton>("ImageButton", "A button that stands alone in a pane."),
    TypeOf<Legend>("Legend", "A panel in a pane that explains what is to be seen."),
    TypeOf<LegendEntry>("LegendEntry", "One line of a legend: a text and a swatch."),
    TypeOf<Light>("Light", "A source of light."),
    TypeOf<Pane>("Pane", "A rectangle of the chart surface with a view of its own."),
    TypeOf<RenderStyle>("RenderStyle", "How everything below it looks: colours, textures, lines, transparency."),
    TypeOf<SceneGraph>("SceneGraph", "The root of a three-dimensional scene."),
    TypeOf<SelectionList>("SelectionList", "What the user has selected."),
    TypeOf<SimpleObject>("SimpleObject", "One symbol somewhere in the scene, in one colour."),
    TypeOf<Statistics>("Statistics", "A panel in a pane with the figures of the frames."),
    TypeOf<Symbol>("Symbol", "What simple objects look like."),
    TypeOf<TextBox>("TextBox", "A text in a pane: a label, or a field in which the user types."),
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
