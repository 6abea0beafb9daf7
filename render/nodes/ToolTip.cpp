#include "render/nodes/ToolTip.h"

#include "render/events/EventInformation.h"
#include "render/events/EventSink.h"

#include <utility>

namespace Qor::Chart::Render {

void ToolTip::Await(EventInformation& p_event, std::function<void()> p_shown) {
    Hide(p_event);
    p_event.CallLater(RestMilliseconds, [this, number = _number, shown = std::move(p_shown)] {
        if (number != _number)
            return;
        _isShown = true;
        shown();
    });
}

void ToolTip::Hide() noexcept {
    _isShown = false;
    ++_number;
}

void ToolTip::Hide(EventInformation& p_event) {
    if (_isShown)
        p_event.Sink().RequestRedraw();
    Hide();
}

} // namespace Qor::Chart::Render
