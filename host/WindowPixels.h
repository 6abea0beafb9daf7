#pragma once

#include "framework/types/Pos.h"
#include "framework/types/Size.h"
#include "framework/types/Viewport.h"
#include "host/Export.h"
#include "render/context/PickPoint.h"

namespace Qor::Chart::Host {

/// The one place where coordinates of a window toolkit become those of the picture. A toolkit counts logical pixels from
/// the upper left corner, y down, in fractions where the screen is finer; everything behind this counts whole framebuffer
/// pixels from the lower left corner, y up. The same spot of the window is the same spot of the scene at every ratio.
struct QOR_HOST_API WindowPixels {
    Types::Size framebuffer; ///< of the window, in framebuffer pixels
    double ratio =
        1.0; ///< framebuffer pixels per logical pixel, such as 1.25 or 2; others than positive ones count as 1

    /// The framebuffer pixel that a place lies in; outside the window it goes on counting, below zero too.
    Types::Pos ToFramebuffer(double p_x, double p_y) const noexcept;
    /// The same with what counts as on it: p_tolerance logical pixels in every direction.
    Render::PickPoint ToPickPoint(double p_x, double p_y, double p_tolerance) const noexcept;
    /// A length in framebuffer pixels, rounded; at least 1 for one that is more than nothing.
    int ToFramebuffer(double p_length) const noexcept;

    /// The whole window.
    Types::Viewport<0> Viewport() const noexcept {
        return {0, 0, static_cast<float>(framebuffer.width), static_cast<float>(framebuffer.height)};
    }
};

} // namespace Qor::Chart::Host
