#include "framework/core/Propagation.h"

#include "framework/utility/Logger.h"

#include <algorithm>
#include <atomic>
#include <exception>

namespace Qor::Chart::Core::Detail {

namespace {

thread_local bool threadIsEnding = false;

/// Changes are numbered across threads: a node may move from one to another.
std::uint64_t NextSpread() noexcept {
    static std::atomic<std::uint64_t> last{0};
    return last.fetch_add(1, std::memory_order_relaxed) + 1;
}

[[gnu::cold]] void ReportFailure(Node const& p_receiver, char const* p_what) noexcept {
    try {
        Utility::GetLogger().error("A node failed to take up a change and keeps its old state: #" +
            std::to_string(p_receiver.Id()) + " \"" + p_receiver.Name() + "\": " + p_what);
    } catch (...) {
        return; // no memory for a message: the change still reaches the others
    }
}

} // namespace

Propagation* Propagation::OfThread() noexcept {
    static thread_local Propagation propagation;
    return threadIsEnding ? nullptr : &propagation;
}

Propagation::~Propagation() {
    threadIsEnding = true;
}

void Propagation::HandOn(Node& p_node, IModifiable::Relationship p_relationship) {
    auto const next = p_relationship == IModifiable::RelationshipSelf ? IModifiable::RelationshipDirect
                                                                      : IModifiable::RelationshipFurther;
    for (Dependencies::Entry const& entry : p_node.Deps().Entries()) {
        if (entry.dependent->_spread == _spread)
            continue;
        entry.dependent->_spread = _spread;
        _queue.push_back({entry.dependent, next});
    }
}

void Propagation::Spread(Node& p_origin, IModifiable::ModifiableType p_type, IModifiable::Change p_change,
    IModifiable::Relationship p_relationship, WeakPtr<Node> const& p_node, std::string const& p_name,
    boost::any const& p_data) {
    if (_busy) {
        _postponed.push_back({&p_origin, p_type, p_change, p_relationship, p_node, p_name, p_data});
        return;
    }
    DestructionScope const keepReceivers;
    struct End {
        std::deque<Postponed>& postponed;
        ~End() { postponed.clear(); } // not empty only when there was no memory to go on with
    } const end{_postponed};
    SpreadOne(p_origin, p_type, p_change, p_relationship, p_node, p_name, p_data);
    while (!_postponed.empty()) {
        Postponed const next = std::move(_postponed.front());
        _postponed.pop_front();
        if (next.origin && !next.origin->IsDying())
            SpreadOne(*next.origin, next.type, next.change, next.relationship, next.node, next.name, next.data);
    }
}

void Propagation::SpreadOne(Node& p_origin, IModifiable::ModifiableType p_type, IModifiable::Change p_change,
    IModifiable::Relationship p_relationship, WeakPtr<Node> const& p_node, std::string const& p_name,
    boost::any const& p_data) {
    struct End {
        Propagation& propagation;
        ~End() {
            propagation._queue.clear();
            propagation._receiver = nullptr;
            propagation._data = nullptr;
            propagation._busy = false;
        }
    } const end{*this};
    _busy = true;
    _spread = NextSpread() & ((std::uint64_t{1} << 48U) - 1);
    _data = &p_data;
    p_origin._spread = _spread;
    HandOn(p_origin, p_relationship);
    for (std::size_t position = 0; position < _queue.size(); ++position) {
        Stop const stop = _queue[position];
        if (!stop.node || stop.node->IsDying())
            continue;
        _receiver = stop.node;
        try {
            stop.node->TouchThis(p_type, p_change, stop.relationship, p_node, p_name, p_data);
        } catch (std::exception const& failure) {
            PassOver(*stop.node, failure.what());
        } catch (...) {
            PassOver(*stop.node, "an unknown exception");
        }
    }
}

/// A receiver failed: its time advances all the same, and whoever depends on it learns of the change.
void Propagation::PassOver(Node& p_receiver, char const* p_what) {
    ReportFailure(p_receiver, p_what);
    p_receiver._time.Touch();
    HandOn(p_receiver, IModifiable::RelationshipDirect);
}

void Propagation::Forget(Node const& p_node) noexcept {
    Propagation* const propagation = OfThread();
    if (!propagation || !propagation->_busy)
        return;
    if (propagation->_receiver == &p_node)
        propagation->_receiver = nullptr;
    if (p_node._spread == propagation->_spread) {
        for (Stop& stop : propagation->_queue) {
            if (stop.node == &p_node)
                stop.node = nullptr;
        }
    }
    for (Postponed& postponed : propagation->_postponed) {
        if (postponed.origin == &p_node)
            postponed.origin = nullptr;
    }
}

} // namespace Qor::Chart::Core::Detail
