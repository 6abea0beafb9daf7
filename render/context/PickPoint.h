#pragma once

#include "framework/types/Pos.h"
#include "framework/types/Size.h"

namespace Qor::Chart::Render {

/// Where the user points, and how far around that place counts as on it.
struct PickPoint {
    /// In framebuffer pixels, origin in the lower left corner: of the window for whoever asks for a pick, of the current
    /// viewport for a node that is asked.
    Types::Pos position;
    /// Half the width and half the height of the pick area in pixels; values below 1 count as 1.
    Types::Size tolerance;

    constexpr bool operator==(PickPoint const&) const = default;
};

} // namespace Qor::Chart::Render
