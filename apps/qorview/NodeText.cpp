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
    Model::SelectionList::Entries const selected = p_list.Selected();
    if (selected.empty())
        return "nothing selected";
    std::string text;
    for (std::size_t i = 0; i < selected.size() && i < most; ++i) {
        if (Core::Ptr<Model::ModelNode> const node = selected[i].node.Lock())
            text += (text.empty() ? "" : ", ") + NameOf(*node);
    }
    return std::to_string(selected.size()) + " selected: " + text + (selected.size() > most ? ", ..." : "");
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
