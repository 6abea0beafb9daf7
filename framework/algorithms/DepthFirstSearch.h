#pragma once

#include "framework/algorithms/NodeSet.h"
#include "framework/core/Exceptions.h"
#include "framework/utility/Ensure.h"
#include "framework/utility/StackLimit.h"

#include <cstddef>
#include <string>
#include <type_traits>
#include <utility>

namespace Qor::Chart::Algorithms {

/// Walks a graph of nodes depth first and notices when a node is met again below itself. What happens at a node is up to
/// the per-node operation: it is called with the node's handle and a children visitor, and calls the visitor with a range
/// of children where it wants the search to go on. A node that stands in several places is visited in each.
///
/// @code
/// auto search = DepthFirstSearch<Core::Ptr<Vis>, ActiveIterator>::Make("drawing the tree",
///     [&](Core::Ptr<Vis> const& p_node, auto const& p_visitChildren) {
///         p_visitChildren(p_node->ActiveBegin(), p_node->ActiveEnd());
///         return true;
///     },
///     [](Core::Ptr<Vis> const& p_node) -> bool { throw Core::CyclicDependencyFoundExcept(p_node->Name()); });
/// search(root);
/// @endcode
///
/// The search takes about 100 bytes of stack a level in an optimised build, beside what the per-node operation takes, and
/// keeps no copy of a handle: a child's handle must stay where the iterator has it while the child is visited. It may be
/// run again, also after an operation has thrown, but not from within itself.
///
/// @tparam Handle         of a node, with `Get()`, such as `Core::Ptr<Vis>`
/// @tparam ChildIterator  gives a `Handle const&`; empty handles are passed over
/// @tparam PerNodeOp      `bool(Handle const&, ChildrenVisitor const&)`
/// @tparam CycleOp        `bool(Handle const&)`, called with the node that is on the path already
template <class Handle, class ChildIterator, class PerNodeOp = void, class CycleOp = void>
class DepthFirstSearch {
public:
    /// Visits the children of a range, in order.
    class ChildrenVisitor {
    public:
        ChildrenVisitor(DepthFirstSearch& p_search, void const* p_parent) noexcept
            : _search(p_search), _parent(p_parent) {}

        template <class Begin, class End>
        void operator()(Begin p_begin, End const& p_end) const {
            OnPath const onPath(_search._colors, _parent);
            for (; p_begin != p_end; ++p_begin) {
                if (Handle const& child = *p_begin; child) {
                    _search.Visit(child);
                }
            }
        }

    private:
        DepthFirstSearch& _search;
        void const* _parent;
    };

    /// @param p_what  what is being done, for the report that a tree is too deep: "updating the visual tree". Not copied.
    DepthFirstSearch(char const* p_what, PerNodeOp p_perNodeOp, CycleOp p_cycleDetectOp)
        : _perNodeOp(std::move(p_perNodeOp)), _cycleDetectOp(std::move(p_cycleDetectOp)), _what(p_what) {
        bool const hasPerNodeOp = QOR_ENSURE_TEXT(IsSet(_perNodeOp), "_perNodeOp");
        bool const hasCycleOp = QOR_ENSURE_TEXT(IsSet(_cycleDetectOp), "_cycleDetectOp");
        _usable = hasPerNodeOp && hasCycleOp;
    }
    DepthFirstSearch(DepthFirstSearch const&) = delete;
    DepthFirstSearch& operator=(DepthFirstSearch const&) = delete;

    /// Searches from p_root on and gives what the per-node operation gave for it; false for an empty root and for a search
    /// that lacks an operation. Throws what the operations throw, and `Core::TreeTooDeepExcept` when the stack runs out.
    bool operator()(Handle const& p_root) {
        if (!_usable || !p_root) {
            return false;
        }
        _limit = Utility::StackLimit::Current();
        bool const result = Visit(p_root);
        QOR_ENSURE_TEXT(_colors.Empty(), "colors.empty()");
        return result;
    }

    /// How many nodes are on the current path: those whose children are being visited.
    std::size_t Depth() const noexcept { return _colors.Size(); }

private:
    /// Keeps a node on the path for as long as its children are visited.
    class OnPath {
    public:
        OnPath(NodeSet& p_colors, void const* p_node) : _colors(p_colors), _node(p_node) { _colors.Insert(p_node); }
        ~OnPath() { _colors.Erase(_node); }
        OnPath(OnPath const&) = delete;
        OnPath& operator=(OnPath const&) = delete;

    private:
        NodeSet& _colors;
        void const* _node;
    };

    template <class Op>
    static bool IsSet(Op const& p_op) {
        if constexpr (std::is_constructible_v<bool, Op const&>) {
            return static_cast<bool>(p_op);
        } else {
            return true;
        }
    }

    /// A node is put on the path only when it has its children visited: most nodes of a search that prunes never do.
    bool Visit(Handle const& p_node) {
        void const* const node = p_node.Get();
        if (_colors.Contains(node))
            return _cycleDetectOp(p_node);
        if (_limit.IsNear())
            ThrowTooDeep();
        return _perNodeOp(p_node, ChildrenVisitor(*this, node));
    }
    [[noreturn, gnu::noinline, gnu::cold]] void ThrowTooDeep() const {
        throw Core::TreeTooDeepExcept(_what, _colors.Size());
    }

    PerNodeOp _perNodeOp;
    CycleOp _cycleDetectOp;
    char const* _what;
    Utility::StackLimit _limit;
    NodeSet _colors;
    bool _usable = false;
};

/// Makes searches of the given operations, whose types need not be written down.
template <class Handle, class ChildIterator>
class DepthFirstSearch<Handle, ChildIterator, void, void> {
public:
    template <class PerNodeOp, class CycleOp>
    static DepthFirstSearch<Handle, ChildIterator, PerNodeOp, CycleOp> Make(
        char const* p_what, PerNodeOp p_perNodeOp, CycleOp p_cycleDetectOp) {
        return {p_what, std::move(p_perNodeOp), std::move(p_cycleDetectOp)};
    }
};

} // namespace Qor::Chart::Algorithms
