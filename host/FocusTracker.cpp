#include "host/FocusTracker.h"

#include "host/Scene.h"
#include "render/core/Vis.h"
#include "render/events/EventInformation.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace Qor::Chart::Host {

using Render::EventHandler;

void FocusTracker::Take(WeakVis const& p_node, Told p_changed) {
    Core::Ptr<Render::Vis> const node = p_node.Lock(); // who is told may remove it
    if (Has(p_node) || !node)
        return;
    Core::Ptr<Render::Vis> const former = std::exchange(_node, p_node).Lock();
    Told const lost = std::exchange(_changed, std::move(p_changed));
    if (former)
        _caller.Tell(lost, Change::Lost);
    if (!_isWindowHere && Has(p_node))
        _caller.Tell(_changed, Change::WindowLeft);
}

void FocusTracker::Leave(WeakVis const& p_node) {
    if (Has(p_node))
        End();
}

// The node is nobody's before it is told: it may take the focus again, or give it to others.
void FocusTracker::End() {
    Core::Ptr<Render::Vis> const node = std::exchange(_node, {}).Lock();
    Told const changed = std::exchange(_changed, {});
    if (node)
        _caller.Tell(changed, Change::Lost);
}

void FocusTracker::EndOfGone() {
    Core::Ptr<Render::Vis> const node = _node.Lock();
    if (IsTaken() && (!node || !node->TakesPartIn(*_scene.Visual())))
        End();
}

void FocusTracker::SetWindow(bool p_isHere) {
    if (std::exchange(_isWindowHere, p_isHere) == p_isHere)
        return;
    if (Core::Ptr<Render::Vis> const node = _node.Lock())
        _caller.Tell(_changed, p_isHere ? Change::WindowEntered : Change::WindowLeft);
}

EventCaller::Outcome FocusTracker::Offer(InputEvent const& p_input) {
    EventCaller::Outcome outcome;
    WeakVis const node = _node;
    if (!IsTaken() || !_caller.Wants(node, EventHandler::EventKeyPress))
        return outcome;
    EventCaller::Result const result = _caller.Call({node, nullptr}, EventHandler::EventKeyPress, p_input);
    outcome.isHandled = result.status == Render::Event::HandlerStatusHandled;
    outcome.isStopped = result.propagation == Render::Event::PropagationStop;
    if (outcome.isHandled)
        outcome.handler = node;
    return outcome;
}

std::vector<FocusTracker::WeakVis> FocusTracker::Candidates() const {
    std::vector<WeakVis> candidates;
    std::unordered_set<Render::Vis const*> known; // nodes may be shared, and a broken tree may lead back to itself
    std::vector<Core::Ptr<Render::Vis>> open{_scene.Visual()};
    while (!open.empty()) {
        Core::Ptr<Render::Vis> const node = std::move(open.back());
        open.pop_back();
        if (!node->IsActive() || !node->IsEnabled() || !known.insert(node.Get()).second)
            continue;
        if (EventCaller::IsConnected(WeakVis(node), EventHandler::EventKeyPress))
            candidates.emplace_back(node);
        auto const first = static_cast<std::ptrdiff_t>(open.size());
        for (Core::Ptr<Render::Vis> const& child : *node) {
            if (child->HasKeyTakers())
                open.push_back(child);
        }
        std::reverse(open.begin() + first, open.end());
    }
    return candidates;
}

EventCaller::Outcome FocusTracker::OfferToNext(InputEvent const& p_input) {
    std::vector<WeakVis> candidates = Candidates();
    if ((p_input.modifiers & Render::EventInformation::ModifierShift) != 0)
        std::ranges::reverse(candidates);
    auto const present = IsTaken() ? std::ranges::find(candidates, _node) : candidates.end();
    for (auto next = present == candidates.end() ? candidates.begin() : present + 1; next != candidates.end(); ++next) {
        if (!_caller.Wants(*next, EventHandler::EventKeyPress))
            continue;
        EventCaller::Result const result = _caller.Call({*next, nullptr}, EventHandler::EventKeyPress, p_input);
        bool const isHandled = result.status == Render::Event::HandlerStatusHandled;
        if (isHandled || result.propagation == Render::Event::PropagationStop)
            return {isHandled, !isHandled, isHandled ? *next : WeakVis()};
    }
    End();
    return {};
}

} // namespace Qor::Chart::Host
