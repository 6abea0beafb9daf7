#pragma once

#include <pthread.h>

#include <cstddef>
#include <functional>

namespace Qor::Chart::Utility {

/// Does the work on a thread of its own with a stack of that many bytes, and waits for its end.
inline void OnThread(std::size_t p_stack, std::function<void()> p_work) {
    auto const run = [](void* p_data) -> void* {
        (*static_cast<std::function<void()>*>(p_data))();
        return nullptr;
    };
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, p_stack);
    pthread_t thread{};
    if (pthread_create(&thread, &attributes, run, &p_work) == 0)
        pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

} // namespace Qor::Chart::Utility
