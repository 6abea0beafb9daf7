#pragma once

#include "framework/Export.h"

#include <atomic>
#include <string>

namespace qordebug {

class logger;

/// A named channel of a logger. Got once from logger::get_channel and kept, usually in a static, it spares the search
/// for the name: asking whether it is enabled reads one flag. It lives as long as its logger.
class QOR_FRAMEWORK_API channel {
public:
    explicit channel(std::string p_name);
    channel(channel const&) = delete;
    channel& operator=(channel const&) = delete;

    std::string const& name() const noexcept { return _name; }
    bool enabled() const noexcept { return _enabled.load(std::memory_order_relaxed); }

private:
    friend class logger;

    std::string const _name;
    std::atomic<bool> _enabled{false};
};

} // namespace qordebug
