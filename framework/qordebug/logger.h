#pragma once

#include "framework/Export.h"
#include "framework/qordebug/channel.h"
#include "framework/qordebug/dbgostream.h"
#include "framework/qordebug/entry.h"
#include "framework/qordebug/severity.h"

#include <atomic>
#include <memory>
#include <string_view>

namespace qordebug {

class sink;

/// Takes the messages of a program and hands them to its sinks. A new logger writes to standard error. Warnings and
/// worse are always written; debug messages only on channels that were enabled by name. All operations may be called
/// from any thread, and none throws: a message that cannot be written is lost.
class QOR_FRAMEWORK_API logger {
public:
    logger();
    ~logger();
    logger(logger const&) = delete;
    logger& operator=(logger const&) = delete;

    /// Reports that an operation was reached which should not have been; the text names it.
    void sentry(std::string_view p_text) noexcept;
    /// Reports a condition that failed; the text holds it.
    void ensure(std::string_view p_text) noexcept;
    /// Reports a case that is not served; the text names where.
    void notimp(std::string_view p_text) noexcept;
    void debug(std::string_view p_text) noexcept;
    void warning(std::string_view p_text) noexcept;
    void error(std::string_view p_text) noexcept;

    /// A stream of debug messages on a channel. With no channel enabled at all, this costs one read of a counter.
    dbgostream out(std::string_view p_channel) noexcept {
        if (_enabledChannels.load(std::memory_order_relaxed) == 0) {
            return {};
        }
        return open(p_channel);
    }
    dbgostream out(channel const& p_channel) noexcept {
        if (!p_channel.enabled()) {
            return {};
        }
        return dbgostream(*this, severity::debug, p_channel.name());
    }
    /// A stream of errors, always written, under the name of a channel.
    dbgostream err(std::string_view p_channel) noexcept { return dbgostream(*this, severity::error, p_channel); }

    /// The channel of that name, made on first use. Messages without a channel belong to the one with the empty name.
    channel const& get_channel(std::string_view p_name);
    /// Lets debug messages of a channel through, whether or not anybody has used it yet.
    void enable(std::string_view p_channel) noexcept;
    void disable(std::string_view p_channel) noexcept;
    bool enabled(std::string_view p_channel) const noexcept;

    /// Adds a sink behind the others. An empty pointer, or a sink that is there already, changes nothing.
    void add_sink(std::shared_ptr<sink> p_sink) noexcept;
    /// Takes a sink away; false when it was not there. A message that another thread is just writing may still reach it.
    bool remove_sink(std::shared_ptr<sink> const& p_sink) noexcept;
    /// Takes all sinks away, the one to standard error included.
    void clear_sinks() noexcept;

    /// Hands a message to all sinks, whatever its level and channel.
    void write(severity p_severity, std::string_view p_channel, std::string_view p_text) noexcept;

private:
    friend class CaptureScope;
    struct state;

    dbgostream open(std::string_view p_channel) noexcept;
    void set_enabled(std::string_view p_channel, bool p_enabled) noexcept;

    std::atomic<int> _enabledChannels{0};
    std::unique_ptr<state> _state;
};

} // namespace qordebug
