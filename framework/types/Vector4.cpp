#include "framework/types/Vector4.h"

#include <ostream>

namespace Qor::Chart::Types {

template <class T>
std::ostream& operator<<(std::ostream& p_stream, Vector4_Base<T> const& p_vector) {
    return p_stream << '(' << p_vector.x << ", " << p_vector.y << ", " << p_vector.z << ", " << p_vector.w << ')';
}

template std::ostream& operator<<(std::ostream&, Vector4_Base<int> const&);
template std::ostream& operator<<(std::ostream&, Vector4_Base<float> const&);
template std::ostream& operator<<(std::ostream&, Vector4_Base<double> const&);

} // namespace Qor::Chart::Types
