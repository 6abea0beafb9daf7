#pragma once

#include "framework/Export.h"

#include <string>
#include <string_view>

namespace Qor::Chart::Utility {

/// A wide string as UTF-8. What is no Unicode character becomes U+FFFD.
QOR_FRAMEWORK_API std::string ToUtf8(std::wstring_view p_text);
/// UTF-8 as a wide string. Each byte that is not part of a valid character becomes U+FFFD.
QOR_FRAMEWORK_API std::wstring FromUtf8(std::string_view p_text);

} // namespace Qor::Chart::Utility
