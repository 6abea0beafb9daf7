#include "framework/utility/Scoped.h"

#include "framework/utility/Exception.h"
#include "framework/utility/Logger.h"
#include "framework/utility/TypeInfo.h"

#include <exception>
#include <string>

namespace Qor::Chart::Utility::Detail {

void ThrowEmptyScope(std::type_info const& p_type) {
    throw Exception(
        "There is no " + TypeInfo(p_type).Name() + " to use: the handle is empty; make it from a living object.");
}

void ReportLeaveScope(std::type_info const& p_type) noexcept {
    try {
        std::string reason = "unknown exception";
        try {
            throw;
        } catch (std::exception const& failure) {
            reason = failure.what();
        } catch (...) {
            reason = "not a std::exception";
        }
        GetLogger().error("Leaving the scope of " + TypeInfo(p_type).Name() + " failed: " + reason);
    } catch (...) {
        GetLogger().error("Leaving a scope failed.");
    }
}

} // namespace Qor::Chart::Utility::Detail
