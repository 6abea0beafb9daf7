#pragma once

#include "framework/Export.h"

#include <compare>
#include <iosfwd>
#include <string>

namespace Qor::Chart::Types {

/// What a number measures and in which unit: "Length" in "m". Both names may be empty, for a plain number.
struct QOR_FRAMEWORK_API QuantityUnit {
    std::wstring quantity;
    std::wstring unit;

    QuantityUnit() = default;
    QuantityUnit(std::wstring p_quantity, std::wstring p_unit);

    bool operator==(QuantityUnit const&) const = default;
    /// By quantity, then by unit.
    std::strong_ordering operator<=>(QuantityUnit const& p_other) const;

    bool IsEmpty() const { return quantity.empty() && unit.empty(); }
};

/// Writes "Length [m]" in UTF-8.
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, QuantityUnit const& p_quantityUnit);

} // namespace Qor::Chart::Types
