#include "framework/types/XPosition.h"

#include <ostream>

namespace Qor::Chart::Types {

std::ostream& operator<<(std::ostream& p_stream, XPosition const& p_position) {
    return p_stream << p_position.distance << ' ' << p_position.definedAs
                    << (p_position.edge == XEdge::Left ? " from the left" : " from the right");
}

} // namespace Qor::Chart::Types
