#include "framework/qordebug/CaptureScope.h"

#include "framework/qordebug/loggerstate.h"

#include <algorithm>
#include <mutex>

namespace qordebug {

class CaptureScope::collector : public sink {
public:
    void write(entry const& p_entry) override {
        std::lock_guard const lock(_mutex);
        _entries.push_back(p_entry);
    }
    std::vector<entry> entries() const {
        std::lock_guard const lock(_mutex);
        return _entries;
    }
    void clear() {
        std::lock_guard const lock(_mutex);
        _entries.clear();
    }

private:
    mutable std::mutex _mutex;
    std::vector<entry> _entries;
};

namespace {

template <class Wanted>
std::vector<std::string> TextsOf(std::vector<entry> const& p_entries, Wanted const& p_wanted) {
    std::vector<std::string> texts;
    for (entry const& message : p_entries) {
        if (p_wanted(message)) {
            texts.push_back(message.text);
        }
    }
    return texts;
}

} // namespace

CaptureScope::CaptureScope(logger& p_logger, std::initializer_list<std::string_view> p_channels)
    : _logger(p_logger), _collector(std::make_shared<collector>()) {
    for (std::string_view const name : p_channels) {
        if (!_logger.enabled(name)) {
            _channels.emplace_back(name);
            _logger.enable(name);
        }
    }
    std::lock_guard const lock(_logger._state->mutex);
    _logger._state->captures.push_back(std::make_shared<logger::state::sinks const>(1, _collector));
}

CaptureScope::~CaptureScope() {
    {
        std::lock_guard const lock(_logger._state->mutex);
        std::erase_if(_logger._state->captures, [this](auto const& p_sinks) { return p_sinks->front() == _collector; });
    }
    for (std::string const& name : _channels) {
        _logger.disable(name);
    }
}

std::vector<entry> CaptureScope::entries() const {
    return _collector->entries();
}

std::vector<std::string> CaptureScope::texts() const {
    return TextsOf(entries(), [](entry const&) { return true; });
}

std::vector<std::string> CaptureScope::texts(severity p_severity) const {
    return TextsOf(entries(), [&](entry const& p_entry) { return p_entry.level == p_severity; });
}

std::vector<std::string> CaptureScope::texts(std::string_view p_channel) const {
    return TextsOf(entries(), [&](entry const& p_entry) { return p_entry.channel == p_channel; });
}

bool CaptureScope::contains(std::string_view p_part) const {
    auto const all = entries();
    return std::any_of(
        all.begin(), all.end(), [&](entry const& p_entry) { return p_entry.text.find(p_part) != std::string::npos; });
}

bool CaptureScope::empty() const {
    return entries().empty();
}

void CaptureScope::clear() {
    _collector->clear();
}

} // namespace qordebug
