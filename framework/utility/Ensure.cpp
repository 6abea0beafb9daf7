#include "framework/utility/Ensure.h"

#include "framework/utility/Logger.h"

namespace Qor::Chart::Utility {

bool ReportEnsure(char const* p_condition, char const* p_signature) noexcept {
    try {
        std::string text = "\"";
        text.append(p_condition).append("\" - ").append(p_signature);
        GetLogger().ensure(text);
    } catch (...) {
        GetLogger().ensure(p_condition);
    }
    return false;
}

std::string AtLine(char const* p_signature, int p_line) {
    return std::string(p_signature) + " @line" + std::to_string(p_line);
}

} // namespace Qor::Chart::Utility
