#include "render/units/UnitSystemConverter.h"

#include "framework/core/ModificationWatcher.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <boost/make_shared.hpp>

#include <gmock/gmock.h>

#include <string>

namespace Qor::Chart::Render {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using Converter = UnitSystemConverter::Converter;

/// Knows metres and feet, and shows every quantity in the unit that it is told.
class Lengths : public Types::UnitsConverter {
public:
    using UnitsConverter::AreConvertable;
    using UnitsConverter::GetConversionFactors;
    using UnitsConverter::GetDisplayUnit;

    bool AreConvertable(std::wstring const& p_source, std::wstring const& p_dest) const override {
        return p_source != L"kg" && p_dest != L"kg";
    }
    void GetConversionFactors(
        std::wstring const&, std::wstring const& p_dest, double& p_factor, double& p_offset) const override {
        p_factor = p_dest == L"ft" ? 3.25 : 0.5;
        p_offset = 1.0;
    }
    std::wstring GetDisplayUnit(std::wstring const&, std::wstring const&) override { return shown; }

    std::wstring shown = L"ft";
};

TEST(UnitSystemConverterTest, answersComeFromTheConverterOnceThereIsOneAndAreCheckedAndReported) {
    auto const units = Core::MakeNode<UnitSystemConverter>();
    auto const lengths = boost::make_shared<Lengths>();
    qordebug::CaptureScope log{Utility::GetLogger()};
    EXPECT_EQ(units->ToUnit(L"m", L"m"), Converter{});
    EXPECT_THAT(log.texts(), IsEmpty()) << "needs no converter";
    EXPECT_EQ(units->ToUnit(L"m", L"ft"), Converter{});
    EXPECT_EQ(units->GetDisplayUnit(L"Length", L"m"), L"m");
    EXPECT_EQ(log.texts().size(), 4U);
    log.clear();

    Core::ModificationWatcher const watcher{Core::WeakPtr<Core::Node>(units)};
    units->RegisterConverter(lengths);
    EXPECT_TRUE(watcher.Modified()) << "so that dependents learn of it";
    EXPECT_EQ(units->ToUnit(L"m", L"ft")(2.0), 7.5);
    EXPECT_EQ(units->GetDisplayUnit(Types::QuantityUnit(L"Length", L"m")), Types::QuantityUnit(L"Length", L"ft"));
    EXPECT_THAT(log.texts(), IsEmpty());
    EXPECT_EQ(units->ToUnit(L"m", L"kg"), (Converter{0.5, 1.0})) << "asked even though they do not fit";
    lengths->shown = L"kg";
    EXPECT_EQ(units->GetDisplayUnit(L"Length", L"m"), L"kg");
    EXPECT_THAT(log.texts(),
        ElementsAre(StartsWith("\"AreConvertable(p_source, p_dest)\" - "),
            StartsWith("\"AreConvertable(p_unit, unit) && \"Quantity and unit not compatible\"\" - ")));
}

} // namespace
} // namespace Qor::Chart::Render
