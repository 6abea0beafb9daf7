#pragma once

#include "framework/Export.h"

#include <iosfwd>

namespace Qor::Chart::Types {

/// How a length inside a parent rectangle is meant.
enum class DefinedAs : int {
    Fraction = 0, ///< a part of the parent's extent: 0.5 is half of it
    Pixels = 1, ///< a number of pixels, whatever the parent's extent
};

/// Writes "fraction" or "pixels".
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, DefinedAs p_definedAs);

} // namespace Qor::Chart::Types
