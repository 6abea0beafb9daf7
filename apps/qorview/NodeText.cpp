#include "apps/qorview/NodeText.h"

#include "framework/model/SceneGraph.h"

#include <cstddef>

namespace Qor::Chart::QorView {

namespace {

std::string NameOf(Model::ModelNode const& p_node) {
    return p_node.Name().empty() ? p_node.TypeName() : p_node.Name();
}

} // namespace

std::string SelectionText(Model::SelectionList const& p_list) {
    constexpr std::size_t most = 3;
    std::size_t const count = p_list.Count();
    if (count == 0)
        return "nothing selected";
    std::string text;
    for (Model::SelectionEntry const& entry : p_list.Selected(most)) {
        if (Core::Ptr<Model::ModelNode> const node = entry.node.Lock())
            text += (text.empty() ? "" : ", ") + NameOf(*node);
    }
    return std::to_string(count) + " selected: " + text + (count > most ? ", ..." : "");
}

std::string NameInTree(Core::WeakPtr<Model::ModelNode> const& p_node) {
    Core::Ptr<Model::ModelNode> const node = p_node.Lock();
    if (!node)
        return {};
    std::string around;
    Model::ModelNode const* above = node.Get();
    for (auto parents = above->Parents(); !parents.empty(); parents = above->Parents()) {
        above = parents.front();
        if (dynamic_cast<Model::SceneGraph const*>(above))
            break;
        around += (around.empty() ? "" : ", ") + NameOf(*above);
    }
    return NameOf(*node) + (around.empty() ? "" : " (" + around + ")");
}

} // namespace Qor::Chart::QorView
