#include "render/context/EventDispatcher.h"

namespace Qor::Chart::Render {

EventDispatcher::EventDispatcher() = default;
EventDispatcher::~EventDispatcher() = default;

} // namespace Qor::Chart::Render
