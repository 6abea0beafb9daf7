#pragma once

#include "framework/Export.h"

#include <cstdint>

namespace qordebug {

/// Nanoseconds of the process's monotonic clock, or of the manualclock in force.
QOR_FRAMEWORK_API std::uint64_t now() noexcept;

/// Stops the clock of the whole process and moves it by hand, for tests of what depends on time. While one is alive,
/// every timer reads it; it starts at the time at which the clock was stopped. One at a time.
class QOR_FRAMEWORK_API manualclock {
public:
    manualclock();
    ~manualclock();
    manualclock(manualclock const&) = delete;
    manualclock& operator=(manualclock const&) = delete;

    void advance(std::uint64_t p_milliseconds) noexcept;
    void advance_nanoseconds(std::uint64_t p_nanoseconds) noexcept;
};

/// A stop watch that starts when it is made. N is its unit: 0 seconds, 1 milliseconds, 2 microseconds, 3 nanoseconds.
template <unsigned N>
class highrestimer {
    static_assert(N <= 3, "the unit is 0 (seconds) to 3 (nanoseconds)");

public:
    highrestimer() noexcept : _start(now()) {}

    void restart() noexcept { _start = now(); }
    /// Whole units since the start, rounded down.
    std::uint64_t elapsed() const noexcept {
        std::uint64_t const current = now();
        return current < _start ? 0 : (current - _start) / nanoseconds_per_unit;
    }

private:
    static constexpr std::uint64_t nanoseconds_per_unit = N == 0 ? 1'000'000'000
        : N == 1                                                 ? 1'000'000
        : N == 2                                                 ? 1'000
                                                                 : 1;

    std::uint64_t _start;
};

} // namespace qordebug
