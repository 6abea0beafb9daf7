#include "framework/types/Pos.h"

#include <ostream>

namespace Qor::Chart::Types {

std::ostream& operator<<(std::ostream& p_stream, Pos const& p_pos) {
    return p_stream << '(' << p_pos.x << ", " << p_pos.y << ')';
}

} // namespace Qor::Chart::Types
