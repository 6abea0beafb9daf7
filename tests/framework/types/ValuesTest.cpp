#include "framework/types/Math.h"
#include "framework/types/NumberFormat.h"
#include "framework/types/Vector3.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace Qor::Chart::Types;
using NiceIntervals::NumberFormat;

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinity = std::numeric_limits<double>::infinity();

TEST(MathTest, clampAndTruncateAlwaysGiveAValueInRange) {
    for (auto const& [value, expected] : {std::pair(NaN, 0.0), std::pair(Infinity, 1.0), std::pair(0.5, 0.5)})
        EXPECT_EQ(Math::Clamp<double>(value, 0, 1), expected);
    EXPECT_EQ(Math::Truncate(1e30), std::numeric_limits<int>::max());
    EXPECT_EQ(Math::Truncate(-1e30), std::numeric_limits<int>::min());
    EXPECT_EQ(Math::Truncate(NaN), 0);
}

TEST(VectorTest, normalizedHasLengthOneOrNone) {
    using Vector = Vector3_Base<double>;
    EXPECT_NEAR(Length(Normalized(Vector(1e-200, 1e-200, 0))), 1, 1e-12);
    EXPECT_NEAR(Length(Normalized(Vector(1e200, -1e200, 1e200))), 1, 1e-12);
    EXPECT_EQ(Normalized(Vector(NaN, 1, 0)), Vector());
}

TEST(NumberFormatTest, writesEveryNotation) {
    using enum NumberFormat::Notation;
    using Case = std::tuple<double, NumberFormat::Notation, int, char const*>;
    for (auto const& [value, notation, digits, text] :
        {Case{-0.0, Automatic, 6, "0"}, Case{1234.5, Automatic, 6, "1234.5"}, Case{100000, Automatic, 6, "100000"},
            Case{999999.5, Automatic, 6, "1e+06"}, Case{0.0001, Automatic, 6, "0.0001"},
            Case{0.00001, Automatic, 6, "1e-05"}, Case{0.1 + 0.2, Automatic, 15, "0.3"},
            Case{9.99, Automatic, -5, "1e+01"}, Case{1234.5, Fixed, 2, "1234.50"}, Case{-0.001, Fixed, 2, "0.00"},
            Case{-0.006, Fixed, 2, "-0.01"}, Case{2.5, Fixed, 99, "2.5000000000000000000000000000000000000000"},
            Case{1234.5, Scientific, 3, "1.234e+03"}, Case{-1e-300, Scientific, 0, "-1e-300"}}) {
        NumberFormat format;
        format.notation = notation;
        format.digits = digits;
        EXPECT_EQ(format(value), text) << value << ", " << format;
    }
}

TEST(NumberFormatTest, writesSeparatorsSignsZerosAndWhatIsNoNumber) {
    NumberFormat format;
    format.notation = NumberFormat::Notation::Fixed;
    format.digits = 1;
    format.groupSeparator = "\u202F";
    format.decimalPoint = ",";
    format.plusSign = true;
    EXPECT_EQ(format(-1234567.25), "-1\u202F234\u202F567,2");
    EXPECT_EQ(format(123), "+123,0");
    EXPECT_EQ(format(0), "0,0");
    EXPECT_EQ(format(std::numeric_limits<double>::max()).size(), 1 + 309U + 102 * 3 + 2);
    EXPECT_EQ(format(NaN), "nan");
    EXPECT_EQ(format(Infinity), "+inf");
    NumberFormat zeros;
    zeros.trailingZeros = true;
    EXPECT_EQ(zeros(1e9), "1.00000e+09");
}

} // namespace
