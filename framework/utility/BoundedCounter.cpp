#include "framework/utility/BoundedCounter.h"

#include <ostream>

namespace Qor::Chart::Utility {

std::ostream& operator<<(std::ostream& p_stream, BoundedCounter const& p_counter) {
    return p_stream << p_counter.Value() << '/' << p_counter.Bound();
}

} // namespace Qor::Chart::Utility
