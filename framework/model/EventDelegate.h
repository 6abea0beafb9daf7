#pragma once

#include "framework/Export.h"
#include "framework/model/EventConnection.h"
#include "framework/model/Events.h"

#include <functional>
#include <utility>

namespace Qor::Chart::Model {

namespace Detail {
class EventSubscribers;
}

/// Through which the events of one node reach whoever subscribed to them. Without subscribers it costs a pointer.
///
/// Callbacks run in the order of subscription. While they run, they may subscribe and disconnect, raise more events and
/// drop the node: who was subscribed when the event was raised and still is hears it, whoever came later hears the next
/// one. A callback that throws is reported to the logger, and the others still hear the event.
class QOR_FRAMEWORK_API EventDelegate {
public:
    EventDelegate() noexcept = default;
    EventDelegate(EventDelegate const&) = delete;
    EventDelegate& operator=(EventDelegate const&) = delete;
    ~EventDelegate();

    /// Subscribes to the events that are an EventType; `Events::Event` hears all.
    template <class EventType, class Callback>
    [[nodiscard]] EventConnection Connect(Callback p_callback) {
        return ConnectAny([callback = std::move(p_callback)](Events::Event const& p_event) mutable {
            if (auto const* const event = dynamic_cast<EventType const*>(&p_event))
                std::invoke(callback, *event);
        });
    }

    void Raise(Events::Event const& p_event) const;

    bool HasSubscribers() const noexcept;

private:
    EventConnection ConnectAny(std::function<void(Events::Event const&)> p_callback);

    Detail::EventSubscribers* _subscribers = nullptr;
};

} // namespace Qor::Chart::Model
