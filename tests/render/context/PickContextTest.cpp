#include "render/context/PickContext.h"

#include "tests/render/DrawFixture.h"

#include <gtest/gtest.h>

namespace Qor::Chart::Render {
namespace {

using Point = Types::Vector3_Base<double>;

TEST(PickContextTest, rayAndVolumeGoThroughThePointInTheWindowAndAPartHasItsOwnCoordinates) {
    using Side = Types::Frustum_Base<double>::Side;
    Fixtures::DrawFixture fixture;
    DrawContext context = fixture.MakeContext();
    context.Viewport().Set({100, 50, 200, 100});
    PickContext const pick(context, {{10, 20}, {3, 4}}, PickContext::PickHint::Node);
    EXPECT_LT(Types::Length(pick.PickRay().origin - Point(-.9, -.6, -1)), 1e-12) << "pixel (110, 70) on (100, 50)";
    EXPECT_NEAR(pick.Frustum().Plane(Side::Left).w, .9 + .03, 1e-6);
    EXPECT_NEAR(pick.Frustum().Plane(Side::Right).w, -.9 + .03, 1e-6);

    PickContext const part(
        context, Types::Matrix4::Translation({1, 0, 0}), {{10, 20}, {3, 4}}, PickContext::PickHint::Element);
    EXPECT_LT(Types::Length(part.PickRay().origin - Point(-1.9, -.6, -1)), 1e-12);
    PickContext const wide = part.Expand(context, 2.5);
    EXPECT_EQ(wide.Point(), (PickPoint{{10, 20}, {5, 6}}));
    EXPECT_LT(Types::Length(wide.PickRay().origin - Point(-.9, -.6, -1)), 1e-12);
}

} // namespace
} // namespace Qor::Chart::Render
