#include "framework/types/Vector3.h"

#include <ostream>

namespace Qor::Chart::Types {

template <class T>
std::ostream& operator<<(std::ostream& p_stream, Vector3_Base<T> const& p_vector) {
    return p_stream << '(' << p_vector.x << ", " << p_vector.y << ", " << p_vector.z << ')';
}

template std::ostream& operator<<(std::ostream&, Vector3_Base<int> const&);
template std::ostream& operator<<(std::ostream&, Vector3_Base<float> const&);
template std::ostream& operator<<(std::ostream&, Vector3_Base<double> const&);

} // namespace Qor::Chart::Types
