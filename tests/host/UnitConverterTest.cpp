#include "host/UnitConverter.h"

#include "framework/types/QuantityUnit.h"
#include "host/HostError.h"

#include <gmock/gmock.h>

#include <atomic>
#include <cmath>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace Qor::Chart::Host {
namespace {

struct Conversion {
    wchar_t const* source;
    wchar_t const* dest;
    double factor;
    double offset;
};

TEST(UnitConverterTest, convertsByFactorAndOffset) {
    UnitConverter const converter;
    for (Conversion const& wanted : {
             Conversion{L"km", L"m", 1000, 0},
             {L"ft", L"m", 0.3048, 0},
             {L"km/h", L"m/s", 1 / 3.6, 0},
             {L"degC", L"K", 1, 273.15},
             {L"degF", L"degC", 5.0 / 9, -160.0 / 9},
             {L"K", L"degF", 1.8, -459.67},
             {L"bar", L"psi", 14.503773773, 0},
             {L"g/cm3", L"kg/m3", 1000, 0},
             {L"degree", L"rad", 0.017453292519943295, 0},
             {L"%", L"1", 0.01, 0},
             {L" m ", L"cm", 100, 0},
             {L"\x00B5m", L"nm", 1000, 0},
             {L"m", L"m", 1, 0},
         }) {
        double factor = -1;
        double offset = -1;
        EXPECT_TRUE(converter.AreConvertable(wanted.source, wanted.dest)) << wanted.source;
        converter.GetConversionFactors(wanted.source, wanted.dest, factor, offset);
        EXPECT_NEAR(factor, wanted.factor, 1e-9 * std::abs(wanted.factor)) << wanted.source;
        EXPECT_NEAR(offset, wanted.offset, 1e-8) << wanted.source;
    }
}

TEST(UnitConverterTest, whatIsNoUnitOrNoLinearConversionIsRefusedInSilence) {
    UnitConverter const converter;
    testing::internal::CaptureStderr();
    std::pair<wchar_t const*, wchar_t const*> const pairs[] = {{L"m", L"s"}, {L"m", L"furlongish"}, {L"", L"m"},
        {L"m", L""}, {L"   ", L"m"}, {L"m/(", L"m"}, {L"\x1F600", L"m"}, {L"s", L"Hz"}, {L"lg(re 1 mW)", L"W"}};
    for (auto const& [source, dest] : pairs) {
        double factor = -1;
        double offset = -2;
        EXPECT_FALSE(converter.AreConvertable(source, dest)) << source << " " << dest;
        converter.GetConversionFactors(source, dest, factor, offset);
        EXPECT_EQ(factor, -1);
        EXPECT_EQ(offset, -2);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(UnitConverterTest, quantitiesAreShownInSiUnitsUnlessOthersWereChosen) {
    UnitConverter converter;
    EXPECT_EQ(converter.GetDisplayUnit(L"Length", L"ft"), L"m");
    EXPECT_EQ(converter.GetDisplayUnit(L"Depth of well", L"ft"), L"m") << "the unit tells what it measures";
    EXPECT_EQ(converter.GetDisplayUnit(L"Torque", L"lbf.ft"), L"N.m");
    EXPECT_EQ(converter.GetDisplayUnit(L"Energy", L"kW.h"), L"J");
    EXPECT_EQ(converter.GetDisplayUnit(L"Mood", L"smile"), L"smile");

    converter.SetDisplayUnit(L"Length", L"km");
    EXPECT_EQ(converter.GetDisplayUnit(Types::QuantityUnit(L"Length", L"ft")), Types::QuantityUnit(L"Length", L"km"));
    EXPECT_EQ(converter.GetDisplayUnit(L"Length", L"s"), L"s") << "an impossible choice is passed over";
    converter.SetDisplayUnit(L"Length", L"");
    EXPECT_EQ(converter.GetDisplayUnit(L"Length", L"ft"), L"m");
}

TEST(UnitConverterTest, aDisplayUnitThatIsNoneIsOneSentence) {
    UnitConverter converter;
    try {
        converter.SetDisplayUnit(L"Length", L"furlongish");
        FAIL();
    } catch (HostError const& error) {
        EXPECT_THAT(error.what(), testing::AllOf(testing::HasSubstr("furlongish"), testing::HasSubstr("Length")));
    }
    EXPECT_EQ(converter.GetDisplayUnit(L"Length", L"ft"), L"m");
}

TEST(UnitConverterTest, mayBeUsedFromManyThreads) {
    std::vector<std::thread> threads;
    std::atomic<int> good = 0;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&good, i] {
            UnitConverter const converter;
            for (int j = 0; j < 200; ++j)
                good += converter.AreConvertable(std::to_wstring(8 * j + i + 1) + L" ft", L"m") ? 1 : 0;
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(good, 1600);
}

} // namespace
} // namespace Qor::Chart::Host
