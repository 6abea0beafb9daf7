#include "framework/types/Color4f.h"
#include "framework/types/Math.h"
#include "framework/types/QuantityUnit.h"
#include "framework/types/Schema.h"
#include "framework/types/TextureUnit.h"
#include "framework/types/UniformSpatialDomain.h"
#include "framework/types/UnitsConverter.h"
#include "framework/types/Vector2.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>

namespace {

using namespace Qor::Chart::Types;

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

template <class T>
std::string Printed(T const& p_value) {
    std::ostringstream stream;
    stream << p_value;
    return stream.str();
}

TEST(MathTest, clampAlwaysGivesAValueInRange) {
    EXPECT_EQ(Math::Clamp<float>(std::numeric_limits<float>::quiet_NaN(), 0.0F, 1.0F), 0.0F);
    EXPECT_EQ(Math::Clamp<float>(std::numeric_limits<float>::infinity(), 0.0F, 1.0F), 1.0F);
    EXPECT_EQ(Math::Clamp<float>(-1.0F, 0.0F, 1.0F), 0.0F);
    EXPECT_EQ(Math::Clamp<float>(0.5F, 0.0F, 1.0F), 0.5F);
    EXPECT_EQ(Math::Clamp<int>(7, 0, 5), 5);
}

TEST(MathTest, truncateSaturates) {
    EXPECT_EQ(Math::Truncate(-2.9), -2);
    EXPECT_EQ(Math::Truncate(1e30), std::numeric_limits<int>::max());
    EXPECT_EQ(Math::Truncate(-1e30), std::numeric_limits<int>::min());
    EXPECT_EQ(Math::Truncate(NaN), 0);
}

TEST(VectorTest, normalizedHasLengthOneOrNone) {
    using Vector = Vector3_Base<double>;
    EXPECT_NEAR(Length(Normalized(Vector(1e-200, 1e-200, 0))), 1, 1e-12);
    EXPECT_NEAR(Length(Normalized(Vector(1e200, -1e200, 1e200))), 1, 1e-12);
    EXPECT_EQ(Normalized(Vector()), Vector());
    EXPECT_EQ(Normalized(Vector(NaN, 1, 0)), Vector());
    EXPECT_EQ(Cross(Vector(1, 0, 0), Vector(0, 1, 0)), Vector(0, 0, 1));
    EXPECT_EQ(2.0 * Vector(1, 2, 3) - Vector(1, 1, 1) / 2.0, Vector(1.5, 3.5, 5.5));
    EXPECT_EQ(Printed(Vector2_Base<int>(1, -2)) + Printed(Vector4_Base<float>(1, 2, 3, 0.5F)), "(1, -2)(1, 2, 3, 0.5)");
}

TEST(Color4fTest, convertsFromAndToAnyColor) {
    EXPECT_EQ(Color4f(QColor()), Color4f(0, 0, 0, 1));
    EXPECT_EQ(Color4f(QColor::fromHsv(120, 255, 255)), Color4f(0, 1, 0, 1));
    QColor const color(10, 20, 30, 40);
    EXPECT_EQ(Color4f(color).ToQColor().rgba(), color.rgba());
    EXPECT_EQ(Color4f(2, -1, std::numeric_limits<float>::quiet_NaN(), 1).ToQColor().rgba(), QColor(255, 0, 0).rgba());
}

TEST(TextureUnitTest, everyFieldCountsInComparison) {
    TextureUnit const fresh;
    EXPECT_EQ(fresh, TextureUnit());
    auto const changed = [&](auto p_change) {
        TextureUnit unit;
        p_change(unit);
        return unit != fresh;
    };
    EXPECT_TRUE(changed([](TextureUnit& p_unit) { p_unit.enabled = true; }));
    EXPECT_TRUE(changed([](TextureUnit& p_unit) { p_unit.combineAlpha.scale = 2; }));
    EXPECT_TRUE(changed([](TextureUnit& p_unit) { p_unit.combineRgb.sources[2] = TextureUnit::Source::Previous; }));
    EXPECT_TRUE(changed([](TextureUnit& p_unit) { p_unit.matrix = Matrix4::Scaling(2); }));
    EXPECT_TRUE(fresh.NeedsMipmaps());
    EXPECT_EQ(Printed(fresh),
        "disabled, texture 0, modulate, filters nearest-mipmap-linear and linear, wraps repeat and repeat");
}

TEST(SchemaTest, defaultsAreReadableAndEveryFieldPrints) {
    Schema const schema;
    EXPECT_EQ(schema.titleBarHeight, 20);
    EXPECT_EQ(schema, Schema());
    EXPECT_NE(schema, Schema::Dark());
    for (Schema const& each : {schema, Schema::Dark()}) {
        EXPECT_GT(std::abs(each.textColor.lightness() - each.clearColor.lightness()), 128);
        EXPECT_GT(each.titleColor.lightness(), 128) << "titles are black";
    }
    EXPECT_NE(Printed(schema).find("clear: #ffffffff"), std::string::npos);
}

TEST(UniformSpatialDomainTest, rangesAreOrderedAndFinite) {
    using Axis = UniformSpatialDomain::Axis;
    UniformSpatialDomain domain(QuantityUnit(L"Length", L"m"), 2);
    EXPECT_TRUE(domain.SetRange(Axis::X, 5, -1));
    EXPECT_EQ(domain.GetRange(Axis::X).low, -1);
    EXPECT_EQ(domain.GetRange(Axis::X).Length(), 6);
    EXPECT_FALSE(domain.Ranges().IsDefined());
    EXPECT_EQ(Printed(domain), "Length [m], scale 2, x -1 to 5, y undefined, z undefined");
    EXPECT_FALSE(domain.SetRange(Axis::X, NaN, 1));
    EXPECT_FALSE(domain.GetRange(Axis::X).IsDefined());

    BoundingBox_Base<double> const box({0, 1, 2}, {3, 4, 5});
    domain.SetRanges(box);
    EXPECT_EQ(domain.Ranges(), box);
    domain.SetRanges({});
    EXPECT_EQ(domain, UniformSpatialDomain(QuantityUnit(L"Length", L"m"), 2));
    for (double const scale : {0.0, -1.0, NaN, std::numeric_limits<double>::infinity()}) {
        EXPECT_FALSE(domain.SetScale(scale));
    }
    EXPECT_EQ(domain.ToDomain(domain.ToScene({1, 2, 3})), (Vector3_Base<double>(1, 2, 3)));
}

class MetricConverter : public UnitsConverter {
public:
    using UnitsConverter::AreConvertable;
    using UnitsConverter::GetConversionFactors;
    using UnitsConverter::GetDisplayUnit;

