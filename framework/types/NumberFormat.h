#pragma once

#include "framework/Export.h"

#include <iosfwd>
#include <string>

namespace Qor::Chart::Types::NiceIntervals {

/// How a number is written for people: on axes, in legends, next to a value under the pointer. A plain value; the text
/// depends on nothing but the number and these fields, never on the locale.
struct QOR_FRAMEWORK_API NumberFormat {
    enum class Notation {
        /// Fixed from 0.0001 up to as many integral digits as digits says, else scientific; digits counts significant
        /// ones, at least one.
        Automatic,
        Fixed, ///< 1234.50; digits counts those after the decimal point
        Scientific, ///< 1.2345e+03; digits counts those after the decimal point
    };

    Notation notation = Notation::Automatic;
    int digits = 6; ///< from 0 to 40; other values are taken as the nearest of these
    bool trailingZeros = false; ///< let automatic notation keep zeros at the end of the fraction, up to digits
    bool plusSign = false; ///< write "+" before positive numbers
    std::string decimalPoint = ".";
    std::string groupSeparator; ///< between groups of three digits of the integral part; empty writes none

    bool operator==(NumberFormat const&) const = default;

    /// The number as text. What rounds to zero has no sign; infinity is "inf", not-a-number "nan".
    std::string Format(double p_value) const;
    std::string operator()(double p_value) const { return Format(p_value); }
};

/// Writes the format's own fields, for messages.
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, NumberFormat const& p_format);
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, NumberFormat::Notation p_notation);

} // namespace Qor::Chart::Types::NiceIntervals
