#include "render/events/EventSink.h"

namespace Qor::Chart::Render {

PopOutHost::~PopOutHost() = default;
EventSink::~EventSink() = default;

} // namespace Qor::Chart::Render
