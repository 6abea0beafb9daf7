#include "render/anim/NumericIncrementer.h"

#include "framework/types/Math.h"
#include "framework/utility/Ensure.h"

#include <type_traits>

namespace Qor::Chart::Render {

template <class T>
T NumericIncrementer<T>::operator()(T const& p_from, T const& p_to, unsigned p_step, unsigned p_of) const {
    if (!QOR_ENSURE(p_step <= p_of))
        return p_to;
    double const t = static_cast<double>(p_step) / p_of;
    double const distance = static_cast<double>(p_to) - static_cast<double>(p_from);
    double const value = p_from + distance * t;
    T const low = distance > 0 ? p_from : p_to;
    T const high = distance > 0 ? p_to : p_from;
    if constexpr (std::is_integral_v<T>)
        return Types::Math::Clamp<T>(Types::Math::Truncate(value), low, high);
    else
        return Types::Math::Clamp<T>(static_cast<T>(value), low, high);
}

template class NumericIncrementer<int>;
template class NumericIncrementer<float>;

} // namespace Qor::Chart::Render
