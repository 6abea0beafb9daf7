#pragma once

#include "framework/Export.h"

#include <cmath>
#include <iosfwd>

namespace Qor::Chart::Types {

/// A pair of numbers: a position, a direction or a size in a plane. A plain value; zero when default-constructed.
template <class T>
struct Vector2_Base {
    using ValueType = T;

    T x{};
    T y{};

    constexpr Vector2_Base() = default;
    constexpr Vector2_Base(T p_x, T p_y) : x(p_x), y(p_y) {}
    template <class U>
    explicit constexpr Vector2_Base(Vector2_Base<U> const& p_other)
        : x(static_cast<T>(p_other.x)), y(static_cast<T>(p_other.y)) {}

    constexpr Vector2_Base& operator+=(Vector2_Base const& p_other) {
        x += p_other.x;
        y += p_other.y;
        return *this;
    }
    constexpr Vector2_Base& operator-=(Vector2_Base const& p_other) {
        x -= p_other.x;
        y -= p_other.y;
        return *this;
    }
    constexpr Vector2_Base& operator*=(T p_factor) {
        x *= p_factor;
        y *= p_factor;
        return *this;
    }
    constexpr Vector2_Base& operator/=(T p_divisor) {
        x /= p_divisor;
        y /= p_divisor;
        return *this;
    }

    constexpr bool operator==(Vector2_Base const&) const = default;

    /// Component by index: 0 is x, everything else y.
    constexpr T operator[](int p_index) const { return p_index == 0 ? x : y; }
};

template <class T>
constexpr Vector2_Base<T> operator+(Vector2_Base<T> p_a, Vector2_Base<T> const& p_b) {
    return p_a += p_b;
}
template <class T>
constexpr Vector2_Base<T> operator-(Vector2_Base<T> p_a, Vector2_Base<T> const& p_b) {
    return p_a -= p_b;
}
template <class T>
constexpr Vector2_Base<T> operator-(Vector2_Base<T> const& p_a) {
    return {-p_a.x, -p_a.y};
}
template <class T>
constexpr Vector2_Base<T> operator*(Vector2_Base<T> p_a, typename Vector2_Base<T>::ValueType p_factor) {
    return p_a *= p_factor;
}
template <class T>
constexpr Vector2_Base<T> operator*(typename Vector2_Base<T>::ValueType p_factor, Vector2_Base<T> p_a) {
    return p_a *= p_factor;
}
template <class T>
constexpr Vector2_Base<T> operator/(Vector2_Base<T> p_a, typename Vector2_Base<T>::ValueType p_divisor) {
    return p_a /= p_divisor;
}

template <class T>
constexpr T Dot(Vector2_Base<T> const& p_a, Vector2_Base<T> const& p_b) {
    return p_a.x * p_b.x + p_a.y * p_b.y;
}
template <class T>
T Length(Vector2_Base<T> const& p_a) {
    return static_cast<T>(std::hypot(p_a.x, p_a.y));
}
/// True when no component is infinite or NaN.
template <class T>
bool IsFinite(Vector2_Base<T> const& p_a) {
    return std::isfinite(p_a.x) && std::isfinite(p_a.y);
}

/// Writes "(x, y)". Exists for int, float and double.
template <class T>
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, Vector2_Base<T> const& p_vector);

} // namespace Qor::Chart::Types
