#pragma once

#include "host/Export.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace Qor::Chart::Host {

/// Counts frames by the clock of the process.
class QOR_HOST_API FrameRate {
public:
    /// A frame begins. Gives how many frames a second there are: over the last second, or since the last frame began
    /// where that is longer ago, and over no more than 256 frames. 0 for a frame that comes when there was none for a
    /// second.
    double Begin() noexcept;
    /// It ends.
    void End() noexcept;

private:
    static constexpr std::size_t Capacity = 256;

    std::array<std::uint64_t, Capacity> _begins{}; ///< nanoseconds; a ring
    std::size_t _count = 0; ///< of the frames since there was a pause
    std::uint64_t _end = 0; ///< of the last frame
};

} // namespace Qor::Chart::Host
