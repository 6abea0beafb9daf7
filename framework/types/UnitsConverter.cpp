#include "framework/types/UnitsConverter.h"

namespace Qor::Chart::Types {

UnitsConverter::~UnitsConverter() = default;

bool UnitsConverter::AreConvertable(QuantityUnit const& p_source, QuantityUnit const& p_dest) const {
    return AreConvertable(p_source.unit, p_dest.unit);
}

void UnitsConverter::GetConversionFactors(
    QuantityUnit const& p_source, QuantityUnit const& p_dest, double& p_factor, double& p_offset) const {
    GetConversionFactors(p_source.unit, p_dest.unit, p_factor, p_offset);
}

QuantityUnit UnitsConverter::GetDisplayUnit(QuantityUnit const& p_quantityUnit) {
    return {p_quantityUnit.quantity, GetDisplayUnit(p_quantityUnit.quantity, p_quantityUnit.unit)};
}

} // namespace Qor::Chart::Types
