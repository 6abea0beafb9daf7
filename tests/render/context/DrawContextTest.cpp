#include "render/context/DrawContext.h"

#include "tests/render/DrawFixture.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>

namespace Qor::Chart::Render {
namespace {

using namespace Ogl::Tokens;
using Fixtures::RecordingDispatcher;
using ::testing::StartsWith;

Types::Matrix4 Shift(double p_x) {
    return Types::Matrix4::Translation({p_x, 0, 0});
}

struct DrawContextTest : ::testing::Test {
    Fixtures::DrawFixture fixture;
    DrawContext context = fixture.MakeContext();
};

TEST_F(DrawContextTest, restoringAppliesViewportAndMatricesToTheGraphics) {
    Types::Viewport<0> const inner(0, 0, 7, 7);
    for (auto const& [viewport, isReported] : {std::pair(Types::Viewport<0>(1, 2, 10, 5), false), {{0, 0, 0, 0}, false},
             {{0, 0, 10, 0}, true}, {{0, 0, -1, 5}, true}}) {
        DrawContext outer(context);
        outer.Viewport().Set(viewport);
        outer.ModelView().Set(Shift(1));
        outer.Projection().Set(Shift(2));
        outer.CreateCheckPoint();
        outer.Viewport().Set(inner);
        outer.ModelView().Set(Shift(3));
        outer.Projection().Set(Shift(4));
        fixture.agl.Viewport(inner);
        qordebug::CaptureScope warnings(Utility::GetLogger());
        outer.RestoreCheckPoint();
        EXPECT_EQ(fixture.agl.Current().viewport.rectangle.width, viewport.height == 5 && !isReported ? 10 : 7);
        EXPECT_EQ(fixture.agl.Get(AGL_PROJECTION_MATRIX), Shift(2));
        fixture.agl.MultMatrix(Shift(5));
        EXPECT_EQ(fixture.agl.Get(AGL_MODELVIEW_MATRIX), Shift(6)) << "the mode is left at model-view";
        EXPECT_EQ(warnings.texts().size(), isReported ? 1U : 0U) << viewport;
        EXPECT_THAT(warnings.texts(),
            ::testing::Each(StartsWith("WARNING: \"(p_viewport.width <= 0 && p_viewport.height <= 0) && \"Invalid "
                                       "viewport defined which cannot be set in OpenGL state!\"\" - ")));
    }
}

TEST_F(DrawContextTest, copiesCarryThePresentValuesAndNoHistory) {
    context.SetShowBounds(true);
    context.CreateCheckPoint();
    context.ModelView().Set(Shift(1));
    context.CreateCheckPoint();
    context.ModelView().Set(Shift(2));
    context.NodeFilter().Set([](Core::Ptr<Vis> const&, bool&) { return true; });
    RecordingDispatcher other;

    DrawContext plain(context);
    DrawContext const redirected(context, other);
    DrawContext const highlight(context, {DrawContext::DrawMode::Highlight, {}});
    context.RestoreCheckPoint();
    context.RestoreCheckPoint();
    for (DrawContext const* const copy : {&std::as_const(plain), &redirected, &highlight}) {
        EXPECT_FALSE(copy->Damaged());
        EXPECT_EQ(copy->ModelView().Top(), Shift(2));
        EXPECT_EQ(copy->ModelView().Size() + copy->ClipPlanes().Size(), 2U);
        EXPECT_EQ(copy->ClipPlanes().Top().Bound(), fixture.agl.GetMaxClipPlanes());
        EXPECT_TRUE(copy->NodeFilter().Top() && copy->ShowBounds());
        EXPECT_EQ(&copy->Dispatcher() == &other, copy == &redirected);
        EXPECT_EQ(copy->Mode(), copy == &highlight ? DrawContext::DrawMode::Highlight : DrawContext::DrawMode::Draw);
    }
    plain.CreateCheckPoint();
    plain.ModelView().Set(Shift(9));
    plain.RestoreCheckPoint();
    EXPECT_EQ(fixture.agl.Get(AGL_MODELVIEW_MATRIX), Shift(2)) << "a copy applies to the source's graphics";
}

TEST_F(DrawContextTest, shaderIsSharedByCopiesAndByTheContextsOfLaterFrames) {
    Utility::Scoped<Ogl::Agl> agl(fixture.handle);
    Ogl::Shader const* const first = context.Shader().Top()(agl).get();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(DrawContext(context).Shader().Top()(agl).get(), first);
    EXPECT_EQ(fixture.MakeContext().Shader().Top()(agl).get(), first);
    EXPECT_NE(context.Shader().Top().With(Ogl::GenericShader::State(std::bitset<2>(2)))(agl).get(), first);
}

} // namespace
} // namespace Qor::Chart::Render
