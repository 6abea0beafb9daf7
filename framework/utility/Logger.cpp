#include "framework/utility/Logger.h"

namespace Qor::Chart::Utility {

qordebug::logger& GetLogger() noexcept {
    static auto* const s_logger = new qordebug::logger();
    return *s_logger;
}

} // namespace Qor::Chart::Utility
