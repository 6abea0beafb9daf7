#include "framework/types/DefinedAs.h"

#include <ostream>

namespace Qor::Chart::Types {

std::ostream& operator<<(std::ostream& p_stream, DefinedAs p_definedAs) {
    return p_stream << (p_definedAs == DefinedAs::Pixels ? "pixels" : "fraction");
}

} // namespace Qor::Chart::Types
