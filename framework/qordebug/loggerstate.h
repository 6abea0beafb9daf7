#pragma once

#include "framework/qordebug/channel.h"
#include "framework/qordebug/logger.h"
#include "framework/qordebug/sink.h"

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace qordebug {

/// What a logger keeps out of its header. The list of sinks is replaced, never changed, so that a message is written
/// without holding the lock. While captures are open, the last one stands in for all sinks.
struct logger::state {
    using sinks = std::vector<std::shared_ptr<sink>>;

    mutable std::mutex mutex;
    std::map<std::string, channel, std::less<>> channels;
    std::shared_ptr<sinks const> listeners = std::make_shared<sinks const>();
    std::vector<std::shared_ptr<sinks const>> captures;

    std::shared_ptr<sinks const> current() const {
        std::lock_guard const lock(mutex);
        return captures.empty() ? listeners : captures.back();
    }
};

} // namespace qordebug
