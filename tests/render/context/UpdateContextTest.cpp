#include "render/context/UpdateContext.h"

#include "tests/render/nodes/SceneFixture.h"

#include <gtest/gtest.h>

namespace Qor::Chart::Render {
namespace {

TEST(UpdateContextTest, copyStartsAtThePresentSpatialDomain) {
    Fixtures::SceneFixture fixture;
    UpdateContext context = fixture.MakeUpdateContext();
    context.CreateCheckPoint();
    context.SpatialDomain().Set(Types::UniformSpatialDomain({L"Length", L"m"}, 2.0));
    {
        UpdateContext copy(context);
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

} // namespace
} // namespace Qor::Chart::Render
