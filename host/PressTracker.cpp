#include "host/PressTracker.h"

#include "framework/qordebug/highrestimer.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace Qor::Chart::Host {

using DragPhase = InputCallbacks::DragPhase;
using Render::EventHandler;
using WeakVis = Core::WeakPtr<Render::Vis>;

namespace {

std::optional<EventTarget> BestOf(EventTargets const& p_targets) {
    return p_targets.IsEmpty() ? std::nullopt : std::optional(*p_targets.begin());
}

bool IsSame(std::optional<EventTarget> const& p_a, std::optional<EventTarget> const& p_b) {
    return p_a && p_b ? p_a->IsSamePart(p_b->node, p_b->Name()) : !p_a && !p_b;
}

} // namespace

EventTarget const* PressTracker::DraggedOntoOthers() const {
    bool const isIt =
        _phase == Phase::Node && EventCaller::IsConnected(_owner->node, EventHandler::EventNotifyDropTarget);
    return isIt ? &*_owner : nullptr;
}

bool PressTracker::IsFar(Types::Pos const& p_from, Types::Pos const& p_to) const noexcept {
    auto const distance = [](int p_a, int p_b) { return std::abs(std::int64_t{p_a} - p_b); };
    return std::max(distance(p_to.x, p_from.x), distance(p_to.y, p_from.y)) >= _threshold;
}

bool PressTracker::IsSecondClick(int p_milliseconds) const {
    if (!_lastClick || _lastClick->button != _button || IsFar(_lastClick->position, _position))
        return false;
    auto const limit = static_cast<std::uint64_t>(std::max(p_milliseconds, 0)) * 1'000'000;
    return _pressed - _lastClick->pressed <= limit && IsSame(_lastClick->target, BestOf(_targets));
}

void PressTracker::Begin(
    InputEvent const& p_input, EventTargets const& p_targets, int p_threshold, int p_doubleClickMilliseconds) {
    _phase = Phase::Pressed;
    _button = p_input.button;
    _position = p_input.position;
    _pressed = qordebug::now();
    _threshold = std::max(p_threshold, 1);
    _targets = p_targets;
    _isSecond = IsSecondClick(p_doubleClickMilliseconds);
}

void PressTracker::Move(InputEvent const& p_input) {
    if (_phase == Phase::Pressed && IsFar(_position, p_input.position))
        BeginDrag(p_input);
    if (IsDragging())
        Drag(p_input, DragPhase::Move);
}

// The drag begins where the button went down, so that nothing jumps by the threshold.
void PressTracker::BeginDrag(InputEvent const& p_input) {
    InputEvent begin = p_input;
    begin.position = _position;
    bool isStopped = false;
    _lastClick.reset();
    _phase = Phase::Over;
    for (EventTarget const& target : _targets) {
        if (OfferDrag(target, begin, isStopped) || isStopped)
            break;
    }
    if (_phase == Phase::Node || isStopped)
        return;
    _phase = Phase::Program;
    _caller.Tell(_callbacks.drag, begin, DragPhase::Begin);
}

bool PressTracker::OfferDrag(EventTarget const& p_target, InputEvent const& p_input, bool& p_isStopped) {
    if (!_caller.Wants(p_target.node, EventHandler::EventDragBegin))
        return false;
    _hover.Ensure(p_target, p_input);
    bool const owesEnd = EventCaller::IsConnected(p_target.node, EventHandler::EventDragEnd);
    Render::Event::Result const result = _caller.Call(p_target, EventHandler::EventDragBegin, p_input);
    p_isStopped = result.propagation == Render::Event::PropagationStop;
    if (result.status != Render::Event::HandlerStatusHandled)
        return false;
    _phase = Phase::Node;
    _owner = p_target;
    _owesEnd = owesEnd;
    return true;
}

void PressTracker::Drag(InputEvent const& p_input, DragPhase p_phase) {
    if (_phase == Phase::Program) {
        _caller.Tell(_callbacks.drag, p_input, p_phase);
    } else if (_owner->node.Expired()) {
        _phase = Phase::Over;
    } else if (EventCaller::IsConnected(_owner->node, EventHandler::EventDrag)) {
        _caller.Call(*_owner, EventHandler::EventDrag, p_input);
    }
}

WeakVis PressTracker::EndDrag(InputEvent const& p_input, DragPhase p_phase) {
    Phase const phase = std::exchange(_phase, Phase::Over);
    if (phase == Phase::Program)
        _caller.Tell(_callbacks.drag, p_input, p_phase);
    if (phase != Phase::Node)
        return {};
    EventTarget const owner = *std::exchange(_owner, std::nullopt);
    if (_owesEnd || EventCaller::IsConnected(owner.node, EventHandler::EventDragEnd))
        _caller.Call(owner, EventHandler::EventDragEnd, p_input);
    return owner.node;
}

WeakVis PressTracker::End(InputEvent const& p_input) {
    if (_phase == Phase::Pressed)
        Click(p_input);
    WeakVis owner = IsDragging() ? EndDrag(p_input, DragPhase::End) : WeakVis();
    Forget();
    return owner;
}

WeakVis PressTracker::TakeBack(InputEvent const& p_input) {
    InputEvent back = p_input;
    back.position = _position;
    _isBrokenOff = true;
    if (_phase == Phase::Node)
        Drag(back, DragPhase::Move);
    WeakVis owner = EndDrag(back, DragPhase::Cancel);
    _isBrokenOff = false;
    _lastClick.reset();
    return owner;
}

WeakVis PressTracker::Stop(InputEvent const& p_input) {
    _isBrokenOff = true;
    WeakVis owner = EndDrag(p_input, DragPhase::End);
    _isBrokenOff = false;
    _lastClick.reset();
    return owner;
}

void PressTracker::Forget() noexcept {
    _phase = Phase::None;
    _owner.reset();
}

// A node that knows nothing of double clicks gets two clicks.
void PressTracker::Click(InputEvent const& p_input) {
    bool const isSecond = std::exchange(_isSecond, false);
    EventTargets const targets = _targets;
    _lastClick.reset();
    if (!isSecond)
        _lastClick = LastClick{_button, _position, _pressed, BestOf(targets), targets};
    bool isTaken = isSecond && _caller.Offer(targets, EventHandler::EventDoubleClick, p_input).IsTaken();
    if (!isTaken)
        isTaken = _caller.Offer(targets, EventHandler::EventClick, p_input).IsTaken();
    isTaken = _selection.Click(p_input, targets.Hits(), {isTaken, isSecond, _threshold}) || isTaken;
    _caller.Tell(isSecond ? _callbacks.doubleClick : _callbacks.click, p_input, targets.Hits(), isTaken);
}

} // namespace Qor::Chart::Host
