#pragma once

#include "framework/Export.h"
#include "framework/qordebug/logger.h"

namespace Qor::Chart::Utility {

/// The logger that everything in this process shares. It lives until the very end of the process, so that destructors
/// of static objects may still use it.
QOR_FRAMEWORK_API qordebug::logger& GetLogger() noexcept;

} // namespace Qor::Chart::Utility
