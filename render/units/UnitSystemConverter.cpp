#include "render/units/UnitSystemConverter.h"

#include "framework/utility/Ensure.h"

#include <boost/any.hpp>

namespace Qor::Chart::Render {

UnitSystemConverter::UnitSystemConverter() = default;
UnitSystemConverter::~UnitSystemConverter() = default;

void UnitSystemConverter::RegisterConverter(boost::shared_ptr<Types::UnitsConverter> const& p_converter) {
    _converter = p_converter;
    TouchThis(ModifiableTypeService, ChangeModified, RelationshipSelf, Core::WeakPtr<Core::Node>(), "converter",
        boost::any());
}

bool UnitSystemConverter::AreConvertable(std::wstring const& p_source, std::wstring const& p_dest) const {
    bool const hasConverter = QOR_ENSURE(_converter);
    if (p_source == p_dest)
        return true;
    if (p_source.empty() || p_dest.empty() || !hasConverter)
        return false;
    return _converter->AreConvertable(p_source, p_dest);
}

bool UnitSystemConverter::AreConvertable(Types::QuantityUnit const& p_source, Types::QuantityUnit const& p_dest) const {
    return QOR_ENSURE(_converter) ? _converter->AreConvertable(p_source, p_dest) : p_source == p_dest;
}

void UnitSystemConverter::GetConversionFactors(
    std::wstring const& p_source, std::wstring const& p_dest, double& p_factor, double& p_offset) const {
    p_factor = 1.0;
    p_offset = 0.0;
    if (p_source == p_dest)
        return;
    bool const hasConverter = QOR_ENSURE(_converter);
    (void)QOR_ENSURE(AreConvertable(p_source, p_dest));
    if (hasConverter)
        _converter->GetConversionFactors(p_source, p_dest, p_factor, p_offset);
}

void UnitSystemConverter::GetConversionFactors(
    Types::QuantityUnit const& p_source, Types::QuantityUnit const& p_dest, double& p_factor, double& p_offset) const {
    p_factor = 1.0;
    p_offset = 0.0;
    if (QOR_ENSURE(_converter))
        _converter->GetConversionFactors(p_source, p_dest, p_factor, p_offset);
}

std::wstring UnitSystemConverter::GetDisplayUnit(std::wstring const& p_quantityType, std::wstring const& p_unit) {
    bool const hasConverter = QOR_ENSURE(_converter);
    if (p_quantityType.empty() && p_unit.empty())
        return {};
    if (!QOR_ENSURE_TEXT(!(p_quantityType.empty() || p_unit.empty()),
            "!(p_quantityType.empty() || p_unit.empty()) && \"The quantity or unit cannot be undefined.\""))
        return {};
    if (!hasConverter)
        return p_unit;
    std::wstring unit = _converter->GetDisplayUnit(p_quantityType, p_unit);
    (void)QOR_ENSURE_TEXT(
        AreConvertable(p_unit, unit), "AreConvertable(p_unit, unit) && \"Quantity and unit not compatible\"");
    return unit;
}

Types::QuantityUnit UnitSystemConverter::GetDisplayUnit(Types::QuantityUnit const& p_quantityUnit) {
    return QOR_ENSURE(_converter) ? _converter->GetDisplayUnit(p_quantityUnit) : p_quantityUnit;
}

UnitSystemConverter::Converter UnitSystemConverter::ToUnit(std::wstring const& p_from, std::wstring const& p_to) const {
    Converter converter;
    if (p_from != p_to)
        GetConversionFactors(p_from, p_to, converter.factor, converter.offset);
    return converter;
}

UnitSystemConverter::Converter UnitSystemConverter::ToUnit(
    Types::QuantityUnit const& p_from, Types::QuantityUnit const& p_to) const {
    Converter converter;
    GetConversionFactors(p_from, p_to, converter.factor, converter.offset);
    return converter;
}

} // namespace Qor::Chart::Render
