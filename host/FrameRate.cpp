#include "host/FrameRate.h"

#include "framework/qordebug/highrestimer.h"

#include <algorithm>

namespace Qor::Chart::Host {

namespace {

constexpr std::uint64_t Second = 1'000'000'000;

} // namespace

double FrameRate::Begin() noexcept {
    std::uint64_t const now = qordebug::now();
    if (now - _end > Second)
        _count = 0;
    _begins[_count++ % Capacity] = now;
    std::size_t const known = std::min(_count, Capacity);
    std::uint64_t first = now;
    std::size_t before = 0;
    for (; before + 1 < known; ++before) {
        std::uint64_t const begin = _begins[(_count - 2 - before) % Capacity];
        if (before > 0 && now - begin > Second)
            break;
        first = begin;
    }
    return now > first ? static_cast<double>(before * Second) / static_cast<double>(now - first) : 0;
}

void FrameRate::End() noexcept {
    _end = qordebug::now();
}

} // namespace Qor::Chart::Host
