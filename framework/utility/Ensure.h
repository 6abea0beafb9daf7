#pragma once

#include "framework/Export.h"

#include <string>

namespace Qor::Chart::Utility {

/// Reports a failed condition to the shared logger's ensure, as the condition in double quotes, " - " and the signature
/// of the function. Always false.
[[gnu::cold]] QOR_FRAMEWORK_API bool ReportEnsure(char const* p_condition, char const* p_signature) noexcept;

/// "signature @line12": the place in a function, as messages name it.
QOR_FRAMEWORK_API std::string AtLine(char const* p_signature, int p_line);

} // namespace Qor::Chart::Utility

/// Whether a condition holds that only a mistake in the program can break. A broken one is reported to the shared
/// logger; it is up to the caller to go on with a safe value: `if (!QOR_ENSURE(_node)) { return {}; }`.
#define QOR_ENSURE(...)                                                                                                \
    (static_cast<bool>(__VA_ARGS__) || ::Qor::Chart::Utility::ReportEnsure(#__VA_ARGS__, __PRETTY_FUNCTION__))

/// The same with a text in place of the condition.
#define QOR_ENSURE_TEXT(p_condition, p_text)                                                                           \
    (static_cast<bool>(p_condition) || ::Qor::Chart::Utility::ReportEnsure(p_text, __PRETTY_FUNCTION__))
