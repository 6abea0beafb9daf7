#pragma once

#include "render/Export.h"
#include "render/events/Event.h"

#include <bitset>

namespace Qor::Chart::Core {
class Node;
}

namespace Qor::Chart::Render {

class EventInformation;
struct HitRecord;

/// Through it a visual node receives what the user does with pointer and keys. A node class derives from `Vis` and from
/// this, overrides the handlers it cares about and connects them, so that the host's dispatcher knows whom to offer an
/// event without asking everybody. A handler that consumed an event answers `Event::Consumed`; the others let it go on.
class QOR_VIS_API EventHandler {
public:
    /// In the order of the handlers.
    enum EventName : int {
        EventMouseOver = 0,
        EventMouseMove = 1,
        EventMouseOut = 2,
        EventDragBegin = 3,
        EventDrag = 4,
        EventDragEnd = 5,
        EventNotifyDropTarget = 6,
        EventDropTargetDragOver = 7,
        EventDrop = 8,
        EventClick = 9,
        EventDoubleClick = 10,
        EventScroll = 11,
        EventKeyPress = 12,
        EventKeyRelease = 13,
    };
    static constexpr int EventCount = 14;

    /// What a drag does over a drop target.
    enum class DragOverHint {
        Enter,
        Move,
        Leave,
    };

    EventHandler() noexcept = default;
    EventHandler(EventHandler const&) noexcept = default;
    EventHandler& operator=(EventHandler const&) noexcept = default;
    virtual ~EventHandler();

    /// Throws `std::out_of_range` for a value outside 0 to 13.
    bool IsEventDefined(EventName p_event) const;

    virtual Event::Result OnMouseOver(EventInformation& p_event);
    virtual void OnMouseMove(EventInformation& p_event);
    virtual void OnMouseOut(EventInformation& p_event);
    virtual Event::Result OnDragBegin(EventInformation& p_event);
    virtual void OnDrag(EventInformation& p_event);
    virtual void OnDragEnd(EventInformation& p_event);
    /// Whether the node takes what is dragged; p_target is what was hit of the node under the pointer, here and in the
    /// next two.
    virtual bool NotifyDropTarget(EventInformation& p_event, HitRecord const& p_target);
    virtual void OnDropTargetDragOver(EventInformation& p_event, HitRecord const& p_target, DragOverHint p_hint);
    virtual Event::HandlerStatus OnDrop(EventInformation& p_event, HitRecord const& p_target);
    virtual Event::Result OnClick(EventInformation& p_event);
    virtual Event::Propagation OnDoubleClick(EventInformation& p_event);
    virtual Event::Propagation OnScroll(EventInformation& p_event);
    virtual Event::Result OnKeyPress(EventInformation& p_event);
    virtual void OnKeyRelease(EventInformation& p_event);

protected:
    /// Asks for an event from now on. The node, the `Vis` part of the same object, is told of the change so that the
    /// dispatcher sees it; connecting twice changes nothing. Throws `std::out_of_range` for a value outside 0 to 13.
    void Connect(Core::Node& p_node, EventName p_event);
    /// Gives an event up; the mirror of `Connect`.
    void Disconnect(Core::Node& p_node, EventName p_event);

private:
    void Write(Core::Node& p_node, EventName p_event, bool p_on);

    std::bitset<EventCount> _defined;
};

} // namespace Qor::Chart::Render
