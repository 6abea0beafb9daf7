#include "framework/qordebug/logger.h"

#include "framework/qordebug/loggerstate.h"
#include "framework/qordebug/stderrsink.h"

#include <algorithm>
#include <utility>

namespace qordebug {

namespace {

thread_local bool g_writing = false;

/// Marks the thread as being inside a sink, so that what a sink logs does not come back to it.
class writingscope {
public:
    writingscope() noexcept { g_writing = true; }
    ~writingscope() { g_writing = false; }
    writingscope(writingscope const&) = delete;
    writingscope& operator=(writingscope const&) = delete;
};

} // namespace

logger::logger() : _state(std::make_unique<state>()) {
    add_sink(std::make_shared<stderrsink>());
}

logger::~logger() = default;

void logger::sentry(std::string_view p_text) noexcept {
    write(severity::sentry, {}, p_text);
}

void logger::ensure(std::string_view p_text) noexcept {
    write(severity::ensure, {}, p_text);
}

void logger::notimp(std::string_view p_text) noexcept {
    write(severity::notimp, {}, p_text);
}

void logger::debug(std::string_view p_text) noexcept {
    if (_enabledChannels.load(std::memory_order_relaxed) != 0 && enabled({})) {
        write(severity::debug, {}, p_text);
    }
}

void logger::warning(std::string_view p_text) noexcept {
    write(severity::warning, {}, p_text);
}

void logger::error(std::string_view p_text) noexcept {
    write(severity::error, {}, p_text);
}

channel const& logger::get_channel(std::string_view p_name) {
    std::lock_guard const lock(_state->mutex);
    auto const found = _state->channels.find(p_name);
    if (found != _state->channels.end()) {
        return found->second;
    }
    std::string name(p_name);
    return _state->channels.try_emplace(name, name).first->second;
}

void logger::enable(std::string_view p_channel) noexcept {
    set_enabled(p_channel, true);
}

void logger::disable(std::string_view p_channel) noexcept {
    set_enabled(p_channel, false);
}

void logger::set_enabled(std::string_view p_channel, bool p_enabled) noexcept {
    try {
        auto& changed = const_cast<channel&>(get_channel(p_channel));
        if (changed._enabled.exchange(p_enabled) != p_enabled) {
            _enabledChannels.fetch_add(p_enabled ? 1 : -1);
        }
    } catch (...) {
        // There is no memory for the channel: it stays as it is.
    }
}

bool logger::enabled(std::string_view p_channel) const noexcept {
    try {
        std::lock_guard const lock(_state->mutex);
        auto const found = _state->channels.find(p_channel);
        return found != _state->channels.end() && found->second.enabled();
    } catch (...) {
        return false;
    }
}

dbgostream logger::open(std::string_view p_channel) noexcept {
    return enabled(p_channel) ? dbgostream(*this, severity::debug, p_channel) : dbgostream();
}

void logger::add_sink(std::shared_ptr<sink> p_sink) noexcept {
    if (!p_sink) {
        return;
    }
    try {
        std::lock_guard const lock(_state->mutex);
        auto const& current = *_state->listeners;
        if (std::find(current.begin(), current.end(), p_sink) != current.end()) {
            return;
        }
        auto next = std::make_shared<state::sinks>(current);
        next->push_back(std::move(p_sink));
        _state->listeners = std::move(next);
    } catch (...) {
        // There is no memory for the list: the sink gets nothing.
    }
}

bool logger::remove_sink(std::shared_ptr<sink> const& p_sink) noexcept {
    try {
        std::lock_guard const lock(_state->mutex);
        auto next = std::make_shared<state::sinks>(*_state->listeners);
        bool const removed = std::erase(*next, p_sink) != 0;
        _state->listeners = std::move(next);
        return removed;
    } catch (...) {
        return false;
    }
}

void logger::clear_sinks() noexcept {
    try {
        std::lock_guard const lock(_state->mutex);
        _state->listeners = std::make_shared<state::sinks const>();
    } catch (...) {
        // There is no memory for an empty list: the sinks stay.
    }
}

void logger::write(severity p_severity, std::string_view p_channel, std::string_view p_text) noexcept {
    if (g_writing) {
        return;
    }
    try {
        auto const listeners = _state->current();
        entry const message{p_severity, std::string(p_channel), std::string(p_text)};
        writingscope const scope;
        for (auto const& listener : *listeners) {
            try {
                listener->write(message);
            } catch (...) {
                // One sink that fails must not keep the others from the message.
            }
        }
    } catch (...) {
        // There is no memory for the message: it is lost.
    }
}

} // namespace qordebug
