#include "render/events/EventSink.h"

#include "render/events/TextInputHost.h"
#include "render/core/Vis.h"

namespace Qor::Chart::Render {

PopOutHost::~PopOutHost() = default;
EventSink::~EventSink() = default;
TextInputHost::~TextInputHost() = default;

void EventSink::TakeFocus(Core::WeakPtr<Vis> const&, std::function<void(FocusChange)> const& p_changed) {
    if (p_changed)
        p_changed(FocusChange::Lost);
}

void EventSink::LeaveFocus(Core::WeakPtr<Vis> const&) {}

TextInputHost* EventSink::GetTextInputHost() {
    return nullptr;
}

int TextInputHost::CaretFlashTime() const {
    return 1000;
}

} // namespace Qor::Chart::Render
