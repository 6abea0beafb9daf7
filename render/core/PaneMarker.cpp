#include "render/core/PaneMarker.h"

namespace Qor::Chart::Render {

PaneMarker::~PaneMarker() = default;

} // namespace Qor::Chart::Render
