#include "render/context/DrawContext.h"

#include "tests/render/DrawFixture.h"

#include <gtest/gtest.h>

namespace Qor::Chart::Render {
namespace {

using namespace Ogl::Tokens;

Types::Matrix4 Shift(double p_x) {
    return Types::Matrix4::Translation({p_x, 0, 0});
}

TEST(DrawContextTest, restoringAppliesViewportAndMatricesToTheGraphicsAlsoThroughACopy) {
    Types::Viewport<0> const inner(0, 0, 7, 7), outer(1, 2, 10, 5);
    Fixtures::DrawFixture fixture;
    DrawContext source = fixture.MakeContext();
    for (auto const& [viewport, expected] : {std::pair(outer, outer), {{0, 0, 0, 0}, inner}}) {
        source.Viewport().Set(viewport);
        source.ModelView().Set(Shift(1));
        source.Projection().Set(Shift(2));
        DrawContext context(source);
        context.CreateCheckPoint();
        context.Viewport().Set(inner);
        context.ModelView().Set(Shift(3));
        context.Projection().Set(Shift(4));
        fixture.agl.Viewport(inner);
        context.RestoreCheckPoint();
        EXPECT_EQ(fixture.agl.Current().viewport.rectangle.width, expected.width);
        EXPECT_EQ(fixture.agl.Get(AGL_PROJECTION_MATRIX), Shift(2));
        fixture.agl.MultMatrix(Shift(5));
        EXPECT_EQ(fixture.agl.Get(AGL_MODELVIEW_MATRIX), Shift(6)) << "the mode is left at model-view";
    }
}

} // namespace
} // namespace Qor::Chart::Render
