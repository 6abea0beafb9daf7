#include "render/context/PickContext.h"

#include "tests/render/DrawFixture.h"

#include <gtest/gtest.h>

namespace Qor::Chart::Render {
namespace {

using Hint = PickContext::PickHint;
using Point = Types::Vector3_Base<double>;

struct PickContextTest : ::testing::Test {
    PickContextTest() { context.Viewport().Set({100, 50, 200, 100}); }
    Fixtures::DrawFixture fixture;
    DrawContext context = fixture.MakeContext();
};

TEST_F(PickContextTest, rayAndVolumeGoThroughThePointInTheWindow) {
    using Side = Types::Frustum_Base<double>::Side;
    for (auto const& [tolerance, half] :
        {std::pair(Types::Size(3, 4), 3), {Types::Size(0, 0), 1}, {Types::Size(-5, -1), 1}}) {
        PickContext const pick(context, {{10, 20}, tolerance}, Hint::Node);
        EXPECT_LT(Types::Length(pick.PickRay().origin - Point(-.9, -.6, -1)), 1e-12) << "pixel (110, 70) on (100, 50)";
        EXPECT_NEAR(pick.Frustum().Plane(Side::Left).w, .9 + half / 100.0, 1e-6);
        EXPECT_NEAR(pick.Frustum().Plane(Side::Right).w, -.9 + half / 100.0, 1e-6);
    }
}

TEST_F(PickContextTest, aPartHasItsOwnCoordinatesAndExpandingLeavesThem) {
    context.ModelView().Set(Types::Matrix4::Scaling({2, 2, 2}));
    PickContext const part(context, Types::Matrix4::Translation({1, 0, 0}), {{10, 20}, {3, 4}}, Hint::Element);
    EXPECT_LT(Types::Length(part.PickRay().origin - Point(-1.45, -.3, -.5)), 1e-12);
    PickContext const wide = part.Expand(context, 2.5);
    EXPECT_EQ(wide.Point(), (PickPoint{{10, 20}, {5, 6}}));
    EXPECT_EQ(wide.Hint(), Hint::Element);
    EXPECT_LT(Types::Length(wide.PickRay().origin - Point(-.45, -.3, -.5)), 1e-12);
    EXPECT_EQ(part.Expand(context, -10).Point().tolerance, Types::Size(-7, -6));
}

} // namespace
} // namespace Qor::Chart::Render
