#pragma once

#include "framework/Export.h"
#include "framework/core/Node.h"

#include <cstdint>
#include <vector>

namespace Qor::Chart::Core {

/// Remembers a node's time and tells whether the node, or anything it depends on, changed since.
class QOR_FRAMEWORK_API ModificationWatcher {
public:
    /// Watches nothing and never reports a change.
    ModificationWatcher() noexcept = default;
    explicit ModificationWatcher(WeakPtr<Node> p_node) noexcept;

    /// True when the node changed, or died, since the watch began or was last reset.
    bool Modified() const noexcept { return Now() != _seen; }
    void Reset() noexcept { _seen = Now(); }

private:
    TimeStamp Now() const noexcept {
        Node const* const node = _node.Peek();
        return node ? node->Time() : TimeStamp();
    }

    WeakPtr<Node> _node;
    TimeStamp _seen;
};

/// Watches several nodes at once. Copies share their memory until one of them is changed, so handing a list on costs a
/// pointer.
class QOR_FRAMEWORK_API ModificationWatcherList {
public:
    ModificationWatcherList() noexcept = default;
    ModificationWatcherList(ModificationWatcherList const& p_other) noexcept;
    ModificationWatcherList(ModificationWatcherList&& p_other) noexcept;
    ModificationWatcherList& operator=(ModificationWatcherList p_other) noexcept;
    ~ModificationWatcherList();

    /// Begins to watch one more node, from its present state on.
    void Add(WeakPtr<Node> p_node);
    /// Ends all watches and forgets a touch.
    void Clear() noexcept;

    /// Makes the list count as modified until it is reset or cleared.
    void Touch();
    /// Takes the present state of all nodes as seen.
    void Reset();

    bool Modified() const noexcept;
    bool Empty() const noexcept;
    std::size_t Size() const noexcept;

private:
    struct Shared;
    Shared& Own();

    Shared* _shared = nullptr;
};

} // namespace Qor::Chart::Core
