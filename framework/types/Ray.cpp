#include "framework/types/Ray.h"

#include "framework/types/Matrix4.h"
#include "framework/types/Vector4.h"

#include <algorithm>
#include <limits>
#include <ostream>
#include <utility>

namespace Qor::Chart::Types {

namespace {

/// Limits the interval of distances to those at which one coordinate of the ray lies between low and high.
template <class T>
bool Narrow(T p_origin, T p_direction, T p_low, T p_high, T& p_enter, T& p_leave) {
    if (p_direction == T(0)) {
        return p_low <= p_origin && p_origin <= p_high;
    }
    T first = (p_low - p_origin) / p_direction;
    T second = (p_high - p_origin) / p_direction;
    if (first > second) {
        std::swap(first, second);
    }
    p_enter = std::max(p_enter, first);
    p_leave = std::min(p_leave, second);
    return p_enter <= p_leave;
}

} // namespace

template <class T>
bool Ray_Base<T>::IsDefined() const {
    return IsFinite(origin) && IsFinite(direction) && direction != Vector3_Base<T>();
}

template <class T>
T Ray_Base<T>::ClosestTo(Vector3_Base<T> const& p_point) const {
    T const square = Dot(direction, direction);
    return square > T(0) ? std::max(T(0), Dot(p_point - origin, direction) / square) : T(0);
}

template <class T>
std::optional<T> Ray_Base<T>::Enters(BoundingBox_Base<T> const& p_box) const {
    if (!IsDefined() || !p_box.IsDefined()) {
        return std::nullopt;
    }
    T enter = T(0);
    T leave = std::numeric_limits<T>::infinity();
    Vector3_Base<T> const low = p_box.Min();
    Vector3_Base<T> const high = p_box.Max();
    for (int axis = 0; axis < 3; ++axis) {
        if (!Narrow(origin[axis], direction[axis], low[axis], high[axis], enter, leave)) {
            return std::nullopt;
        }
    }
    return enter;
}

template <class T>
Ray_Base<T> Ray_Base<T>::Transformed(Matrix4 const& p_matrix) const {
    auto const start = p_matrix * Vector4_Base<double>(Vector3_Base<double>(origin), 1.0);
    auto const along = p_matrix * Vector4_Base<double>(Vector3_Base<double>(direction), 0.0);
    return {Vector3_Base<T>(start.XYZ()), Vector3_Base<T>(along.XYZ())};
}

template <class T>
std::ostream& operator<<(std::ostream& p_stream, Ray_Base<T> const& p_ray) {
    return p_stream << p_ray.origin << " -> " << p_ray.direction;
}

template struct Ray_Base<float>;
template struct Ray_Base<double>;
template std::ostream& operator<<(std::ostream&, Ray_Base<float> const&);
template std::ostream& operator<<(std::ostream&, Ray_Base<double> const&);

} // namespace Qor::Chart::Types
