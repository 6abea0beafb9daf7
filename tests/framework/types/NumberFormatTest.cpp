#include "framework/types/NumberFormat.h"

#include <gtest/gtest.h>

#include <clocale>
#include <limits>
#include <sstream>

namespace {

using Qor::Chart::Types::NiceIntervals::NumberFormat;
using Notation = NumberFormat::Notation;

struct Case {
    double value;
    Notation notation;
    int digits;
    char const* text;
};

TEST(NumberFormatTest, writesEveryNotation) {
    Notation const automatic = Notation::Automatic;
    Notation const fixed = Notation::Fixed;
    Notation const scientific = Notation::Scientific;
    for (Case const& c :
        {Case{0, automatic, 6, "0"}, Case{-0.0, automatic, 6, "0"}, Case{1234.5, automatic, 6, "1234.5"},
            Case{100000, automatic, 6, "100000"}, Case{1000000, automatic, 6, "1e+06"},
            Case{999999.5, automatic, 6, "1e+06"}, Case{0.0001, automatic, 6, "0.0001"},
            Case{0.00001, automatic, 6, "1e-05"}, Case{0.1 + 0.2, automatic, 15, "0.3"},
            Case{1.0 / 3, automatic, 3, "0.333"}, Case{9.99, automatic, 0, "1e+01"}, Case{9.99, automatic, -5, "1e+01"},
            Case{1234.5, fixed, 2, "1234.50"}, Case{0.125, fixed, 0, "0"}, Case{-0.001, fixed, 2, "0.00"},
            Case{-0.006, fixed, 2, "-0.01"}, Case{2.5, fixed, 99, "2.5000000000000000000000000000000000000000"},
            Case{1234.5, scientific, 3, "1.234e+03"}, Case{0, scientific, 1, "0.0e+00"},
            Case{-1e-300, scientific, 0, "-1e-300"}}) {
        NumberFormat format;
        format.notation = c.notation;
        format.digits = c.digits;
        EXPECT_EQ(format(c.value), c.text) << c.value << ", " << format;
    }
    NumberFormat format;
    format.notation = Notation::Fixed;
    EXPECT_EQ(format(std::numeric_limits<double>::max()).size(), 309U + 1 + 6);
}

TEST(NumberFormatTest, writesSeparatorsSignsAndZeros) {
    NumberFormat format;
    format.notation = Notation::Fixed;
    format.digits = 1;
    format.groupSeparator = "\u202F";
    format.decimalPoint = ",";
    format.plusSign = true;
    EXPECT_EQ(format(-1234567.25), "-1\u202F234\u202F567,2");
    EXPECT_EQ(format(123), "+123,0");
    EXPECT_EQ(format(0), "0,0");
    NumberFormat zeros;
    zeros.trailingZeros = true;
    EXPECT_EQ(zeros(1.5), "1.50000");
    EXPECT_EQ(zeros(1e9), "1.00000e+09");
}

TEST(NumberFormatTest, namesWhatIsNoNumber) {
    double const infinity = std::numeric_limits<double>::infinity();
    NumberFormat format;
    format.groupSeparator = ",";
    EXPECT_EQ(format(std::numeric_limits<double>::quiet_NaN()), "nan");
    EXPECT_EQ(format(infinity), "inf");
    EXPECT_EQ(format(-infinity), "-inf");
    format.plusSign = true;
    EXPECT_EQ(format(infinity), "+inf");
}

} // namespace
