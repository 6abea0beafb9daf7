#include "framework/types/YPosition.h"

#include <ostream>

namespace Qor::Chart::Types {

std::ostream& operator<<(std::ostream& p_stream, YPosition const& p_position) {
    return p_stream << p_position.distance << ' ' << p_position.definedAs
                    << (p_position.edge == YEdge::Bottom ? " from the bottom" : " from the top");
}

} // namespace Qor::Chart::Types
