#include "render/context/UpdateContext.h"

#include "render/context/SceneCapabilities.h"
#include "render/core/Registrar.h"
#include "render/loops/Generator.h"
#include "render/units/UnitSystemConverter.h"
#include "tests/render/DrawFixture.h"
#include "framework/library/SymbolRegistry.h"

#include <gtest/gtest.h>

namespace Qor::Chart::Render {
namespace {

TEST(UpdateContextTest, copyStartsAtThePresentSpatialDomain) {
    Fixtures::DrawFixture fixture;
    Registrar registrar;
    Library::SymbolRegistry const symbols;
    Generator const generator;
    auto const units = Core::MakeNode<UnitSystemConverter>();
    UpdateContext context(fixture.handle, fixture.resource, fixture.imageCache, fixture.schema, fixture.numberFormat,
        registrar, fixture.geometry, symbols, generator, fixture.dispatcher, units, Core::Verbosity::Normal,
        fixture.capabilities);
    EXPECT_FALSE(context.SpatialDomain().Top());
    EXPECT_EQ(&context.Registrar(), &registrar);
    EXPECT_EQ(&context.ImageCache(), &fixture.imageCache);
    EXPECT_EQ(UpdateContext::CameraLengthUnit, Types::QuantityUnit(L"Length", L"m"));

    context.CreateCheckPoint();
    context.SpatialDomain().Set(Types::UniformSpatialDomain({L"Length", L"ft"}));
    context.SpatialDomain().Set(Types::UniformSpatialDomain({L"Length", L"m"}, 2.0));
    EXPECT_EQ(context.SpatialDomain().Size(), 2U);
    {
        UpdateContext copy(context);
        EXPECT_EQ(units->ReferenceCount(), 3U);
        EXPECT_FALSE(copy.Damaged());
        EXPECT_EQ(copy.SpatialDomain().Size(), 1U);
        copy.CreateCheckPoint();
        copy.SpatialDomain().Set(boost::none);
        copy.RestoreCheckPoint();
        EXPECT_EQ(copy.SpatialDomain().Top()->Scale(), 2.0);
    }
    context.RestoreCheckPoint();
    EXPECT_FALSE(context.SpatialDomain().Top());
}

TEST(SceneCapabilitiesTest, animationsAreOnWhenSwitchedOnAndNobodySuppressesThem) {
    SceneCapabilities capabilities;
    EXPECT_TRUE(capabilities.AnimationsOn());
    capabilities.Suppress(SceneCapabilities::SuppressionDrag);
    capabilities.Suppress(SceneCapabilities::SuppressionHidden);
    capabilities.Resume(SceneCapabilities::SuppressionDrag);
    EXPECT_FALSE(capabilities.AnimationsOn());
    capabilities.Resume(SceneCapabilities::SuppressionHidden);
    EXPECT_TRUE(capabilities.AnimationsOn());
    capabilities.animations = false;
    EXPECT_FALSE(capabilities.AnimationsOn());
}

} // namespace
} // namespace Qor::Chart::Render
