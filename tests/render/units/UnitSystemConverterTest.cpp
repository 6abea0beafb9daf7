#include "render/units/UnitSystemConverter.h"

#include "framework/core/ModificationWatcher.h"
#include "framework/core/NodeList.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <boost/make_shared.hpp>

#include <gmock/gmock.h>

#include <string>
#include <utility>

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

struct UnitSystemConverterTest : ::testing::Test {
    Core::Ptr<UnitSystemConverter> units = Core::MakeNode<UnitSystemConverter>();
    boost::shared_ptr<Lengths> lengths = boost::make_shared<Lengths>();
    qordebug::CaptureScope log{Utility::GetLogger()};
};

TEST_F(UnitSystemConverterTest, answersComeFromTheRegisteredConverterAndDependentsLearnOfIt) {
    struct Dependents : Core::NodeList<Core::Node> {};
    auto const dependents = Core::MakeNode<Dependents>();
    dependents->Add(units);
    Core::ModificationWatcher const watcher{Core::WeakPtr<Core::Node>(dependents)};
    units->RegisterConverter(lengths);
    EXPECT_TRUE(watcher.Modified());
    for (auto const& [source, dest] : {std::pair(L"m", L""), std::pair(L"", L"m"), std::pair(L"m", L"kg")})
        EXPECT_FALSE(units->AreConvertable(source, dest));
    EXPECT_EQ(units->ToUnit(L"m", L"ft")(2.0), 7.5);
    EXPECT_THAT(log.texts(), IsEmpty());
    EXPECT_EQ(units->ToUnit(L"m", L"kg"), (Converter{0.5, 1.0})) << "asked even though they do not fit";
    EXPECT_THAT(log.texts(), ElementsAre(StartsWith("\"AreConvertable(p_source, p_dest)\" - ")));
}

TEST_F(UnitSystemConverterTest, displayUnitsAreChecked) {
    units->RegisterConverter(lengths);
    EXPECT_EQ(units->GetDisplayUnit(Types::QuantityUnit(L"Length", L"m")), Types::QuantityUnit(L"Length", L"ft"));
    EXPECT_EQ(units->GetDisplayUnit(L"", L""), L"");
    EXPECT_THAT(log.texts(), IsEmpty());
    EXPECT_EQ(units->GetDisplayUnit(L"", L"m"), L"");
    EXPECT_EQ(units->GetDisplayUnit(L"Length", L""), L"");
    lengths->shown = L"kg";
    EXPECT_EQ(units->GetDisplayUnit(L"Length", L"m"), L"kg");
    auto const undefined = StartsWith("\"!(p_quantityType.empty() || p_unit.empty()) && \"The quantity or unit cannot "
                                      "be undefined.\"\" - ");
    EXPECT_THAT(log.texts(),
        ElementsAre(undefined, undefined,
            StartsWith("\"AreConvertable(p_unit, unit) && \"Quantity and unit not compatible\"\" - ")));
}

TEST_F(UnitSystemConverterTest, withoutAConverterEveryQuestionButEqualUnitsIsReportedAndAnswered) {
    EXPECT_EQ(units->ToUnit(L"m", L"m"), Converter{});
    EXPECT_THAT(log.texts(), IsEmpty());
    EXPECT_EQ(units->ToUnit(L"m", L"ft"), Converter{});
    EXPECT_FALSE(units->AreConvertable(L"m", L"ft"));
    EXPECT_EQ(units->GetDisplayUnit(L"Length", L"m"), L"m");
    EXPECT_EQ(units->GetDisplayUnit(Types::QuantityUnit(L"Length", L"m")), Types::QuantityUnit(L"Length", L"m"));
    EXPECT_EQ(log.texts().size(), 6U);
    EXPECT_THAT(log.texts(),
        ::testing::Each(
            ::testing::AnyOf(StartsWith("\"_converter\" - "), StartsWith("\"AreConvertable(p_source, p_dest)\" - "))));
}

} // namespace
} // namespace Qor::Chart::Render
