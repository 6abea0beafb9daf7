#pragma once

#include "framework/Export.h"
#include "framework/qordebug/severity.h"

#include <iosfwd>
#include <string>

namespace qordebug {

/// One message as the sinks get it. The channel is empty for messages that were not written to one; the text ends
/// without an end of line.
struct QOR_FRAMEWORK_API entry {
    severity level = severity::debug;
    std::string channel;
    std::string text;

    bool operator==(entry const&) const = default;
};

/// Writes "[level] text", or "[level] channel: text".
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, entry const& p_entry);

} // namespace qordebug
