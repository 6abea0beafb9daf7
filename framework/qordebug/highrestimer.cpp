#include "framework/qordebug/highrestimer.h"

#include <atomic>
#include <chrono>

namespace qordebug {

namespace {

std::atomic<bool> g_stopped{false};
std::atomic<std::uint64_t> g_stoppedAt{0};

std::uint64_t steady() noexcept {
    auto const since = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::nanoseconds>(since).count());
}

} // namespace

std::uint64_t now() noexcept {
    return g_stopped.load() ? g_stoppedAt.load() : steady();
}

manualclock::manualclock() {
    g_stoppedAt = steady();
    g_stopped = true;
}

manualclock::~manualclock() {
    g_stopped = false;
}

void manualclock::advance(std::uint64_t p_milliseconds) noexcept {
    advance_nanoseconds(p_milliseconds * 1'000'000);
}

void manualclock::advance_nanoseconds(std::uint64_t p_nanoseconds) noexcept {
    g_stoppedAt += p_nanoseconds;
}

} // namespace qordebug
