#pragma once

#include "render/context/FrameStatistics.h"

namespace Qor::Chart::Host {

using Render::FrameStatistics;

} // namespace Qor::Chart::Host
