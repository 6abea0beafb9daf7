#include "render/events/EventHandler.h"

#include "render/core/Vis.h"
#include "framework/core/Node.h"

#include <boost/any.hpp>

#include <cstddef>
#include <stdexcept>
#include <string>

namespace Qor::Chart::Render {

namespace {

std::size_t PositionOf(EventHandler::EventName p_event) {
    if (p_event < 0 || p_event >= EventHandler::EventCount)
        throw std::out_of_range("invalid bitset<N> position");
    return static_cast<std::size_t>(p_event);
}

} // namespace

EventHandler::~EventHandler() = default;

bool EventHandler::IsEventDefined(EventName p_event) const {
    return _defined[PositionOf(p_event)];
}

Event::Result EventHandler::OnMouseOver(EventInformation&) {
    return Event::Ignored;
}

void EventHandler::OnMouseMove(EventInformation&) {}

void EventHandler::OnMouseOut(EventInformation&) {}

Event::Result EventHandler::OnDragBegin(EventInformation&) {
    return Event::Ignored;
}

void EventHandler::OnDrag(EventInformation&) {}

void EventHandler::OnDragEnd(EventInformation&) {}

bool EventHandler::NotifyDropTarget(EventInformation&, HitRecord const&) {
    return false;
}

void EventHandler::OnDropTargetDragOver(EventInformation&, HitRecord const&, DragOverHint) {}

Event::HandlerStatus EventHandler::OnDrop(EventInformation&, HitRecord const&) {
    return Event::HandlerStatusNotHandled;
}

Event::Result EventHandler::OnClick(EventInformation&) {
    return Event::Ignored;
}

Event::Propagation EventHandler::OnDoubleClick(EventInformation&) {
    return Event::PropagationContinue;
}

Event::Propagation EventHandler::OnScroll(EventInformation&) {
    return Event::PropagationContinue;
}

Event::Result EventHandler::OnKeyPress(EventInformation&) {
    return Event::Ignored;
}

void EventHandler::OnKeyRelease(EventInformation&) {}

void EventHandler::Connect(Core::Node& p_node, EventName p_event) {
    Write(p_node, p_event, true);
}

void EventHandler::Disconnect(Core::Node& p_node, EventName p_event) {
    Write(p_node, p_event, false);
}

void EventHandler::Write(Core::Node& p_node, EventName p_event, bool p_on) {
    std::size_t const position = PositionOf(p_event);
    if (_defined[position] == p_on)
        return;
    _defined[position] = p_on;
    auto* const vis = p_event == EventKeyPress ? dynamic_cast<Vis*>(&p_node) : nullptr;
    if (vis)
        vis->SetTakesKeys(p_on);
    p_node.TouchThis(Core::IModifiable::ModifiableTypeGeneric,
        p_on ? Core::IModifiable::ChangeModified : Core::IModifiable::ChangeClear, Core::IModifiable::RelationshipSelf,
        Core::WeakPtr<Core::Node>(), "callback", boost::any());
}

} // namespace Qor::Chart::Render
