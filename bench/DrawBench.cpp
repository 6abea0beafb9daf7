#include "bench/Measurement.h"
#include "bench/Trees.h"

#include "framework/library/Geometry.h"
#include "framework/ogl/Agl.h"
#include "framework/utility/Scoped.h"
#include "host/Camera.h"
#include "host/FrameDriver.h"
#include "render/context/UpdateContext.h"

#include <benchmark/benchmark.h>

namespace Bench {

namespace {

constexpr std::size_t Objects = 100000;

/// Draws the leaves through Agl, without any tree.
void DrawDirectly(Host::Scene& p_scene, Tree const& p_tree) {
    Ogl::Agl& agl = p_scene.Graphics();
    agl.BeginFrame();
    auto const& cube = p_scene.Geometry().UnitCube();
    for (Core::Ptr<Model::SimpleObject> const& leaf : p_tree.leaves) {
        agl.PushMatrix();
        agl.MultMatrix(*leaf->Transform());
        agl.Color(leaf->Color());
        agl.Draw(cube);
        agl.PopMatrix();
    }
    agl.EndFrame();
}

/// A whole frame on the back end that only counts, its four passes included, a drawn object.
void DrawTraversal(benchmark::State& p_state) {
    Tree const tree = MakePeerTree(Objects);
    auto const scene = MakeScene(tree);
    Host::FrameDriver driver(*scene);
    driver.Update();
    Types::Viewport<0> const viewport(0, 0, 256, 256);
    Host::Camera camera;
    camera.Fit(scene->Bounds(), viewport);
    Measurement measurement("ns an object", 1e9, 400);
    for (auto _ : p_state) {
        p_state.SetIterationTime(measurement.Ours([&] { driver.Draw(camera, viewport); }, Objects));
        measurement.Reference(
            "the same draws recorded by a plain loop", [&] { DrawDirectly(*scene, tree); }, Objects);
    }
    if (driver.Statistics().Drawn() != Objects)
        p_state.SkipWithError("every object must be drawn once");
    measurement.Publish(p_state);
}
BENCHMARK(DrawTraversal)->Name("draw traversal, 1e5")->UseManualTime()->Iterations(30);

void DrawCalls(benchmark::State& p_state) {
    Tree const tree = MakePeerTree(Objects);
    auto const scene = MakeScene(tree);
    Host::FrameDriver driver(*scene);
    Types::Viewport<0> const viewport(0, 0, 256, 256);
    for (auto _ : p_state) {
        driver.Update();
        Host::Camera camera;
        camera.Fit(scene->Bounds(), viewport);
        driver.Draw(camera, viewport);
        p_state.SetIterationTime(1);
    }
    PublishFigure(p_state, static_cast<double>(driver.Statistics().graphics.drawCalls), "draw calls", 20);
}
BENCHMARK(DrawCalls)->Name("draw calls, 1e5 of one shape")->UseManualTime()->Iterations(1);

} // namespace

} // namespace Bench
