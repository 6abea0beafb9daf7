#pragma once

#include "framework/Export.h"
#include "framework/types/Vector3.h"

#include <iosfwd>

namespace Qor::Chart::Types {

/// Four numbers: a homogeneous position (w = 1), a homogeneous direction (w = 0), a plane (normal and offset) or any
/// other quadruple that the graphics take. A plain value; zero when default-constructed.
template <class T>
struct Vector4_Base {
    using ValueType = T;

    T x{};
    T y{};
    T z{};
    T w{};

    constexpr Vector4_Base() = default;
    constexpr Vector4_Base(T p_x, T p_y, T p_z, T p_w) : x(p_x), y(p_y), z(p_z), w(p_w) {}
    constexpr Vector4_Base(Vector3_Base<T> const& p_xyz, T p_w) : x(p_xyz.x), y(p_xyz.y), z(p_xyz.z), w(p_w) {}
    template <class U>
    explicit constexpr Vector4_Base(Vector4_Base<U> const& p_other)
        : x(static_cast<T>(p_other.x))
        , y(static_cast<T>(p_other.y))
        , z(static_cast<T>(p_other.z))
        , w(static_cast<T>(p_other.w)) {}

    constexpr Vector4_Base& operator+=(Vector4_Base const& p_other) {
        x += p_other.x;
        y += p_other.y;
        z += p_other.z;
        w += p_other.w;
        return *this;
    }
    constexpr Vector4_Base& operator-=(Vector4_Base const& p_other) {
        x -= p_other.x;
        y -= p_other.y;
        z -= p_other.z;
        w -= p_other.w;
        return *this;
    }
    constexpr Vector4_Base& operator*=(T p_factor) {
        x *= p_factor;
        y *= p_factor;
        z *= p_factor;
        w *= p_factor;
        return *this;
    }
    constexpr Vector4_Base& operator/=(T p_divisor) {
        x /= p_divisor;
        y /= p_divisor;
        z /= p_divisor;
        w /= p_divisor;
        return *this;
    }

    constexpr bool operator==(Vector4_Base const&) const = default;

    /// Component by index: 0 is x, 1 is y, 2 is z, everything else w.
    constexpr T operator[](int p_index) const { return p_index == 0 ? x : p_index == 1 ? y : p_index == 2 ? z : w; }

    /// The first three components, without division by w.
    constexpr Vector3_Base<T> XYZ() const { return {x, y, z}; }
};

template <class T>
constexpr Vector4_Base<T> operator+(Vector4_Base<T> p_a, Vector4_Base<T> const& p_b) {
    return p_a += p_b;
}
template <class T>
constexpr Vector4_Base<T> operator-(Vector4_Base<T> p_a, Vector4_Base<T> const& p_b) {
    return p_a -= p_b;
}
template <class T>
constexpr Vector4_Base<T> operator-(Vector4_Base<T> const& p_a) {
    return {-p_a.x, -p_a.y, -p_a.z, -p_a.w};
}
template <class T>
constexpr Vector4_Base<T> operator*(Vector4_Base<T> p_a, typename Vector4_Base<T>::ValueType p_factor) {
    return p_a *= p_factor;
}
template <class T>
constexpr Vector4_Base<T> operator*(typename Vector4_Base<T>::ValueType p_factor, Vector4_Base<T> p_a) {
    return p_a *= p_factor;
}
template <class T>
constexpr Vector4_Base<T> operator/(Vector4_Base<T> p_a, typename Vector4_Base<T>::ValueType p_divisor) {
    return p_a /= p_divisor;
}
template <class T>
constexpr T Dot(Vector4_Base<T> const& p_a, Vector4_Base<T> const& p_b) {
    return p_a.x * p_b.x + p_a.y * p_b.y + p_a.z * p_b.z + p_a.w * p_b.w;
}
/// True when no component is infinite or NaN.
template <class T>
bool IsFinite(Vector4_Base<T> const& p_a) {
    return IsFinite(p_a.XYZ()) && std::isfinite(p_a.w);
}

/// Writes "(x, y, z, w)". Exists for int, float and double.
template <class T>
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, Vector4_Base<T> const& p_vector);

} // namespace Qor::Chart::Types
