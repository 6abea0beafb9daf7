#include "framework/model/EventDelegate.h"

#include "framework/model/EventSubscribers.h"

namespace Qor::Chart::Model {

EventDelegate::~EventDelegate() {
    if (_subscribers)
        _subscribers->Release();
}

void EventDelegate::Raise(Events::Event const& p_event) const {
    if (_subscribers)
        _subscribers->Raise(p_event);
}

bool EventDelegate::HasSubscribers() const noexcept {
    return _subscribers && !_subscribers->Empty();
}

EventConnection EventDelegate::ConnectAny(std::function<void(Events::Event const&)> p_callback) {
    if (!_subscribers)
        _subscribers = new Detail::EventSubscribers;
    return EventConnection(_subscribers->Add(std::move(p_callback)));
}

} // namespace Qor::Chart::Model
