#include "host/FrameDriver.h"

#include "framework/model/Group.h"
#include "framework/model/SimpleObject.h"
#include "framework/ogl/RecorderBackend.h"
#include "host/HostError.h"
#include "host/Scene.h"

#include <gmock/gmock.h>

#include <functional>

namespace Qor::Chart::Host {
namespace {

using Render::DrawContext;
using testing::ElementsAre;
using testing::HasSubstr;

Types::Viewport<0> const Window(0, 0, 200, 100);

/// A model node of the program's own, and the visual node that writes down what is asked of it.
class Probe : public Model::ModelNode {};

struct Notes {
    std::vector<std::string> calls;
    std::vector<Types::Matrix4> projections;
    std::function<void()> onUpdate;
};

class ProbeVis : public Render::Vis {
public:
    ProbeVis(Core::Ptr<Model::ModelNode> const& p_model, Notes& p_notes) : _model(*this, "model"), _notes(p_notes) {
        _model.Attach(p_model);
        for (auto const hook : {Render::HandledUpdate, Render::HandledDraw, Render::HandledHighlight,
                 Render::HandledDrawOverlay, Render::HandledHighlightOverlay, Render::HandledBoundingBox})
            RegisterCB(hook);
    }
    Core::WeakPtr<Model::ModelNode> SourceModel() const override { return _model.Get(); }

private:
    Render::NodeStatus DoUpdate(Render::UpdateContext const&) override {
        _notes.calls.emplace_back("update");
        if (_notes.onUpdate)
            _notes.onUpdate();
        return Render::NodeStatusOk;
    }
    Types::BoundingBox_Base<double> DoBoundingBox(Types::BoundingBox_Base<double> const&) override {
        return {{-1, -1, -1}, {1, 1, 1}};
    }
    Render::DrawResult Note(DrawContext const& p_context, char const* p_pass) {
        _notes.calls.push_back(p_pass + std::to_string(static_cast<int>(p_context.Mode())));
        _notes.projections.push_back(p_context.Projection().Top());
        EXPECT_EQ(p_context.Viewport().Top(), Window);
        EXPECT_TRUE(p_context.ModelView().Top().IsIdentity());
        Ogl::Agl const& agl = *p_context.Graphics().Get();
        EXPECT_EQ(agl.Get(Ogl::Tokens::AGL_PROJECTION_MATRIX), p_context.Projection().Top());
        return {};
    }
    Render::DrawResult DoDraw(DrawContext const& p_context) override { return Note(p_context, "base draw "); }
    Render::DrawResult DoHighlight(DrawContext const& p_context) override { return Note(p_context, "base highlight "); }
    Render::DrawResult DoDrawOverlay(DrawContext const& p_context) override { return Note(p_context, "overlay draw "); }
    Render::DrawResult DoHighlightOverlay(DrawContext const& p_context) override {
        return Note(p_context, "overlay highlight ");
    }

    Core::WeakRef<Probe> _model;
    Notes& _notes;
};

struct FrameTest : testing::Test {
    FrameTest() {
        scene.Factories().Register<Probe>([this](Core::Ptr<Model::ModelNode> const& p_model) {
            return Core::Ptr<Render::Vis>(new ProbeVis(p_model, notes));
        });
    }

    template <class Parent>
    static Core::Ptr<Model::SimpleObject> AddCube(Parent& p_parent) {
        auto cube = Core::MakeNode<Model::SimpleObject>(Core::MakeNode<Model::Symbol>(Model::SymbolShape::Cube));
        p_parent.Add(cube);
        return cube;
    }
    void Frame() { driver.Frame(camera, Window); }

    Notes notes;
    Scene scene{std::make_unique<Ogl::RecorderBackend>()};
    FrameDriver driver{scene};
    Camera camera;
};

TEST_F(FrameTest, runsUpdateThenTheFourPassesInOrderEachInItsMode) {
    scene.Add(Core::MakeNode<Probe>());
    Frame();
    EXPECT_THAT(
        notes.calls, ElementsAre("update", "base draw 0", "base highlight 2", "overlay draw 0", "overlay highlight 2"));
    EXPECT_THAT(notes.projections, testing::Each(driver.SceneToDevice()));
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

TEST_F(FrameTest, listenersMayEditTheModel) {
    auto const probe = Core::MakeNode<Probe>();
    scene.Add(probe);
    notes.onUpdate = [&] {
        scene.Dispatcher().DispatchEvent(
            Core::WeakPtr<Model::ModelNode>(probe), std::make_shared<Model::Events::PickedArgs>(probe));
    };
    auto const connection = probe->Delegate().Connect<Model::Events::PickedArgs>([&](auto const&) { AddCube(scene); });
    Frame();
    EXPECT_EQ(scene.Visual()->Size(), 1U) << "delivered after the traversal";
    scene.Model()->Remove(*probe);
    AddCube(scene);
    Frame();
    EXPECT_EQ(scene.Visual()->Size(), 2U);
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
