#include "framework/types/NumberFormat.h"

#include "framework/types/Math.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <ostream>
#include <string_view>

namespace Qor::Chart::Types::NiceIntervals {

namespace {

constexpr int MaxDigits = 40;

std::string Digits(double p_magnitude, std::chars_format p_format, int p_precision) {
    char buffer[512]; // the largest double has 309 integral digits
    auto const end = std::to_chars(buffer, buffer + sizeof(buffer), p_magnitude, p_format, p_precision).ptr;
    return {buffer, end};
}

/// The power of ten of the first digit, once the number is rounded to that many significant digits.
int Exponent(double p_magnitude, int p_significant) {
    std::string const text = Digits(p_magnitude, std::chars_format::scientific, p_significant - 1);
    return std::atoi(text.c_str() + text.find('e') + 1);
}

std::string Automatic(double p_magnitude, int p_significant) {
    int const exponent = p_magnitude == 0.0 ? 0 : Exponent(p_magnitude, p_significant);
    if (exponent < -4 || exponent >= p_significant) {
        return Digits(p_magnitude, std::chars_format::scientific, p_significant - 1);
    }
    return Digits(p_magnitude, std::chars_format::fixed, p_significant - 1 - exponent);
}

/// A number cut into what stands before, in and behind the fraction: "1234", "50", "e+03".
struct Parts {
    std::string_view integral;
    std::string_view fraction;
    std::string_view exponent;
};

Parts Split(std::string_view p_text) {
    Parts parts;
    auto const exponentAt = p_text.find('e');
    if (exponentAt != std::string_view::npos) {
        parts.exponent = p_text.substr(exponentAt);
        p_text = p_text.substr(0, exponentAt);
    }
    auto const pointAt = p_text.find('.');
    parts.integral = p_text.substr(0, pointAt);
    if (pointAt != std::string_view::npos) {
        parts.fraction = p_text.substr(pointAt + 1);
    }
    return parts;
}

std::string_view WithoutTrailingZeros(std::string_view p_fraction) {
    return p_fraction.substr(0, p_fraction.find_last_not_of('0') + 1);
}

void AppendGrouped(std::string& p_text, std::string_view p_integral, std::string const& p_separator) {
    for (std::size_t index = 0; index < p_integral.size(); ++index) {
        if (index != 0 && (p_integral.size() - index) % 3 == 0) {
            p_text += p_separator;
        }
        p_text += p_integral[index];
    }
}

} // namespace

std::string NumberFormat::Format(double p_value) const {
    if (std::isnan(p_value)) {
        return "nan";
    }
    std::string const plus = plusSign ? "+" : "";
    if (std::isinf(p_value)) {
        return (p_value < 0 ? "-" : plus) + "inf";
    }
    int const count = Math::Clamp(digits, 0, MaxDigits);
    double const magnitude = std::abs(p_value);
    std::string const text = notation == Notation::Fixed ? Digits(magnitude, std::chars_format::fixed, count)
        : notation == Notation::Scientific               ? Digits(magnitude, std::chars_format::scientific, count)
                                                         : Automatic(magnitude, count == 0 ? 1 : count);
    Parts parts = Split(text);
    if (notation == Notation::Automatic && !trailingZeros) {
        parts.fraction = WithoutTrailingZeros(parts.fraction);
    }

    bool const zero = text.find_first_of("123456789") >= text.size() - parts.exponent.size();
    std::string result = zero ? "" : p_value < 0 ? "-" : plus;
    AppendGrouped(result, parts.integral, groupSeparator);
    if (!parts.fraction.empty()) {
        result.append(decimalPoint).append(parts.fraction);
    }
    return result.append(parts.exponent);
}

std::ostream& operator<<(std::ostream& p_stream, NumberFormat::Notation p_notation) {
    switch (p_notation) {
    case NumberFormat::Notation::Automatic:
        return p_stream << "automatic";
    case NumberFormat::Notation::Fixed:
        return p_stream << "fixed";
    case NumberFormat::Notation::Scientific:
        return p_stream << "scientific";
    }
    return p_stream << "notation " << static_cast<int>(p_notation);
}

std::ostream& operator<<(std::ostream& p_stream, NumberFormat const& p_format) {
    return p_stream << p_format.notation << ", " << p_format.digits << " digits"
                    << (p_format.trailingZeros ? ", trailing zeros" : "") << (p_format.plusSign ? ", plus sign" : "")
                    << ", decimal point \"" << p_format.decimalPoint << "\", group separator \""
                    << p_format.groupSeparator << '"';
}

} // namespace Qor::Chart::Types::NiceIntervals
