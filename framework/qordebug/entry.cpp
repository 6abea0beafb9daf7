#include "framework/qordebug/entry.h"

#include <ostream>

namespace qordebug {

std::ostream& operator<<(std::ostream& p_stream, entry const& p_entry) {
    p_stream << '[' << p_entry.level << "] ";
    if (!p_entry.channel.empty()) {
        p_stream << p_entry.channel << ": ";
    }
    return p_stream << p_entry.text;
}

} // namespace qordebug
