#include "host/EventCaller.h"

#include "framework/utility/Ensure.h"
#include "host/Scene.h"
#include "render/events/EventInformation.h"
#include "render/loops/FailureReport.h"

#include <array>
#include <exception>
#include <string>

namespace Qor::Chart::Host {

using Render::EventHandler;
using Render::EventInformation;
using Render::Event::Result;

namespace {

constexpr std::array<char const*, EventHandler::EventCount> Stages{
    "InputDispatcher-OnMouseOver",
    "InputDispatcher-OnMouseMove",
    "InputDispatcher-OnMouseOut",
    "InputDispatcher-OnDragBegin",
    "InputDispatcher-OnDrag",
    "InputDispatcher-OnDragEnd",
    "InputDispatcher-NotifyDropTarget",
    "InputDispatcher-OnDropTargetDragOver",
    "InputDispatcher-OnDrop",
    "InputDispatcher-OnClick",
    "InputDispatcher-OnDoubleClick",
    "InputDispatcher-OnScroll",
    "InputDispatcher-OnKeyPress",
    "InputDispatcher-OnKeyRelease",
};

Result FromStatus(bool p_isHandled) {
    return p_isHandled ? Render::Event::Consumed : Render::Event::Ignored;
}

Result FromPropagation(Render::Event::Propagation p_propagation) {
    return FromStatus(p_propagation == Render::Event::PropagationStop);
}

struct DropDetails {
    Render::HitRecord const& target;
    EventHandler::DragOverHint hint;
};

Result Drop(EventHandler& p_handler, EventHandler::EventName p_event, EventInformation& p_information,
    DropDetails const& p_details) {
    if (p_event == EventHandler::EventNotifyDropTarget)
        return FromStatus(p_handler.NotifyDropTarget(p_information, p_details.target));
    if (p_event == EventHandler::EventDrop)
        return FromStatus(p_handler.OnDrop(p_information, p_details.target) == Render::Event::HandlerStatusHandled);
    p_handler.OnDropTargetDragOver(p_information, p_details.target, p_details.hint);
    return {};
}

Result Notify(EventHandler& p_handler, EventHandler::EventName p_event, EventInformation& p_information) {
    switch (p_event) {
    case EventHandler::EventMouseMove:
        p_handler.OnMouseMove(p_information);
        break;
    case EventHandler::EventMouseOut:
        p_handler.OnMouseOut(p_information);
        break;
    case EventHandler::EventDrag:
        p_handler.OnDrag(p_information);
        break;
    case EventHandler::EventDragEnd:
        p_handler.OnDragEnd(p_information);
        break;
    case EventHandler::EventKeyRelease:
        p_handler.OnKeyRelease(p_information);
        break;
    default:
        break;
    }
    return {};
}

Result Ask(EventHandler& p_handler, EventHandler::EventName p_event, EventInformation& p_information) {
    switch (p_event) {
    case EventHandler::EventMouseOver:
        return p_handler.OnMouseOver(p_information);
    case EventHandler::EventDragBegin:
        return p_handler.OnDragBegin(p_information);
    case EventHandler::EventClick:
        return p_handler.OnClick(p_information);
    case EventHandler::EventDoubleClick:
        return FromPropagation(p_handler.OnDoubleClick(p_information));
    case EventHandler::EventScroll:
        return FromPropagation(p_handler.OnScroll(p_information));
    case EventHandler::EventKeyPress:
        return p_handler.OnKeyPress(p_information);
    default:
        return Notify(p_handler, p_event, p_information);
    }
}

EventInformation InformationOf(InputEvent const& p_input, Render::EventSink& p_sink, Render::HitRecord const* p_hit) {
    EventInformation information(p_sink, p_hit);
    information.position = p_input.position;
    information.button = p_input.button;
    information.buttons = p_input.buttons;
    information.modifiers = p_input.modifiers;
    information.key = p_input.key;
    information.text = p_input.text;
    information.composition = p_input.composition;
    information.scroll = p_input.scroll;
    information.dragged = p_input.dragged;
    return information;
}

EventHandler* HandlerOf(Core::WeakPtr<Render::Vis> const& p_node) {
    return dynamic_cast<EventHandler*>(p_node.Peek());
}

bool IsHover(EventHandler::EventName p_event) {
    return p_event == EventHandler::EventMouseOver || p_event == EventHandler::EventMouseMove ||
        p_event == EventHandler::EventMouseOut;
}

} // namespace

bool EventCaller::IsConnected(Core::WeakPtr<Render::Vis> const& p_node, EventName p_event) {
    EventHandler const* const handler = HandlerOf(p_node);
    return handler && handler->IsEventDefined(p_event);
}

bool EventCaller::TakesPart(Render::Vis const& p_node, EventName p_event) const {
    return p_node.IsEnabled() && (_scene.Capabilities().interaction || IsHover(p_event));
}

bool EventCaller::Wants(Core::WeakPtr<Render::Vis> const& p_node, EventName p_event) const {
    return IsConnected(p_node, p_event) && TakesPart(*p_node.Peek(), p_event);
}

Result EventCaller::Call(EventTarget const& p_receiver, EventName p_event, InputEvent const& p_input,
    Render::HitRecord const* p_target, DragOverHint p_hint) {
    Core::Ptr<Render::Vis> const node = p_receiver.node.Lock();
    EventHandler* const handler = dynamic_cast<EventHandler*>(node.Get());
    if (!handler)
        return {};
    EventInformation information = InformationOf(p_input, _sink, p_receiver.hit);
    information.hits = p_receiver.hits;
    try {
        Result const result =
            p_target ? Drop(*handler, p_event, information, {*p_target, p_hint}) : Ask(*handler, p_event, information);
        for (auto const& [milliseconds, call] : information.LaterCalls())
            _timers.Add(milliseconds, p_receiver.node, call);
        if (information.TimeOut())
            _timeOuts.push_back({p_receiver.node, *information.TimeOut()});
        return result;
    } catch (...) {
        Render::FailureReport::Caught(*node, _scene.Dispatcher(), Core::Verbosity::Quiet, Stages[p_event],
            Utility::AtLine(__PRETTY_FUNCTION__, __LINE__));
    }
    return {};
}

template <class Wanted>
EventCaller::Outcome EventCaller::OfferWhere(
    EventTargets const& p_targets, EventName p_event, InputEvent const& p_input, Wanted const& p_wanted) {
    Outcome outcome;
    for (EventTarget const& target : p_targets) {
        if (!p_wanted(target))
            continue;
        Result const result = Call(target, p_event, p_input);
        if (result.status == Render::Event::HandlerStatusHandled && !outcome.isHandled) {
            outcome.isHandled = true;
            outcome.handler = target.node;
        }
        outcome.isStopped = result.propagation == Render::Event::PropagationStop;
        if (outcome.isStopped)
            break;
    }
    return outcome;
}

EventCaller::Outcome EventCaller::Offer(EventTargets const& p_targets, EventName p_event, InputEvent const& p_input) {
    return OfferWhere(
        p_targets, p_event, p_input, [&](EventTarget const& p_target) { return Wants(p_target.node, p_event); });
}

EventCaller::Outcome EventCaller::OfferToAll(
    EventTargets const& p_targets, EventName p_event, InputEvent const& p_input) {
    return OfferWhere(p_targets, p_event, p_input, [&](EventTarget const& p_target) {
        return HandlerOf(p_target.node) && TakesPart(*p_target.node.Peek(), p_event);
    });
}

void EventCaller::CallTimer(TimerList::Timer const& p_timer) {
    Core::Ptr<Render::Vis> const node = p_timer.node.Lock();
    if (!node)
        return;
    try {
        p_timer.call();
    } catch (...) {
        Render::FailureReport::Caught(*node, _scene.Dispatcher(), Core::Verbosity::Quiet, "InputDispatcher-CallLater",
            Utility::AtLine(__PRETTY_FUNCTION__, __LINE__));
    }
}

void EventCaller::GuardProgram(std::function<void()> const& p_call) {
    std::string what = "an exception that is no std::exception";
    try {
        p_call();
        return;
    } catch (std::exception const& failure) {
        what = failure.what();
    } catch (...) { // what was thrown says nothing
    }
    _scene.Dispatcher().ReportException("A callback of the program threw while input was handled: " + what,
        Utility::AtLine(__PRETTY_FUNCTION__, __LINE__));
}

} // namespace Qor::Chart::Host
