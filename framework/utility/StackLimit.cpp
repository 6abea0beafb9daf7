#include "framework/utility/StackLimit.h"

#include <pthread.h>

#include <algorithm>

namespace Qor::Chart::Utility {

namespace {

struct Bounds {
    std::uintptr_t low = 0;
    std::uintptr_t high = 0;
};

/// Slow on the main thread, where the C library reads the process's memory map.
Bounds QueryBounds() noexcept {
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) != 0) {
        return {};
    }
    void* low = nullptr;
    std::size_t size = 0;
    std::size_t guard = 0;
    bool const known = pthread_attr_getstack(&attributes, &low, &size) == 0;
    bool const guarded = pthread_attr_getguardsize(&attributes, &guard) == 0;
    pthread_attr_destroy(&attributes);
    if (!known || size == 0) {
        return {};
    }
    auto const begin = reinterpret_cast<std::uintptr_t>(low);
    return {begin + (guarded ? std::min(guard, size / 4) : 0), begin + size};
}

} // namespace

StackLimit StackLimit::Current(std::size_t p_reserve) noexcept {
    static thread_local Bounds const bounds = QueryBounds();

    StackLimit limit;
    if (Here() > bounds.low && Here() <= bounds.high) {
        limit._lowest = bounds.low + std::min<std::uintptr_t>(p_reserve, (bounds.high - bounds.low) / 4);
    }
    return limit;
}

} // namespace Qor::Chart::Utility
