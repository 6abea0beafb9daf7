#include "framework/types/Vector2.h"

#include <ostream>

namespace Qor::Chart::Types {

template <class T>
std::ostream& operator<<(std::ostream& p_stream, Vector2_Base<T> const& p_vector) {
    return p_stream << '(' << p_vector.x << ", " << p_vector.y << ')';
}

template std::ostream& operator<<(std::ostream&, Vector2_Base<int> const&);
template std::ostream& operator<<(std::ostream&, Vector2_Base<float> const&);
template std::ostream& operator<<(std::ostream&, Vector2_Base<double> const&);

} // namespace Qor::Chart::Types
