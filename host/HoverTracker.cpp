#include "host/HoverTracker.h"

#include "framework/qordebug/highrestimer.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace Qor::Chart::Host {

using Render::EventHandler;

std::optional<std::uint64_t> HoverTracker::Entry::Due(std::uint64_t p_lastEvent) const noexcept {
    if (timeOut <= 0 || !isOver || node.Expired())
        return std::nullopt;
    return p_lastEvent + static_cast<std::uint64_t>(timeOut) * 1'000'000;
}

bool HoverTracker::Entry::IsHeld(Types::Pos const& p_position) const noexcept {
    auto const distance = [](int p_a, int p_b) { return std::abs(std::int64_t{p_a} - p_b); };
    return heldAt && std::max(distance(heldAt->x, p_position.x), distance(heldAt->y, p_position.y)) < heldFor;
}

HoverTracker::Entry* HoverTracker::Find(EventTarget const& p_target) {
    auto const found = std::find_if(_entries.begin(), _entries.end(),
        [&](Entry const& p_entry) { return p_target.IsSamePart(p_entry.node, p_entry.name); });
    return found != _entries.end() ? &*found : nullptr;
}

void HoverTracker::Enter(EventTarget const& p_target, InputEvent const& p_input, Entry& p_entry) {
    p_entry.isOver = true;
    p_entry.hasOut = EventCaller::IsConnected(p_target.node, EventHandler::EventMouseOut);
    p_entry.timeOut = 0;
    Render::Event::Result const result = _caller.Call(p_target, EventHandler::EventMouseOver, p_input);
    p_entry.stops = result.propagation == Render::Event::PropagationStop;
}

void HoverTracker::Out(Entry& p_entry, InputEvent const& p_input, Render::HitRecord const* p_hit) {
    if (!std::exchange(p_entry.isOver, false))
        return;
    if (p_entry.hasOut || EventCaller::IsConnected(p_entry.node, EventHandler::EventMouseOut))
        _caller.Call({p_entry.node, p_hit}, EventHandler::EventMouseOut, p_input);
}

template <class Condition>
void HoverTracker::LeaveWhere(EventTargets const& p_targets, InputEvent const& p_input, Condition const& p_condition) {
    for (Entry& entry : _entries) {
        if (!p_condition(entry))
            continue;
        EventTarget const* const target = p_targets.Find(entry.node);
        Out(entry, p_input, target ? target->hit : nullptr);
    }
    std::erase_if(_entries, p_condition);
}

void HoverTracker::Update(EventTargets const& p_targets, InputEvent const& p_input, bool p_isMove) {
    LeaveWhere(p_targets, p_input, [&](Entry const& p_entry) {
        if (p_entry.heldAt)
            return !p_entry.IsHeld(p_input.position);
        EventTarget const* const target = p_targets.Find(p_entry.node);
        return !target || !target->IsSamePart(p_entry.node, p_entry.name);
    });
    for (Entry& entry : _entries)
        entry.isReached = entry.heldAt.has_value();
    for (EventTarget const& target : p_targets) {
        Entry* entry = Find(target);
        if (!entry && _caller.Wants(target.node, EventHandler::EventMouseOver)) {
            entry = &_entries.emplace_back(Entry{target.node, target.Name()});
            Enter(target, p_input, *entry);
        } else if (entry && p_isMove && !entry->isOver) {
            Enter(target, p_input, *entry);
        }
        if (p_isMove && _caller.Wants(target.node, EventHandler::EventMouseMove))
            _caller.Call(target, EventHandler::EventMouseMove, p_input);
        if (entry)
            entry->isReached = true;
        if (entry && entry->stops)
            break;
    }
    LeaveWhere(p_targets, p_input, [](Entry const& p_entry) { return !p_entry.isReached; });
}

void HoverTracker::LeaveAll(InputEvent const& p_input) {
    for (Entry& entry : _entries)
        entry.heldAt.reset();
    Update(EventTargets(), p_input, false);
}

void HoverTracker::Hold(Core::WeakPtr<Render::Vis> const& p_node, InputEvent const& p_input, int p_pixels) {
    auto found =
        std::ranges::find_if(_entries, [&](Entry const& p_entry) { return p_entry.heldAt && p_entry.node == p_node; });
    if (found == _entries.end())
        found = _entries.insert(_entries.end(), Entry{p_node, Ogl::HitRecord::NameInvalid});
    found->isOver = true;
    found->heldAt = p_input.position;
    found->heldFor = p_pixels;
}

void HoverTracker::Ensure(EventTarget const& p_target, InputEvent const& p_input) {
    Entry* entry = Find(p_target);
    if (entry && entry->isOver)
        return;
    if (!_caller.Wants(p_target.node, EventHandler::EventMouseOver))
        return;
    if (!entry)
        entry = &_entries.emplace_back(Entry{p_target.node, p_target.Name()});
    Enter(p_target, p_input, *entry);
}

void HoverTracker::Leave(Core::WeakPtr<Render::Vis> const& p_node, InputEvent const& p_input) {
    LeaveWhere(EventTargets(), p_input, [&](Entry const& p_entry) { return p_entry.node == p_node; });
}

void HoverTracker::SetTimeOuts(std::vector<EventCaller::TimeOut> const& p_timeOuts) {
    for (EventCaller::TimeOut const& timeOut : p_timeOuts) {
        for (Entry& entry : _entries) {
            if (entry.node == timeOut.node)
                entry.timeOut = timeOut.milliseconds;
        }
    }
}

void HoverTracker::Restart() noexcept {
    _lastEvent = qordebug::now();
}

std::optional<std::uint64_t> HoverTracker::NextDue() const {
    std::optional<std::uint64_t> next;
    for (Entry const& entry : _entries) {
        std::optional<std::uint64_t> const due = entry.Due(_lastEvent);
        if (due && (!next || *due < *next))
            next = due;
    }
    return next;
}

void HoverTracker::LeaveDue(InputEvent const& p_input) {
    std::uint64_t const now = qordebug::now();
    for (Entry& entry : _entries) {
        std::optional<std::uint64_t> const due = entry.Due(_lastEvent);
        if (due && *due <= now)
            Out(entry, p_input, nullptr);
    }
}

} // namespace Qor::Chart::Host
