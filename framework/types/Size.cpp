#include "framework/types/Size.h"

#include <ostream>

namespace Qor::Chart::Types {

std::ostream& operator<<(std::ostream& p_stream, Size const& p_size) {
    return p_stream << p_size.width << " x " << p_size.height;
}

} // namespace Qor::Chart::Types
