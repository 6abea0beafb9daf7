#include "framework/core/NodeList.h"

#include <boost/any.hpp>

#include <ostream>
#include <string>
#include <vector>

namespace Qor::Chart::Core::Detail {

namespace {

std::string const& ChildrenName() {
    static std::string const name = "children";
    return name;
}

} // namespace

void TouchChildAdded(Node& p_list, Node& p_child) {
    p_list.TouchThis(IModifiable::ModifiableTypeNode, IModifiable::ChangeAdd, IModifiable::RelationshipSelf, {},
        ChildrenName(), WeakPtr<Node>(&p_child));
}

void TouchChildRemoved(Node& p_list, Node& p_child) {
    p_list.TouchThis(IModifiable::ModifiableTypeNode, IModifiable::ChangeRemove, IModifiable::RelationshipSelf, {},
        ChildrenName(), WeakPtr<Node>(&p_child));
}

void TouchCleared(Node& p_list, NodeHandles p_children) {
    p_list.TouchThis(IModifiable::ModifiableTypeNode, IModifiable::ChangeClear, IModifiable::RelationshipSelf, {},
        ChildrenName(), boost::any(std::move(p_children)));
}

/// Goes down the tree without recursion: a tree may be deeper than the stack.
void DumpChildren(Node const& p_list, std::ostream& p_stream, Verbosity p_verbosity, std::uint64_t p_depth) {
    if (p_verbosity != Verbosity::Verbose)
        return;
    struct Entry {
        Node const* node;
        std::uint64_t depth;
    };
    std::vector<Entry> open;
    std::vector<Node*> children;
    auto const descend = [&](Node const& p_node, std::uint64_t p_childDepth) {
        children.clear();
        p_node.CollectChildren(children);
        for (auto child = children.rbegin(); child != children.rend(); ++child)
            open.push_back({*child, p_childDepth});
    };
    descend(p_list, p_depth + 1);
    while (!open.empty()) {
        Entry const next = open.back();
        open.pop_back();
        next.node->Dump(p_stream, Verbosity::Normal, next.depth);
        descend(*next.node, next.depth + 1);
    }
}

} // namespace Qor::Chart::Core::Detail
