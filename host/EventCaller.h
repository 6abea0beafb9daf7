#pragma once

#include "framework/core/Ptr.h"
#include "framework/core/WeakPtr.h"
#include "host/EventTargets.h"
#include "host/InputEvent.h"
#include "host/TimerList.h"
#include "render/events/Event.h"
#include "render/events/EventHandler.h"
#include "render/events/EventSink.h"

#include <functional>
#include <utility>
#include <vector>

namespace Qor::Chart::Host {

class Scene;

/// Calls the handlers of nodes, one at a time. What a handler throws is reported with the node's name, and counts as an
/// event that was not handled; what it wants to happen later is noted. A node lives at least as long as its handler runs.
class EventCaller {
public:
    using EventName = Render::EventHandler::EventName;
    using DragOverHint = Render::EventHandler::DragOverHint;
    using Result = Render::Event::Result;

    /// What became of an event that was offered to several nodes.
    struct Outcome {
        bool isHandled = false;
        bool isStopped = false;
        Core::WeakPtr<Render::Vis> handler; ///< the first that handled it

        bool IsTaken() const noexcept { return isHandled || isStopped; }
    };

    /// A node has set after which time without events the pointer counts as having left it.
    struct TimeOut {
        Core::WeakPtr<Render::Vis> node;
        int milliseconds;
    };

    /// @param p_sink  what handlers are given to ask things of
    EventCaller(Scene& p_scene, Render::EventSink& p_sink, TimerList& p_timers) noexcept
        : _scene(p_scene), _sink(p_sink), _timers(p_timers) {}

    /// Whether the node lives, takes part in the scene, and has connected the event. While the scene's capabilities do not
    /// allow interaction nodes want nothing but to know that the pointer is over them.
    bool Wants(Core::WeakPtr<Render::Vis> const& p_node, EventName p_event) const;
    /// Whether the node lives and has connected the event.
    static bool IsConnected(Core::WeakPtr<Render::Vis> const& p_node, EventName p_event);

    /// Calls a handler, whatever the node has connected. The propagation is that of continuing and the status that of an
    /// unhandled event when there is no such handler any more; of handlers without an answer too.
    /// @param p_target  for the drop events: what is under the pointer of the node
    Result Call(EventTarget const& p_receiver, EventName p_event, InputEvent const& p_input,
        Render::HitRecord const* p_target = nullptr, DragOverHint p_hint = DragOverHint::Move);

    /// Offers an event to those who want it, until one stops it.
    Outcome Offer(EventTargets const& p_targets, EventName p_event, InputEvent const& p_input);
    /// The same, and whoever has a handler is taken to want it.
    Outcome OfferToAll(EventTargets const& p_targets, EventName p_event, InputEvent const& p_input);

    /// Runs a call of `EventInformation::CallLater`.
    void CallTimer(TimerList::Timer const& p_timer);

    std::vector<TimeOut> TakeTimeOuts() noexcept { return std::exchange(_timeOuts, {}); }

    /// Calls the program; what that throws is reported.
    template <class Callback, class... Arguments>
    void Tell(Callback const& p_callback, Arguments const&... p_arguments) {
        Callback const callback = p_callback; // which may put another in its own place
        if (callback)
            GuardProgram([&] { callback(p_arguments...); });
    }
    /// Reports what a call of the program throws.
    void GuardProgram(std::function<void()> const& p_call);

private:
    bool TakesPart(Render::Vis const& p_node, EventName p_event) const;
    template <class Wanted>
    Outcome OfferWhere(
        EventTargets const& p_targets, EventName p_event, InputEvent const& p_input, Wanted const& p_wanted);

    Scene& _scene;
    Render::EventSink& _sink;
    TimerList& _timers;
    std::vector<TimeOut> _timeOuts;
};

} // namespace Qor::Chart::Host
