#pragma once

#include "host/EventCaller.h"
#include "host/EventTargets.h"
#include "host/InputEvent.h"

#include <optional>

namespace Qor::Chart::Host {

/// Finds the node that takes what is dragged, and tells it when the drag comes, moves over it, goes, and is dropped. At
/// each move the nodes under the pointer are asked in order; the first that takes it is the target.
class DropTracker {
public:
    explicit DropTracker(EventCaller& p_caller) noexcept : _caller(p_caller) {}

    /// Whether there is a target now.
    /// @param p_dragged  the node that is dragged, which is no target itself; null for what comes from outside
    bool Move(EventTargets const& p_targets, InputEvent const& p_input, EventTarget const* p_dragged);
    /// The drag goes, or is broken off.
    void Leave(InputEvent const& p_input, EventTarget const* p_dragged);
    /// Whether the target has taken what was dropped; there is none afterwards.
    bool Drop(InputEvent const& p_input, EventTarget const* p_dragged);

private:
    bool Call(EventTarget const& p_target, EventCaller::EventName p_event, InputEvent const& p_input,
        EventTarget const* p_dragged, EventCaller::DragOverHint p_hint = EventCaller::DragOverHint::Move);

    EventCaller& _caller;
    EventTargets _targets;
    std::optional<EventTarget> _target; ///< one of those
};

} // namespace Qor::Chart::Host
