#include "render/context/DrawContext.h"

#include "render/context/AutoDiscontinuity.h"
#include "tests/render/DrawFixture.h"
#include "framework/model/Light.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Exception.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace Qor::Chart::Render {
namespace {

using namespace Ogl::Tokens;
using Fixtures::DrawFixture;
using Fixtures::RecordingDispatcher;
using ::testing::StartsWith;

class Root : public Vis {
public:
    explicit Root(int p_flags = VisFlagContextRoot | VisFlagSelfManaged) : Vis(p_flags) {}
    Core::WeakPtr<Model::ModelNode> SourceModel() const override { return {}; }
};

Types::Matrix4 Shift(double p_x) {
    return Types::Matrix4::Translation({p_x, 0, 0});
}

TEST(DrawContextTest, freshContextHasDefaultsAndTheLimitsOfTheGraphics) {
    DrawFixture fixture;
    DrawContext const context = fixture.MakeContext();
    EXPECT_EQ(context.Viewport().Top(), Types::Viewport<0>());
    EXPECT_TRUE(context.ModelView().Top().IsIdentity() && context.Camera().Top().IsIdentity() &&
        context.Projection().Top().IsIdentity());
    EXPECT_EQ(context.ProjectionMode().Top(), ProjectionMode::Orthographic);
    EXPECT_EQ(context.ClipPlanes().Top().Bound(), fixture.agl.GetMaxClipPlanes());
    EXPECT_EQ(context.StencilBits().Top().Bound(), fixture.agl.GetMaxStencilBits());
    EXPECT_EQ(context.Textures().Top().Bound(), fixture.agl.GetMaxTextures());
    EXPECT_EQ(context.ClipPlanes().Size(), 2U) << "the value with bound 0 stays underneath";
    for (std::size_t id = 0; id < 17; ++id)
        EXPECT_EQ(context.Damaged(id), id >= 8 && id <= 10) << id;
    EXPECT_FALSE(context.IsPerViewportDraw() || context.ShowBounds() || context.NodeFilter().Top());
    EXPECT_EQ(&context.GetHighlighter(), fixture.highlighter.get());
}

TEST(DrawContextTest, restoringAppliesViewportAndMatricesToTheGraphics) {
    struct Case {
        Types::Viewport<0> outer;
        bool isApplied;
        bool isReported;
    };
    for (Case const& c : {Case{{1, 2, 10, 5}, true, false}, Case{{0, 0, 0, 0}, false, false},
             Case{{0, 0, 10, 0}, false, true}, Case{{0, 0, -1, 5}, false, true}, Case{{0, 0, -1, -5}, false, false}}) {
        DrawFixture fixture;
        DrawContext context = fixture.MakeContext();
        Types::Viewport<0> const inner(0, 0, 7, 7);
        context.Viewport().Set(c.outer);
        context.ModelView().Set(Shift(1));
        context.Projection().Set(Shift(2));
        context.CreateCheckPoint();
        context.Viewport().Set(inner);
        context.ModelView().Set(Shift(3));
        context.Projection().Set(Shift(4));
        fixture.agl.Viewport(inner);
        qordebug::CaptureScope log(Utility::GetLogger());
        context.RestoreCheckPoint();
        EXPECT_EQ(fixture.agl.Current().viewport.rectangle.width, c.isApplied ? 10 : 7) << c.outer;
        EXPECT_EQ(fixture.agl.Get(AGL_MODELVIEW_MATRIX), Shift(1));
        EXPECT_EQ(fixture.agl.Get(AGL_PROJECTION_MATRIX), Shift(2));
        fixture.agl.LoadIdentity();
        EXPECT_TRUE(fixture.agl.Get(AGL_MODELVIEW_MATRIX).IsIdentity()) << "the mode is left at model-view";
        ASSERT_EQ(log.texts().size(), c.isReported ? 1U : 0U) << c.outer;
        for (std::string const& text : log.texts())
            EXPECT_THAT(text,
                StartsWith("WARNING: \"(p_viewport.width <= 0 && p_viewport.height <= 0) && \"Invalid "
                           "viewport defined which cannot be set in OpenGL state!\"\" - "));
    }
}

TEST(DrawContextTest, copiesCarryThePresentValuesAndNoHistory) {
    DrawFixture fixture;
    DrawContext source = fixture.MakeContext();
    auto const light = Core::MakeNode<Model::Light>();
    source.SetFrameNumber(7);
    source.SetShowBounds(true);
    source.CreateCheckPoint();
    source.ModelView().Set(Shift(1));
    source.CreateCheckPoint();
    source.ModelView().Set(Shift(2));
    source.Camera().Set(Shift(3));
    source.Lights().Set({light});
    source.NodeFilter().Set([](Core::Ptr<Vis> const&, bool&) { return true; });
    RecordingDispatcher other;
    DrawContext::DrawInfo info{DrawContext::DrawMode::Highlight, {}};
    info.flags[DrawContext::PerViewportDraw] = true;

    DrawContext plain(source);
    DrawContext const redirected(source, other);
    DrawContext const highlight(source, info);
    source.RestoreCheckPoint();
    source.RestoreCheckPoint();
    EXPECT_TRUE(source.ModelView().Top().IsIdentity());
    for (DrawContext const* const copy : {&std::as_const(plain), &redirected, &highlight}) {
        EXPECT_FALSE(copy->Damaged());
        EXPECT_EQ(copy->ModelView().Top(), Shift(2));
        EXPECT_EQ(copy->ModelView().Size() + copy->ClipPlanes().Size(), 2U);
        EXPECT_EQ(copy->ClipPlanes().Top(), source.ClipPlanes().Top());
        EXPECT_EQ(copy->Camera().Top(), Shift(3));
        EXPECT_EQ(copy->Lights().Top().front(), Core::WeakPtr<Model::Light>(light));
        EXPECT_TRUE(copy->NodeFilter().Top() && copy->ShowBounds() && copy->FrameNumber() == 7);
        EXPECT_EQ(&copy->Dispatcher() == &other, copy == &redirected);
        EXPECT_EQ(copy->IsPerViewportDraw(), copy == &highlight);
        EXPECT_EQ(copy->Mode(), copy == &highlight ? DrawContext::DrawMode::Highlight : DrawContext::DrawMode::Draw);
    }
    plain.CreateCheckPoint();
    plain.ModelView().Set(Shift(9));
    plain.RestoreCheckPoint();
    EXPECT_EQ(fixture.agl.Get(AGL_MODELVIEW_MATRIX), Shift(2)) << "a copy applies to the source's graphics";
}

TEST(DrawContextTest, shaderIsSharedByCopiesAndByTheContextsOfLaterFrames) {
    DrawFixture fixture;
    Utility::Scoped<Ogl::Agl> agl(fixture.handle);
    Ogl::Shader const* first = nullptr;
    {
        DrawContext const context = fixture.MakeContext();
        first = context.Shader().Top()(agl).get();
        ASSERT_NE(first, nullptr);
        EXPECT_EQ(DrawContext(context).Shader().Top()(agl).get(), first);
    }
    DrawContext const next = fixture.MakeContext();
    EXPECT_EQ(next.Shader().Top()(agl).get(), first);
    auto const changed = next.Shader().Top().With(Ogl::GenericShader::State(std::bitset<2>(2)));
    EXPECT_NE(changed(agl).get(), first);

    fixture.resource.SetShaderSource({Ogl::ShaderSource::Generic().Name(), "void Shade() {}", "void Surface() {}"});
    EXPECT_EQ(fixture.MakeContext().Shader().Top()(agl)->Source().Vertex(), "void Shade() {}");

    qordebug::CaptureScope log(Utility::GetLogger());
    EXPECT_EQ(DrawContext::GenericShaderEntry()(agl), nullptr);
    ASSERT_EQ(log.texts().size(), 1U);
    EXPECT_THAT(log.texts().front(), StartsWith("\"_factory\" - "));
}

TEST(DrawContextTest, missingHighlighterIsReported) {
    DrawFixture fixture;
    fixture.highlighter.reset();
    DrawContext const context = fixture.MakeContext();
    qordebug::CaptureScope log(Utility::GetLogger());
    (void)context.GetHighlighter().LineWidth();
    EXPECT_EQ(log.texts().size(), 1U);
}

TEST(AutoDiscontinuityTest, holdsAContextForTheNodesDispatcherWhileTheNodeIsOnTheStack) {
    DrawFixture fixture;
    auto const inner = boost::make_shared<RecordingDispatcher>();
    fixture.dispatcher.next = inner;
    DrawContext outer = fixture.MakeContext();
    auto const node = Core::MakeNode<Root>();
    ContextRootStack roots;
    {
        AutoDiscontinuity first(outer, roots, *node);
        EXPECT_EQ(roots.top(), Core::WeakPtr<Vis>(node));
        EXPECT_EQ(&first.CurrentDrawContext().Dispatcher(), inner.get());
        first.CurrentDrawContext().CreateCheckPoint();
        first.CurrentDrawContext().Camera().Set(Shift(1));

        AutoDiscontinuity second;
        second.TransferOwnershipFrom(first);
        EXPECT_TRUE(first.IsEmpty());
        EXPECT_EQ(roots.size(), 1U);
        EXPECT_EQ(second.CurrentDrawContext().Camera().Top(), Shift(1));
        EXPECT_EQ(second.CurrentDrawContext().Camera().Size(), 1U);
        EXPECT_EQ(inner.use_count(), 3);
    }
    EXPECT_TRUE(roots.empty());
    EXPECT_EQ(inner.use_count(), 2);
}

TEST(AutoDiscontinuityTest, misuseIsReportedAndSurvived) {
    DrawFixture fixture;
    DrawContext outer = fixture.MakeContext();
    auto const node = Core::MakeNode<Root>();
    ContextRootStack roots;
    qordebug::CaptureScope log(Utility::GetLogger());
    AutoDiscontinuity empty;
    EXPECT_THROW((void)empty.CurrentDrawContext(), Utility::Exception);
    AutoDiscontinuity one(outer, roots, *node);
    AutoDiscontinuity other(outer, roots, *node);
    one.TransferOwnershipFrom(other);
    EXPECT_EQ(roots.size(), 1U);
    ASSERT_EQ(log.texts().size(), 2U);
    EXPECT_THAT(log.texts()[0], StartsWith("\"_pending\" - "));
    EXPECT_THAT(log.texts()[1], StartsWith("\"!_pending\" - "));
}

} // namespace
} // namespace Qor::Chart::Render
