#pragma once

#include "framework/types/UnitsConverter.h"
#include "host/Export.h"

#include <map>
#include <memory>
#include <string>

namespace Qor::Chart::Host {

/// Converts between units of measurement with the UDUNITS-2 database: "m", "km/h", "degC", "psi", "g/cm3" and whatever
/// else its grammar allows. Quantities are shown in SI units, but for those that the program or its user chose another
/// unit for. Names that are no units are never convertible; nothing here throws but `SetDisplayUnit`. Conversion may be
/// used from any thread, display units belong to the thread that sets them.
class QOR_HOST_API UnitConverter : public Types::UnitsConverter {
public:
    UnitConverter();
    ~UnitConverter() override;

    using UnitsConverter::AreConvertable;
    using UnitsConverter::GetConversionFactors;
    using UnitsConverter::GetDisplayUnit;

    /// Whether both are known and a value goes from one to the other by a factor and an offset. Logarithmic units and
    /// reciprocal ones (seconds and hertz) don't.
    bool AreConvertable(std::wstring const& p_source, std::wstring const& p_dest) const override;
    void GetConversionFactors(
        std::wstring const& p_source, std::wstring const& p_dest, double& p_factor, double& p_offset) const override;

    /// The unit chosen for the quantity, if values in p_unit can be shown in it; else the SI unit of what p_unit measures;
    /// else p_unit itself.
    std::wstring GetDisplayUnit(std::wstring const& p_quantityType, std::wstring const& p_unit) override;

    /// Shows a quantity in a unit from now on; an empty unit goes back to SI. The units are taken up when the converter is
    /// registered with the visual layer, so register it again after a change. Throws `HostError` for a name that is no
    /// unit.
    void SetDisplayUnit(std::wstring const& p_quantityType, std::wstring const& p_unit);

    /// Whether the database knows the name.
    static bool IsUnit(std::wstring const& p_unit);

private:
    std::map<std::wstring, std::wstring> _displayUnits;
};

} // namespace Qor::Chart::Host
