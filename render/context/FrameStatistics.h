#pragma once

#include "framework/ogl/Statistics.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace Qor::Chart::Render {

/// What one frame did, and how long it took. The host measures; draw contexts hand the figures of the last frame to the
/// nodes.
struct FrameStatistics {
    /// The passes of a frame, in the order in which they are drawn.
    enum PassName : std::size_t {
        BaseDraw = 0,
        BaseHighlight = 1,
        OverlayDraw = 2,
        OverlayHighlight = 3,
    };
    static constexpr std::size_t PassCount = 4;

    struct Pass {
        std::uint32_t visited = 0; ///< nodes entered, those that were pruned at once included
        std::uint32_t drawn = 0; ///< nodes whose hook of the pass was called
        double milliseconds = 0;
    };

    std::uint32_t frame = 0; ///< number of the frame, from 1 on
    double framesPerSecond = 0; ///< when the frame began, over the last second or so; 0 after a pause
    unsigned visited = 0; ///< nodes that the update reached
    unsigned updated = 0; ///< update hooks that it called
    double updateMilliseconds = 0;
    double pathMilliseconds = 0;
    std::array<Pass, PassCount> passes;
    double finishMilliseconds = 0; ///< handing what was recorded to the device, and clean-up
    Ogl::Statistics graphics; ///< of the drawing

    /// The sum over the passes.
    std::uint32_t Drawn() const noexcept {
        std::uint32_t sum = 0;
        for (Pass const& pass : passes)
            sum += pass.drawn;
        return sum;
    }
    /// Everything but the update, in milliseconds.
    double DrawMilliseconds() const noexcept {
        double sum = finishMilliseconds;
        for (Pass const& pass : passes)
            sum += pass.milliseconds;
        return sum;
    }
};

} // namespace Qor::Chart::Render
