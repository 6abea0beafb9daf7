#pragma once

#include "framework/Export.h"

#include <string>

namespace Qor::Chart::Utility {

/// A message as people can read it, whatever names are quoted in it: a zero, which would end it, becomes a question
/// mark, and of one that goes on and on (some thousand bytes of UTF-8) begin and end are left.
QOR_FRAMEWORK_API std::string Readable(std::string p_text);

} // namespace Qor::Chart::Utility
