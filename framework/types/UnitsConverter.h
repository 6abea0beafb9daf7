#pragma once

#include "framework/Export.h"
#include "framework/types/QuantityUnit.h"

#include <string>

namespace Qor::Chart::Types {

/// Knows units: which of them measure the same thing, how a value goes from one to another, and in which unit a
/// quantity is shown to the user. A host implements the three operations on names; those on QuantityUnit look at the
/// unit alone unless overridden.
class QOR_FRAMEWORK_API UnitsConverter {
public:
    virtual ~UnitsConverter();

    virtual bool AreConvertable(std::wstring const& p_source, std::wstring const& p_dest) const = 0;
    virtual bool AreConvertable(QuantityUnit const& p_source, QuantityUnit const& p_dest) const;

    /// Fills in how a value in p_source becomes one in p_dest: value * p_factor + p_offset. Units that are not
    /// convertible leave both as they are.
    virtual void GetConversionFactors(
        std::wstring const& p_source, std::wstring const& p_dest, double& p_factor, double& p_offset) const = 0;
    virtual void GetConversionFactors(
        QuantityUnit const& p_source, QuantityUnit const& p_dest, double& p_factor, double& p_offset) const;

    /// The unit in which a quantity that is given in p_unit should be shown.
    virtual std::wstring GetDisplayUnit(std::wstring const& p_quantityType, std::wstring const& p_unit) = 0;
    virtual QuantityUnit GetDisplayUnit(QuantityUnit const& p_quantityUnit);

protected:
    UnitsConverter() = default;
    UnitsConverter(UnitsConverter const&) = default;
    UnitsConverter& operator=(UnitsConverter const&) = default;
};

} // namespace Qor::Chart::Types
