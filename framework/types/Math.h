#pragma once

#include <limits>

namespace Qor::Chart::Types::Math {

/// The value limited to the closed range from p_low to p_high. A value that is NaN gives p_low, so that the result
/// always lies in the range.
template <class T>
constexpr T Clamp(T p_value, T p_low, T p_high) {
    if (!(p_value > p_low)) {
        return p_low;
    }
    return p_value < p_high ? p_value : p_high;
}

/// The value without its fraction, as an int. What no int can hold becomes the nearest int, NaN becomes 0.
constexpr int Truncate(double p_value) {
    if (p_value != p_value) {
        return 0;
    }
    return static_cast<int>(Clamp<double>(p_value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

/// The value p_t of the way from p_from (0) to p_to (1).
template <class T>
constexpr T Lerp(T p_from, T p_to, T p_t) {
    return p_from * (T(1) - p_t) + p_to * p_t;
}

} // namespace Qor::Chart::Types::Math
