#include "framework/model/EventConnection.h"

#include "framework/model/EventSubscribers.h"

#include <utility>

namespace Qor::Chart::Model {

EventConnection::EventConnection(std::weak_ptr<Detail::EventSlot> p_slot) noexcept : _slot(std::move(p_slot)) {}

EventConnection& EventConnection::operator=(EventConnection&& p_other) noexcept {
    EventConnection taken(std::move(p_other));
    std::swap(_slot, taken._slot);
    return *this;
}

EventConnection::~EventConnection() {
    Disconnect();
}

void EventConnection::Disconnect() noexcept {
    std::shared_ptr<Detail::EventSlot> const slot = std::exchange(_slot, {}).lock();
    if (slot && slot->subscribers)
        slot->subscribers->Remove(*slot);
}

bool EventConnection::IsConnected() const noexcept {
    std::shared_ptr<Detail::EventSlot> const slot = _slot.lock();
    return slot && slot->subscribers;
}

} // namespace Qor::Chart::Model
