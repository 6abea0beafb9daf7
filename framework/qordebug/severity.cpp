#include "framework/qordebug/severity.h"

#include <ostream>

namespace qordebug {

std::ostream& operator<<(std::ostream& p_stream, severity p_severity) {
    switch (p_severity) {
    case severity::debug:
        return p_stream << "debug";
    case severity::warning:
        return p_stream << "warning";
    case severity::sentry:
        return p_stream << "sentry";
    case severity::notimp:
        return p_stream << "notimp";
    case severity::ensure:
        return p_stream << "ensure";
    case severity::error:
        return p_stream << "error";
    }
    return p_stream << "severity " << static_cast<int>(p_severity);
}

} // namespace qordebug
