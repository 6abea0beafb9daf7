#include "host/CameraNode.h"

#include "host/FrameDriver.h"
#include "host/Picker.h"
#include "host/Scene.h"
#include "framework/model/Pane.h"
#include "framework/model/SceneGraph.h"
#include "framework/model/SimpleObject.h"
#include "framework/ogl/RecorderBackend.h"

#include <gtest/gtest.h>

namespace Qor::Chart::Host {
namespace {

using View = Camera::View;

TEST(CameraNodeTest, panesOfOneSceneAreSeenFromElsewhere) {
    Scene scene(std::make_unique<Ogl::RecorderBackend>(Ogl::RecorderBackend::Keep::Counters));
    auto const content = Core::MakeNode<Model::SceneGraph>();
    auto const cube = Core::MakeNode<Model::Symbol>(Model::SymbolShape::Cube);
    std::pair<View, Types::Vector3_Base<double>> const places[] = {{View::Front, {50, 0, 3}}, {View::Right, {53, 0, 0}},
        {View::Top, {50, 3, 0}}, {View::Back, {50, 0, -3}}, {View::Left, {47, 0, 0}}, {View::Bottom, {50, -3, 0}}};
    for (auto const& [view, place] : places) {
        auto const object = Core::MakeNode<Model::SimpleObject>(cube);
        object->SetTransform(Types::Matrix4::Translation(place));
        content->Add(object);
    }
    Types::Viewport<0> const window(0, 0, 960, 600);
    std::vector<Core::Ptr<CameraNode>> nodes;
    for (int i = 0; i < 6; ++i) {
        auto const pane = Core::MakeNode<Model::Pane>();
        pane->SetViewport({i / 6.0, 0.0, 1 / 6.0, 0.5});
        pane->Add(content);
        nodes.push_back(Core::MakeNode<CameraNode>());
        nodes.back()->Add(pane);
        scene.Add(nodes.back());
    }
    FrameDriver(scene).Update();
    EXPECT_FALSE(scene.Bounds().IsDefined()) << "what is in panes is not in the window's own view";
    for (std::size_t i = 0; i < 6; ++i) {
        Camera camera;
        camera.SetProjectionMode(Render::ProjectionMode::Orthographic);
        camera.Look(places[i].first);
        Render::Vis const& vis = **std::next(scene.Visual()->begin(), static_cast<std::ptrdiff_t>(i));
        camera.Fit((*vis.begin())->BoundingBox(), {0, 0, 160, 300});
        nodes[i]->SetCamera(camera);
    }
    Picker picker(scene);
    for (int i = 0; i < 6; ++i) {
        auto const hits = picker.Pick(Camera(), window, {{80 + 160 * i, 150}, {1, 1}});
        ASSERT_FALSE(hits.empty());
        EXPECT_EQ(hits.front().node.Peek()->SourceModel().Peek(), std::next(content->begin(), i)->Get());
        EXPECT_TRUE(picker.Pick(Camera(), window, {{3 + 160 * i, 150}, {1, 1}}).empty());
        EXPECT_TRUE(picker.Pick(Camera(), window, {{80 + 160 * i, 299}, {1, 1}}).empty());
    }
    EXPECT_EQ(CloneOf(*nodes[2])->GetCamera().Elevation(), 90);
}

} // namespace
} // namespace Qor::Chart::Host
