#pragma once

#include "framework/qordebug/sink.h"

#include <memory>

namespace spdlog {
class logger;
}

namespace qordebug {

/// Writes messages to standard error, one or more lines each, with the level in colour on a terminal.
class stderrsink : public sink {
public:
    stderrsink();
    ~stderrsink() override;

    void write(entry const& p_entry) override;

private:
    std::unique_ptr<spdlog::logger> _log;
};

} // namespace qordebug
