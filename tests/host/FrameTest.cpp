#include "host/FrameDriver.h"

#include "framework/model/Group.h"
#include "framework/model/SimpleObject.h"
#include "framework/ogl/RecorderBackend.h"
#include "host/HostError.h"
#include "host/Scene.h"

#include <gmock/gmock.h>

#include <string>

namespace Qor::Chart::Host {
namespace {

using Render::DrawContext;
using testing::HasSubstr;

Types::Viewport<0> const Window(0, 0, 200, 100);

/// A model node of the program's own, and the visual node that writes down in which passes it is drawn.
class Probe : public Model::ModelNode {};

class ProbeVis : public Render::Vis {
public:
    ProbeVis(Core::WeakPtr<Model::ModelNode> p_model, std::string& p_passes)
        : _model(std::move(p_model)), _passes(p_passes) {
        for (auto const hook : {Render::HandledDraw, Render::HandledHighlight, Render::HandledDrawOverlay,
                 Render::HandledHighlightOverlay, Render::HandledBoundingBox})
            RegisterCB(hook);
    }
    Core::WeakPtr<Model::ModelNode> SourceModel() const override { return _model; }

private:
    Types::BoundingBox_Base<double> DoBoundingBox(Types::BoundingBox_Base<double> const&) override {
        return {{-1, -1, -1}, {1, 1, 1}};
    }
    Render::DrawResult Note(DrawContext const& p_context, char const* p_pass) {
        _passes += p_pass + std::to_string(static_cast<int>(p_context.Mode()));
        EXPECT_EQ(p_context.Viewport().Top(), Window);
        EXPECT_TRUE(p_context.ModelView().Top().IsIdentity());
        Ogl::Agl const& agl = *p_context.Graphics().Get();
        EXPECT_EQ(agl.Get(Ogl::Tokens::AGL_PROJECTION_MATRIX), p_context.Projection().Top());
        return {};
    }
    Render::DrawResult DoDraw(DrawContext const& p_context) override { return Note(p_context, " base "); }
    Render::DrawResult DoHighlight(DrawContext const& p_context) override { return Note(p_context, " base "); }
    Render::DrawResult DoDrawOverlay(DrawContext const& p_context) override { return Note(p_context, " overlay "); }
    Render::DrawResult DoHighlightOverlay(DrawContext const& p_context) override {
        return Note(p_context, " overlay ");
    }

    Core::WeakPtr<Model::ModelNode> _model;
    std::string& _passes;
};

struct FrameTest : testing::Test {
    FrameTest() {
        scene.Factories().Register<Probe>([this](Core::Ptr<Model::ModelNode> const& p_model) {
            return Core::Ptr<Render::Vis>(Core::MakeNode<ProbeVis>(Core::WeakPtr<Model::ModelNode>(p_model), passes));
        });
    }

    template <class Parent>
    static Core::Ptr<Model::SimpleObject> AddCube(Parent& p_parent) {
        auto cube = Core::MakeNode<Model::SimpleObject>(Core::MakeNode<Model::Symbol>(Model::SymbolShape::Cube));
        p_parent.Add(cube);
        return cube;
    }
    void Frame() { driver.Frame(camera, Window); }

    std::string passes;
    Scene scene{std::make_unique<Ogl::RecorderBackend>()};
    FrameDriver driver{scene};
    Camera camera;
};

TEST_F(FrameTest, drawsTheFourPassesInOrderEachInItsMode) {
    scene.Add(Core::MakeNode<Probe>());
    Frame();
    EXPECT_EQ(passes, " base 0 base 2 overlay 0 overlay 2");
    EXPECT_EQ(driver.Statistics().Drawn(), 4U);
}

TEST_F(FrameTest, anUnchangedTreeCostsOneVisitAndAChangeOnlyItsPath) {
    auto const group = Core::MakeNode<Model::Group>();
    scene.Add(group);
    for (int i = 0; i < 50; ++i)
        AddCube(*group);
    auto const cube = AddCube(scene);
    cube->SetTransform(Types::Matrix4::Translation({10, 0, 0}));
    Frame();
    camera.Orbit(20, 0);
    Frame();
    EXPECT_EQ(driver.Statistics().visited, 1U);
    EXPECT_EQ(driver.Statistics().updated, 0U);
    EXPECT_EQ(driver.Statistics().Drawn(), 51U);
    EXPECT_EQ(scene.Bounds(), (Types::BoundingBox_Base<double>({-0.5, -0.5, -0.5}, {10.5, 0.5, 0.5})));
    EXPECT_EQ(scene.Parts().size(), 51U);
    cube->SetColor(Qt::red);
    Frame();
    EXPECT_EQ(driver.Statistics().visited, 3U) << "the root, the cube and the group beside it";
    EXPECT_EQ(driver.Statistics().updated, 1U);
}

TEST_F(FrameTest, emptyViewportsAndScenesDrawNothingAndLeaveTheStacksAlone) {
    auto const depths = scene.Graphics().Depths();
    for (auto const& [viewport, clears] : {std::pair(Types::Viewport<0>(), 0U), {Window, 2U}}) {
        driver.Frame(camera, viewport);
        EXPECT_EQ(driver.Statistics().graphics.clears, clears);
        EXPECT_EQ(driver.Statistics().graphics.drawCalls, 0U);
        EXPECT_EQ(scene.Graphics().Depths(), depths);
    }
    EXPECT_EQ(scene.Graphics().CheckError(), "");
}

TEST_F(FrameTest, aModelThatCannotBeShownIsOneSentenceAndChangesNothing) {
    auto const before = scene.Model();
    auto const outer = Core::MakeNode<Model::Group>();
    auto const inner = Core::MakeNode<Model::Group>();
    outer->SetName("snake");
    outer->Add(inner);
    inner->Add(outer);
    class Stranger : public Model::ModelNode {};
    for (auto const& [root, part] : {std::pair(Core::Ptr<Model::ModelNode>(), "needs a model node"),
             {Core::MakeNode<Stranger>(), "no factory"}, {outer, "\"snake\" contains itself"}}) {
        try {
            scene.SetModel(root);
            ADD_FAILURE() << part;
        } catch (HostError const& error) {
            EXPECT_THAT(error.what(), HasSubstr(part));
        }
        EXPECT_EQ(scene.Model(), before);
    }
    inner->Remove(*outer);
    scene.SetModel(outer);
    Frame();
    EXPECT_EQ(driver.Statistics().visited, 2U);
}

} // namespace
} // namespace Qor::Chart::Host
