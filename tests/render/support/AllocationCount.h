#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>

// Counts what a whole test program allocates; to be included by one source of the program. The operators for arrays call
// these.

namespace Qor::Chart::Render::Fixtures {
thread_local std::size_t allocations = 0;
} // namespace Qor::Chart::Render::Fixtures

[[gnu::noinline]] void* operator new(std::size_t p_size) {
    ++Qor::Chart::Render::Fixtures::allocations;
    if (void* const memory = std::malloc(p_size > 0 ? p_size : 1))
        return memory;
    throw std::bad_alloc();
}
[[gnu::noinline]] void* operator new(std::size_t p_size, std::nothrow_t const&) noexcept {
    ++Qor::Chart::Render::Fixtures::allocations;
    return std::malloc(p_size > 0 ? p_size : 1);
}
[[gnu::noinline]] void operator delete(void* p_memory) noexcept {
    std::free(p_memory);
}
[[gnu::noinline]] void operator delete(void* p_memory, std::size_t) noexcept {
    std::free(p_memory);
}
