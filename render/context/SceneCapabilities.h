#pragma once

#include "render/Export.h"

#include <cstdint>

namespace Qor::Chart::Render {

/// What the host lets a scene do. The host owns one and may change it between frames; contexts hand it to the nodes.
struct QOR_VIS_API SceneCapabilities {
    bool animations = true; ///< the user's switch: things may move by themselves
    std::uint8_t animationSuppression = 0; ///< bits of those who have stopped animations for now, see Suppression
    bool interaction = true; ///< nodes may answer the pointer and keys by changing the model
    bool popOutWindows = false; ///< the host can show a pane in a window of its own
    float pixelRatio = 1.0F; ///< framebuffer pixels per logical pixel of the window

    /// Reasons to stop animations for a while; each is one bit of the suppression byte.
    enum Suppression : std::uint8_t {
        SuppressionOffscreen = 1, ///< a still picture is being made
        SuppressionDrag = 2, ///< the user drags something
        SuppressionHidden = 4, ///< nobody sees the window
    };

    /// True when the switch is set and nobody suppresses animations.
    constexpr bool AnimationsOn() const noexcept { return animations && animationSuppression == 0; }

    constexpr void Suppress(Suppression p_reason) noexcept {
        animationSuppression = static_cast<std::uint8_t>(animationSuppression | p_reason);
    }
    constexpr void Resume(Suppression p_reason) noexcept {
        animationSuppression = static_cast<std::uint8_t>(animationSuppression & ~p_reason);
    }
};

} // namespace Qor::Chart::Render
