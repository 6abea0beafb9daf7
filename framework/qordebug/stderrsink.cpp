#include "framework/qordebug/stderrsink.h"

#include "framework/qordebug/entry.h"

#include <spdlog/logger.h>
#include <spdlog/sinks/stdout_color_sinks.h>

namespace qordebug {

namespace {

spdlog::level::level_enum LevelOf(severity p_severity) {
    switch (p_severity) {
    case severity::debug:
        return spdlog::level::debug;
    case severity::warning:
    case severity::sentry:
    case severity::notimp:
        return spdlog::level::warn;
    case severity::ensure:
    case severity::error:
        break;
    }
    return spdlog::level::err;
}

/// What stands before the text: the kind of message where the level alone does not tell it, and the channel.
std::string PrefixOf(entry const& p_entry) {
    switch (p_entry.level) {
    case severity::sentry:
        return "not to be reached: ";
    case severity::notimp:
        return "not served: ";
    case severity::ensure:
        return "condition failed: ";
    case severity::debug:
        return p_entry.channel.empty() ? std::string() : p_entry.channel + ": ";
    case severity::warning:
    case severity::error:
        break;
    }
    return {};
}

} // namespace

stderrsink::stderrsink()
    : _log(std::make_unique<spdlog::logger>("qor", std::make_shared<spdlog::sinks::stderr_color_sink_mt>())) {
    _log->set_level(spdlog::level::trace);
    _log->set_pattern("[%^%l%$] %v");
    _log->flush_on(spdlog::level::trace);
}

stderrsink::~stderrsink() = default;

void stderrsink::write(entry const& p_entry) {
    std::string const text = PrefixOf(p_entry) + p_entry.text;
    _log->log(LevelOf(p_entry.level), spdlog::string_view_t(text));
}

} // namespace qordebug
