#pragma once

#include "framework/Export.h"

#include <cmath>
#include <iosfwd>

namespace Qor::Chart::Types {

/// Three numbers: a position, a direction or a scale in space. A plain value; zero when default-constructed.
template <class T>
struct Vector3_Base {
    using ValueType = T;

    T x{};
    T y{};
    T z{};

    constexpr Vector3_Base() = default;
    constexpr Vector3_Base(T p_x, T p_y, T p_z) : x(p_x), y(p_y), z(p_z) {}
    template <class U>
    explicit constexpr Vector3_Base(Vector3_Base<U> const& p_other)
        : x(static_cast<T>(p_other.x)), y(static_cast<T>(p_other.y)), z(static_cast<T>(p_other.z)) {}

    constexpr Vector3_Base& operator+=(Vector3_Base const& p_other) {
        x += p_other.x;
        y += p_other.y;
        z += p_other.z;
        return *this;
    }
    constexpr Vector3_Base& operator-=(Vector3_Base const& p_other) {
        x -= p_other.x;
        y -= p_other.y;
        z -= p_other.z;
        return *this;
    }
    constexpr Vector3_Base& operator*=(T p_factor) {
        x *= p_factor;
        y *= p_factor;
        z *= p_factor;
        return *this;
    }
    constexpr Vector3_Base& operator/=(T p_divisor) {
        x /= p_divisor;
        y /= p_divisor;
        z /= p_divisor;
        return *this;
    }

    constexpr bool operator==(Vector3_Base const&) const = default;

    /// Component by index: 0 is x, 1 is y, everything else z.
    constexpr T operator[](int p_index) const { return p_index == 0 ? x : p_index == 1 ? y : z; }
};

template <class T>
constexpr Vector3_Base<T> operator+(Vector3_Base<T> p_a, Vector3_Base<T> const& p_b) {
    return p_a += p_b;
}
template <class T>
constexpr Vector3_Base<T> operator-(Vector3_Base<T> p_a, Vector3_Base<T> const& p_b) {
    return p_a -= p_b;
}
template <class T>
constexpr Vector3_Base<T> operator-(Vector3_Base<T> const& p_a) {
    return {-p_a.x, -p_a.y, -p_a.z};
}
template <class T>
constexpr Vector3_Base<T> operator*(Vector3_Base<T> p_a, typename Vector3_Base<T>::ValueType p_factor) {
    return p_a *= p_factor;
}
template <class T>
constexpr Vector3_Base<T> operator*(typename Vector3_Base<T>::ValueType p_factor, Vector3_Base<T> p_a) {
    return p_a *= p_factor;
}
template <class T>
constexpr Vector3_Base<T> operator/(Vector3_Base<T> p_a, typename Vector3_Base<T>::ValueType p_divisor) {
    return p_a /= p_divisor;
}

template <class T>
constexpr T Dot(Vector3_Base<T> const& p_a, Vector3_Base<T> const& p_b) {
    return p_a.x * p_b.x + p_a.y * p_b.y + p_a.z * p_b.z;
}
template <class T>
constexpr Vector3_Base<T> Cross(Vector3_Base<T> const& p_a, Vector3_Base<T> const& p_b) {
    return {p_a.y * p_b.z - p_a.z * p_b.y, p_a.z * p_b.x - p_a.x * p_b.z, p_a.x * p_b.y - p_a.y * p_b.x};
}
template <class T>
T Length(Vector3_Base<T> const& p_a) {
    return static_cast<T>(std::hypot(p_a.x, p_a.y, p_a.z));
}
/// The vector scaled to length 1; a vector without a direction (zero or not finite) is returned as the zero vector.
template <class T>
Vector3_Base<T> Normalized(Vector3_Base<T> const& p_a) {
    T const length = Length(p_a);
    return std::isfinite(length) && length > T(0) ? p_a / length : Vector3_Base<T>();
}
template <class T>
constexpr Vector3_Base<T> ComponentMin(Vector3_Base<T> const& p_a, Vector3_Base<T> const& p_b) {
    return {p_b.x < p_a.x ? p_b.x : p_a.x, p_b.y < p_a.y ? p_b.y : p_a.y, p_b.z < p_a.z ? p_b.z : p_a.z};
}
template <class T>
constexpr Vector3_Base<T> ComponentMax(Vector3_Base<T> const& p_a, Vector3_Base<T> const& p_b) {
    return {p_a.x < p_b.x ? p_b.x : p_a.x, p_a.y < p_b.y ? p_b.y : p_a.y, p_a.z < p_b.z ? p_b.z : p_a.z};
}
/// True when no component is infinite or NaN.
template <class T>
bool IsFinite(Vector3_Base<T> const& p_a) {
    return std::isfinite(p_a.x) && std::isfinite(p_a.y) && std::isfinite(p_a.z);
}

/// Writes "(x, y, z)". Exists for int, float and double.
template <class T>
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, Vector3_Base<T> const& p_vector);

} // namespace Qor::Chart::Types
