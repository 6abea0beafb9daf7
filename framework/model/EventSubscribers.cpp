#include "framework/model/EventSubscribers.h"

#include "framework/model/ModelNode.h"
#include "framework/utility/Logger.h"
#include "framework/utility/TypeInfo.h"

#include <exception>
#include <sstream>
#include <typeinfo>
#include <utility>

namespace Qor::Chart::Model::Detail {

namespace {

void ReportFailure(Events::Event const& p_event, char const* p_what) noexcept {
    try {
        std::ostringstream text;
        text << "A subscriber failed on the event " << Utility::TypeInfo(typeid(p_event)).Name() << " of "
             << Core::Ptr<Core::Node>(p_event.Node().Lock()) << ": " << p_what;
        Utility::GetLogger().error(text.str());
    } catch (std::exception const&) {
        Utility::GetLogger().error(p_what);
    }
}

void Call(EventSlot& p_slot, Events::Event const& p_event) noexcept {
    try {
        p_slot.callback(p_event);
    } catch (std::exception const& failure) {
        ReportFailure(p_event, failure.what());
    } catch (...) {
        ReportFailure(p_event, "it threw something that is no std::exception");
    }
}

} // namespace

/// Before the slots go they are marked as ended: a callback that is destroyed with them may hold another subscription.
void EventSubscribers::Release() noexcept {
    if (--_users > 0)
        return;
    for (std::shared_ptr<EventSlot> const& slot : _slots)
        slot->subscribers = nullptr;
    delete this;
}

std::weak_ptr<EventSlot> EventSubscribers::Add(std::function<void(Events::Event const&)> p_callback) {
    _slots.push_back(std::make_shared<EventSlot>(EventSlot{std::move(p_callback), this}));
    ++_connected;
    return _slots.back();
}

void EventSubscribers::Remove(EventSlot& p_slot) noexcept {
    p_slot.subscribers = nullptr;
    --_connected;
    if (_raising == 0)
        DropEnded();
}

void EventSubscribers::Raise(Events::Event const& p_event) noexcept {
    Acquire();
    ++_raising;
    std::size_t const count = _slots.size();
    for (std::size_t i = 0; i < count; ++i) {
        std::shared_ptr<EventSlot> const slot = _slots[i];
        if (slot->subscribers)
            Call(*slot, p_event);
    }
    if (--_raising == 0)
        DropEnded();
    Release();
}

/// A callback that is destroyed here may end further subscriptions, or this object's last user: so the slots leave one by
/// one, each when the list is in order again.
void EventSubscribers::DropEnded() noexcept {
    Acquire();
    for (std::size_t i = 0; i < _slots.size();) {
        if (_slots[i]->subscribers) {
            ++i;
            continue;
        }
        std::shared_ptr<EventSlot> const ended = std::move(_slots[i]);
        _slots.erase(_slots.begin() + static_cast<std::ptrdiff_t>(i));
    }
    Release();
}

} // namespace Qor::Chart::Model::Detail
