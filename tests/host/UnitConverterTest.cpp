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

TEST(UnitConverterTest, convertsByFactorAndOffset) {
    UnitConverter const converter;
    struct Case {
        wchar_t const* source;
        wchar_t const* dest;
        double factor, offset;
    };
    for (Case const& wanted :
        {Case{L"ft", L"m", 0.3048, 0}, Case{L"km/h", L"m/s", 1 / 3.6, 0}, Case{L"degF", L"degC", 5.0 / 9, -160.0 / 9},
            Case{L"K", L"degF", 1.8, -459.67}, Case{L"bar", L"psi", 14.503773773, 0}, Case{L"g/cm3", L"kg/m3", 1000, 0},
            Case{L"%", L"1", 0.01, 0}, Case{L" m ", L"cm", 100, 0}, Case{L"\x00B5m", L"nm", 1000, 0}}) {
        double factor = -1, offset = -1;
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
        double factor = -1, offset = -2;
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
    EXPECT_EQ(converter.GetDisplayUnit(L"Mood", L"smile"), L"smile");

    converter.SetDisplayUnit(L"Length", L"km");
    EXPECT_EQ(converter.GetDisplayUnit(Types::QuantityUnit(L"Length", L"ft")), Types::QuantityUnit(L"Length", L"km"));
    EXPECT_EQ(converter.GetDisplayUnit(L"Length", L"s"), L"s") << "an impossible choice is passed over";
    try {
        converter.SetDisplayUnit(L"Length", L"furlongish");
        ADD_FAILURE();
    } catch (HostError const& error) {
        EXPECT_THAT(error.what(), testing::AllOf(testing::HasSubstr("furlongish"), testing::HasSubstr("Length")));
    }
    converter.SetDisplayUnit(L"Length", L"");
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
