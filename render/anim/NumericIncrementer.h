#pragma once

#include "render/Export.h"

namespace Qor::Chart::Render {

/// Gives the numbers on the way from one to another. For int and float.
template <class T>
class QOR_VIS_API NumericIncrementer {
public:
    /// The number p_step of p_of steps on the way, between p_from and p_to; whole numbers are truncated toward zero. A
    /// step beyond the last one is reported and gives p_to.
    T operator()(T const& p_from, T const& p_to, unsigned p_step, unsigned p_of) const;
};

extern template class NumericIncrementer<int>;
extern template class NumericIncrementer<float>;

} // namespace Qor::Chart::Render
