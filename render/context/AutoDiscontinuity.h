#pragma once

#include "framework/core/WeakPtr.h"
#include "render/Export.h"

#include <memory>
#include <stack>

namespace Qor::Chart::Render {

class DrawContext;
class Vis;

/// The context roots that a traversal is below of, innermost on top.
using ContextRootStack = std::stack<Core::WeakPtr<Vis>>;

/// Holds the context that a traversal works with below a context root: a copy of the outer one that reports to the
/// dispatcher of the node, together with that dispatcher. While it holds one that it opened, the node stands on the stack
/// of context roots.
class QOR_VIS_API AutoDiscontinuity {
public:
    /// Holds nothing.
    AutoDiscontinuity() noexcept;
    /// Opens a context at once, see `Open`.
    AutoDiscontinuity(DrawContext const& p_outer, ContextRootStack& p_roots, Vis& p_node);
    ~AutoDiscontinuity();
    AutoDiscontinuity(AutoDiscontinuity const&) = delete;
    AutoDiscontinuity& operator=(AutoDiscontinuity const&) = delete;

    /// Asks the dispatcher of the outer context for that of the node, copies the context and puts the node on the stack,
    /// which must outlive this holder or whoever takes over from it. The holder must be empty, as for
    /// `TransferOwnershipFrom`.
    void Open(DrawContext const& p_outer, ContextRootStack& p_roots, Vis& p_node);

    bool IsEmpty() const noexcept { return !_pending; }

    /// The context for the node and its subtree. Asking an empty holder is reported, and throws `Utility::Exception`.
    DrawContext& CurrentDrawContext() const;

    /// Takes over what the other one holds, as a copy without history, and leaves that one empty. This holder must be
    /// empty: otherwise that is reported, and what it held is dropped.
    void TransferOwnershipFrom(AutoDiscontinuity& p_other);

private:
    struct Pending;

    std::unique_ptr<Pending> _pending;
};

} // namespace Qor::Chart::Render
