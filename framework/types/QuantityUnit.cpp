#include "framework/types/QuantityUnit.h"

#include "framework/utility/Unicode.h"

#include <ostream>
#include <utility>

namespace Qor::Chart::Types {

QuantityUnit::QuantityUnit(std::wstring p_quantity, std::wstring p_unit)
    : quantity(std::move(p_quantity)), unit(std::move(p_unit)) {}

std::strong_ordering QuantityUnit::operator<=>(QuantityUnit const& p_other) const {
    std::strong_ordering const byQuantity = quantity <=> p_other.quantity;
    return std::is_neq(byQuantity) ? byQuantity : unit <=> p_other.unit;
}

std::ostream& operator<<(std::ostream& p_stream, QuantityUnit const& p_quantityUnit) {
    return p_stream << Utility::ToUtf8(p_quantityUnit.quantity) << " [" << Utility::ToUtf8(p_quantityUnit.unit) << ']';
}

} // namespace Qor::Chart::Types
