#pragma once

#ifdef __SSE2__
#include <emmintrin.h>
#else
#include <algorithm>
#include <array>
#include <cstddef>
#endif

namespace Qor::Chart::Ogl {

#ifdef __SSE2__

/// Four numbers that are reckoned with at once, lane by lane.
class Lanes {
public:
    /// The same number four times.
    explicit Lanes(float p_number = 0) : _numbers(_mm_set1_ps(p_number)) {}
    static Lanes Load(float const* p_numbers) { return From(_mm_loadu_ps(p_numbers)); }
    void Store(float* p_numbers) const { _mm_storeu_ps(p_numbers, _numbers); }

    friend Lanes operator+(Lanes p_a, Lanes p_b) { return From(_mm_add_ps(p_a._numbers, p_b._numbers)); }
    friend Lanes operator*(Lanes p_a, Lanes p_b) { return From(_mm_mul_ps(p_a._numbers, p_b._numbers)); }
    friend Lanes Min(Lanes p_a, Lanes p_b) { return From(_mm_min_ps(p_a._numbers, p_b._numbers)); }
    friend Lanes Max(Lanes p_a, Lanes p_b) { return From(_mm_max_ps(p_a._numbers, p_b._numbers)); }

    /// A bit for each lane that is 0 or more, the lowest one for the first lane.
    unsigned NotNegative() const {
        return static_cast<unsigned>(_mm_movemask_ps(_mm_cmpge_ps(_numbers, _mm_setzero_ps())));
    }

private:
    static Lanes From(__m128 p_numbers) {
        Lanes result;
        result._numbers = p_numbers;
        return result;
    }

    __m128 _numbers;
};

#else

/// The same, for machines that do it one lane after the other.
class Lanes {
public:
    explicit Lanes(float p_number = 0) { _numbers.fill(p_number); }
    static Lanes Load(float const* p_numbers) {
        Lanes result;
        std::copy_n(p_numbers, 4, result._numbers.begin());
        return result;
    }
    void Store(float* p_numbers) const { std::copy(_numbers.begin(), _numbers.end(), p_numbers); }

    friend Lanes operator+(Lanes const& p_a, Lanes const& p_b) {
        return Each(p_a, p_b, [](float p_x, float p_y) { return p_x + p_y; });
    }
    friend Lanes operator*(Lanes const& p_a, Lanes const& p_b) {
        return Each(p_a, p_b, [](float p_x, float p_y) { return p_x * p_y; });
    }
    friend Lanes Min(Lanes const& p_a, Lanes const& p_b) {
        return Each(p_a, p_b, [](float p_x, float p_y) { return p_x < p_y ? p_x : p_y; });
    }
    friend Lanes Max(Lanes const& p_a, Lanes const& p_b) {
        return Each(p_a, p_b, [](float p_x, float p_y) { return p_x > p_y ? p_x : p_y; });
    }

    unsigned NotNegative() const {
        unsigned bits = 0;
        for (std::size_t lane = 0; lane < _numbers.size(); ++lane) {
            bits |= (_numbers[lane] >= 0 ? 1U : 0U) << lane;
        }
        return bits;
    }

private:
    template <class Function>
    static Lanes Each(Lanes const& p_a, Lanes const& p_b, Function const& p_function) {
        Lanes result;
        std::transform(
            p_a._numbers.begin(), p_a._numbers.end(), p_b._numbers.begin(), result._numbers.begin(), p_function);
        return result;
    }

    std::array<float, 4> _numbers;
};

#endif

} // namespace Qor::Chart::Ogl
