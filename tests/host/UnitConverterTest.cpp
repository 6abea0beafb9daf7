#include "host/UnitConverter.h"

#include "framework/types/QuantityUnit.h"
#include "host/HostError.h"

#include <gmock/gmock.h>

#include <atomic>
#include <cmath>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

namespace Qor::Chart::Host {
namespace {

TEST(UnitConverterTest, convertsByFactorAndOffset) {
    UnitConverter const converter;
    for (auto const& [source, dest, expectedFactor, expectedOffset] :
        {std::tuple(L"ft", L"m", 0.3048, 0.0), {L"km/h", L"m/s", 1 / 3.6, 0}, {L"degF", L"degC", 5.0 / 9, -160.0 / 9},
            {L"%", L"1", 0.01, 0}, {L" m ", L"cm", 100, 0}, {L"\x00B5m", L"nm", 1000, 0}}) {
        double factor = -1, offset = -1;
        EXPECT_TRUE(converter.AreConvertable(source, dest)) << source;
        converter.GetConversionFactors(source, dest, factor, offset);
        EXPECT_NEAR(factor, expectedFactor, 1e-9 * std::abs(expectedFactor)) << source;
        EXPECT_NEAR(offset, expectedOffset, 1e-8) << source;
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
    EXPECT_EQ(converter.GetDisplayUnit(L"Depth of well", L"ft"), L"m") << "the unit tells what it measures";
    EXPECT_EQ(converter.GetDisplayUnit(L"Mood", L"smile"), L"smile");

    converter.SetDisplayUnit(L"Length", L"km");
    EXPECT_EQ(converter.GetDisplayUnit(Types::QuantityUnit(L"Length", L"ft")), Types::QuantityUnit(L"Length", L"km"));
    EXPECT_EQ(converter.GetDisplayUnit(L"Length", L"s"), L"s") << "an impossible choice is passed over";
    EXPECT_THAT([&] { converter.SetDisplayUnit(L"Length", L"furlongish"); },
        testing::ThrowsMessage<HostError>(
            testing::AllOf(testing::HasSubstr("furlongish"), testing::HasSubstr("Length"))));
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
