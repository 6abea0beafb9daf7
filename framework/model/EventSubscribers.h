#pragma once

#include "framework/model/Events.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

namespace Qor::Chart::Model::Detail {

class EventSubscribers;

/// One subscription.
struct EventSlot {
    std::function<void(Events::Event const&)> callback;
    EventSubscribers* subscribers = nullptr; ///< null once the subscription has ended
};

/// Who subscribed to the events of one node. It stays for as long as an event is being raised, even when the node goes
/// meanwhile.
class EventSubscribers {
public:
    EventSubscribers() = default;
    EventSubscribers(EventSubscribers const&) = delete;
    EventSubscribers& operator=(EventSubscribers const&) = delete;

    void Acquire() noexcept { ++_users; }
    void Release() noexcept;

    std::weak_ptr<EventSlot> Add(std::function<void(Events::Event const&)> p_callback);
    void Remove(EventSlot& p_slot) noexcept;
    void Raise(Events::Event const& p_event) noexcept;
    bool Empty() const noexcept { return _connected == 0; }

private:
    ~EventSubscribers() = default;
    void DropEnded() noexcept;

    std::vector<std::shared_ptr<EventSlot>> _slots;
    std::size_t _connected = 0;
    unsigned _users = 1;
    unsigned _raising = 0;
};

} // namespace Qor::Chart::Model::Detail
