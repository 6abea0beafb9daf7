#include "render/units/UnitSystemConverter.h"

#include "framework/core/ModificationWatcher.h"
#include "framework/core/NodeList.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <boost/make_shared.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

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
        ++asked;
        p_factor = p_dest == L"ft" ? 3.25 : 0.5;
        p_offset = 1.0;
    }
    std::wstring GetDisplayUnit(std::wstring const&, std::wstring const&) override { return shown; }

    mutable int asked = 0;
    std::wstring shown = L"ft";
};

/// A dependent that keeps the kinds of the changes it sees.
class Dependent : public Core::NodeList<Core::Node> {
public:
    void TouchThis(ModifiableType p_type, Change p_change, Relationship p_relationship,
        Core::WeakPtr<Core::Node> const& p_node, std::string const& p_name, boost::any const& p_data) override {
        if (p_relationship == RelationshipDirect)
            kinds.push_back(p_type);
        NodeList::TouchThis(p_type, p_change, p_relationship, p_node, p_name, p_data);
    }
    std::vector<int> kinds;
};

struct UnitSystemConverterTest : ::testing::Test {
    Core::Ptr<UnitSystemConverter> units = Core::MakeNode<UnitSystemConverter>();
    boost::shared_ptr<Lengths> lengths = boost::make_shared<Lengths>();
    qordebug::CaptureScope log{Utility::GetLogger()};
};

TEST_F(UnitSystemConverterTest, registeringAConverterTellsTheDependents) {
    auto const dependent = Core::MakeNode<Dependent>();
    dependent->Add(units);
    dependent->kinds.clear();
    units->RegisterConverter(lengths);
    EXPECT_THAT(dependent->kinds, ElementsAre(5));
}

TEST_F(UnitSystemConverterTest, equalUnitsNeedNoConverter) {
    EXPECT_EQ(units->ToUnit(L"m", L"m"), Converter{});
    EXPECT_THAT(log.texts(), IsEmpty());
    EXPECT_TRUE(units->AreConvertable(L"", L""));
    EXPECT_THAT(log.texts(), ElementsAre(StartsWith("\"_converter\" - "))) << "this question is for a converter";
}

TEST_F(UnitSystemConverterTest, convertibilityAndFactorsComeFromTheRegisteredConverter) {
    units->RegisterConverter(lengths);
    struct Case {
        wchar_t const* source;
        wchar_t const* dest;
        bool isConvertible;
    };
    for (Case const& c : {Case{L"m", L"ft", true}, Case{L"m", L"", false}, Case{L"", L"m", false},
             Case{L"m", L"kg", false}, Case{L"kg", L"kg", true}})
        EXPECT_EQ(units->AreConvertable(c.source, c.dest), c.isConvertible);
    Converter const toFeet = units->ToUnit(L"m", L"ft");
    EXPECT_EQ(toFeet, (Converter{3.25, 1.0}));
    EXPECT_EQ(toFeet(2.0), 7.5);
    EXPECT_THAT(log.texts(), IsEmpty());
    EXPECT_EQ(units->ToUnit(L"m", L"kg"), (Converter{0.5, 1.0})) << "asked even though they do not fit";
    EXPECT_THAT(log.texts(), ElementsAre(StartsWith("\"AreConvertable(p_source, p_dest)\" - ")));
    lengths->asked = 0;
    (void)units->ToUnit(Types::QuantityUnit(L"Length", L"m"), Types::QuantityUnit(L"Length", L"m"));
    EXPECT_EQ(lengths->asked, 1) << "quantities are always asked for";
}

TEST_F(UnitSystemConverterTest, displayUnitsAreChecked) {
    units->RegisterConverter(lengths);
    EXPECT_EQ(units->GetDisplayUnit(L"Length", L"m"), L"ft");
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
            StartsWith("\"AreConvertable(p_unit, unit) && \"Quantity and unit not compatible\"\" "
                       "- ")));
}

TEST_F(UnitSystemConverterTest, withoutAConverterEveryQuestionIsReportedAndAnswered) {
    EXPECT_EQ(units->ToUnit(L"m", L"ft"), Converter{});
    EXPECT_FALSE(units->AreConvertable(L"m", L"ft"));
    EXPECT_EQ(units->GetDisplayUnit(L"Length", L"m"), L"m");
    EXPECT_EQ(units->GetDisplayUnit(Types::QuantityUnit(L"Length", L"m")), Types::QuantityUnit(L"Length", L"m"));
    EXPECT_EQ(log.texts().size(), 4U);
    for (std::string const& text : log.texts())
        EXPECT_THAT(text, StartsWith("\"_converter\" - "));
}

} // namespace
} // namespace Qor::Chart::Render