    bool AreConvertable(std::wstring const& p_source, std::wstring const& p_dest) const override {
        return p_source == L"km" && p_dest == L"m";
    }
    void GetConversionFactors(std::wstring const&, std::wstring const&, double& p_factor, double&) const override {
        p_factor = 1000;
    }
    std::wstring GetDisplayUnit(std::wstring const& p_quantityType, std::wstring const&) override {
        return p_quantityType == L"Length" ? L"m" : L"";
    }
};

TEST(UnitsConverterTest, quantityUnitsGoByTheirUnit) {
    MetricConverter converter;
    QuantityUnit const kilometres(L"Length", L"km");
    QuantityUnit const metres(L"Length", L"m");
    EXPECT_TRUE(converter.AreConvertable(kilometres, metres));
    EXPECT_FALSE(converter.AreConvertable(metres, kilometres));
    double factor = 1;
    double offset = 0;
    converter.GetConversionFactors(kilometres, metres, factor, offset);
    EXPECT_EQ(factor, 1000);
    EXPECT_EQ(converter.GetDisplayUnit(kilometres), metres);
    EXPECT_LT(kilometres, metres);
    EXPECT_EQ(Printed(QuantityUnit(L"Temperature", L"\u00b0C")), "Temperature [\u00b0C]");
}

} // namespace
