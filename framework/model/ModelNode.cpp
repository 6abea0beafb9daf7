#include "framework/model/ModelNode.h"

#include "framework/utility/Ensure.h"
#include "framework/utility/Logger.h"

#include <cstddef>
#include <sstream>
#include <typeinfo>
#include <unordered_map>
#include <utility>

namespace Qor::Chart::Model {

namespace {

bool RefuseSelf(ModelNode const& p_node) {
    std::ostringstream text;
    text << p_node << " cannot become a child of itself; add another node.";
    Utility::GetLogger().error(text.str());
    return false;
}

} // namespace

std::string const ModelNode::EnabledPropertyName = "enabled";

Property<ModelNode, bool> const ModelNode::EnabledProperty(Field<&ModelNode::_enabled>,
    {0, EnabledPropertyName, "Whether the node takes part in the scene, with all that is below it."}, true);

PropertyList const& ModelNode::ClassProperties() {
    static PropertyList const properties{&EnabledProperty};
    return properties;
}

bool ModelNode::Add(Core::Ptr<ModelNode> const& p_child) {
    return p_child.Get() == this ? RefuseSelf(*this) : NodeList::Add(p_child);
}

bool ModelNode::Adopt(Core::Ptr<ModelNode> p_child) {
    if (!p_child)
        return false;
    if (p_child.Get() == this)
        return RefuseSelf(*this);
    for (ModelNode* const parent : p_child->Parents()) {
        if (parent != this)
            parent->Remove(p_child);
    }
    NodeList::Add(p_child);
    return true;
}

std::vector<ModelNode*> ModelNode::Parents() const {
    std::vector<ModelNode*> parents;
    for (Core::Dependencies::Entry const& entry : Deps().Entries()) {
        auto* const parent = entry.children > 0 ? dynamic_cast<ModelNode*>(entry.dependent) : nullptr;
        if (parent)
            parents.push_back(parent);
    }
    return parents;
}

/// Clones are linked from below, while nobody stands above them yet who would have to be told.
Core::Ptr<ModelNode> ModelNode::Clone(Children p_children) const {
    Core::Ptr<ModelNode> clone = CloneAlone();
    if (!clone || p_children == Children::Leave)
        return clone;
    std::unordered_map<ModelNode const*, Core::Ptr<ModelNode>> clones{{this, clone}};
    std::vector<ModelNode const*> originals{this};
    for (std::size_t next = 0; next < originals.size(); ++next) {
        for (Core::Ptr<ModelNode> const& child : *originals[next]) {
            auto const [place, isNew] = clones.try_emplace(child.Get());
            if (!isNew)
                continue;
            place->second = child->CloneAlone();
            if (place->second)
                originals.push_back(child.Get());
        }
    }
    for (; !originals.empty(); originals.pop_back()) {
        ModelNode& parent = *clones.at(originals.back());
        for (Core::Ptr<ModelNode> const& child : *originals.back())
            parent.NodeList::Add(clones.at(child.Get()));
    }
    return clone;
}

Core::Ptr<ModelNode> ModelNode::CloneAlone() const {
    Core::Ptr<ModelNode> clone = NewOfSameClass();
    ModelNode const* const made = clone.Get();
    if (!made || typeid(*made) != typeid(*this)) {
        std::ostringstream text;
        text << *this << " is not cloned: its class does not override NewOfSameClass.";
        Utility::GetLogger().ensure(text.str());
        return {};
    }
    clone->SetName(Name());
    std::size_t const count = clone->Properties().Size();
    (void)QOR_ENSURE_TEXT(count <= Properties().Size(), "count <= p_from->properties.Size()");
    for (PropertyInfo const* const property : Properties())
        property->Copy(*this, *clone);
    CopyTo(*clone);
    return clone;
}

Core::Ptr<ModelNode> ModelNode::NewOfSameClass() const {
    return Core::MakeNode<ModelNode>();
}

void ModelNode::CopyTo(ModelNode&) const {}

} // namespace Qor::Chart::Model
