#pragma once

#include "framework/Export.h"

#include <iosfwd>

namespace qordebug {

/// What kind of message an entry is. Everything from warning on is always written; debug messages only where their
/// channel is enabled.
enum class severity {
    debug, ///< what happens in detail, by channel
    warning, ///< something is odd, the work goes on as asked
    sentry, ///< an operation was called that should not be reached
    notimp, ///< a case that the code does not serve
    ensure, ///< a condition that must hold does not
    error, ///< something asked for could not be done
};

/// Writes the enumerator's name.
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, severity p_severity);

} // namespace qordebug
