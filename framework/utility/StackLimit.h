#pragma once

#include "framework/Export.h"

#include <cstddef>
#include <cstdint>

namespace Qor::Chart::Utility {

/// Tells a recursion when the stack of its thread is about to run out. Take one with `Current` where the recursion begins
/// and ask `IsNear` at every level: that is one comparison. A plain value, of use only on the thread that it was taken on.
class QOR_FRAMEWORK_API StackLimit {
public:
    /// What `Current` leaves free for the calls that a level makes: a hook may read a file or shape a text.
    static constexpr std::size_t DefaultReserve = 256 * 1024;

    /// A limit that is never near.
    constexpr StackLimit() noexcept = default;

    /// The limit of the calling thread, p_reserve bytes above the end of its stack, but never more than a quarter of the
    /// stack above it. Where the stack's end cannot be told (a stack that a program switched to by itself), the limit is
    /// never near.
    static StackLimit Current(std::size_t p_reserve = DefaultReserve) noexcept;

    /// True when the calling function's frame has come below the limit.
    bool IsNear() const noexcept { return Here() < _lowest; }

    /// Bytes left above the limit; 0 when it is near, the largest number when there is no limit.
    std::size_t Remaining() const noexcept {
        if (_lowest == 0) {
            return SIZE_MAX;
        }
        return IsNear() ? 0 : Here() - _lowest;
    }

private:
    [[gnu::always_inline]] static std::uintptr_t Here() noexcept {
        return reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    }

    std::uintptr_t _lowest = 0;
};

} // namespace Qor::Chart::Utility
