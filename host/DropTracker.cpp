#include "host/DropTracker.h"

#include <utility>

namespace Qor::Chart::Host {

using Render::EventHandler;
using Hint = EventHandler::DragOverHint;

bool DropTracker::Call(EventTarget const& p_target, EventCaller::EventName p_event, InputEvent const& p_input,
    EventTarget const* p_dragged, Hint p_hint) {
    if (!p_target.hit || !_caller.Wants(p_target.node, p_event))
        return false;
    EventTarget const receiver{p_target.node, p_dragged ? p_dragged->hit : nullptr};
    return _caller.Call(receiver, p_event, p_input, p_target.hit, p_hint).status == Render::Event::HandlerStatusHandled;
}

bool DropTracker::Move(EventTargets const& p_targets, InputEvent const& p_input, EventTarget const* p_dragged) {
    std::optional<EventTarget> found;
    for (EventTarget const& target : p_targets) {
        bool const isDragged = p_dragged && p_dragged->node == target.node;
        if (isDragged || !Call(target, EventHandler::EventNotifyDropTarget, p_input, p_dragged))
            continue;
        found = target;
        break;
    }
    bool const isSame = found && _target && found->node == _target->node;
    if (!isSame)
        Leave(p_input, p_dragged);
    _targets = p_targets;
    _target = found;
    if (_target)
        Call(*_target, EventHandler::EventDropTargetDragOver, p_input, p_dragged, isSame ? Hint::Move : Hint::Enter);
    return _target.has_value();
}

void DropTracker::Leave(InputEvent const& p_input, EventTarget const* p_dragged) {
    if (std::optional<EventTarget> const target = std::exchange(_target, std::nullopt))
        Call(*target, EventHandler::EventDropTargetDragOver, p_input, p_dragged, Hint::Leave);
}

bool DropTracker::Drop(InputEvent const& p_input, EventTarget const* p_dragged) {
    std::optional<EventTarget> const target = std::exchange(_target, std::nullopt);
    return target && Call(*target, EventHandler::EventDrop, p_input, p_dragged);
}

} // namespace Qor::Chart::Host
