#include "bench/Measurement.h"
#include "bench/Trees.h"

#include "framework/model/Statistics.h"
#include "framework/ogl/Context.h"
#include "host/Camera.h"
#include "host/FrameDriver.h"
#include "host/Offscreen.h"

#include <benchmark/benchmark.h>

#include <memory>

namespace Bench {

namespace {

constexpr std::size_t Symbols = 10000;
constexpr int Renewals = 4; ///< a second, at the interval that panels have at first
constexpr double MostOfAFrame = 1.02;

Types::Viewport<0> const Window(0, 0, 1280, 800);

/// A scene of so many symbols with the panel, which comes and goes: two scenes would differ in where their nodes lie in
/// memory by more than the panel costs.
struct Stage {
    Stage() {
        tree.root->Add(panel);
        scene = MakeScene(tree);
        driver = std::make_unique<Host::FrameDriver>(*scene);
        driver->Update();
        camera.Fit(scene->Bounds(), Window);
    }
    void Prepare(bool p_isShown, double p_interval) const {
        panel->SetVisible(p_isShown);
        panel->SetInterval(p_interval);
        driver->Update();
    }
    void Draw() const { driver->Draw(camera, Window); }
    double DrawCalls() const {
        Draw();
        return static_cast<double>(driver->Statistics().graphics.drawCalls);
    }

    Tree tree = MakePeerTree(Symbols);
    Core::Ptr<Model::Statistics> panel = Core::MakeNode<Model::Statistics>();
    std::unique_ptr<Host::Scene> scene;
    std::unique_ptr<Host::FrameDriver> driver;
    Host::Camera camera;
};

constexpr double Never = 1e9; ///< milliseconds

/// On the back end that only counts, which is where the panel's share is largest. Each frame bears the part of four
/// renewals a second that it takes of that second.
void FrameWithPanel(benchmark::State& p_state) {
    Stage stage;
    stage.Draw();
    Measurement measurement("us a frame", 1e6, 0);
    Measurement renewal("us a frame", 1e6, 0);
    measurement.BoundByReference(MostOfAFrame);
    for (auto _ : p_state) {
        stage.Prepare(true, Never);
        p_state.SetIterationTime(measurement.Ours([&] { stage.Draw(); }));
        stage.Prepare(false, Never);
        measurement.Reference("the same frame without the panel", [&] { stage.Draw(); });
        stage.Prepare(true, 0);
        renewal.Ours([&] { stage.Draw(); });
    }
    renewal.Publish(p_state);
    double const renewed = p_state.counters["figure"];
    measurement.Publish(p_state);
    double const frame = p_state.counters["reference"];
    double const share = (renewed - p_state.counters["figure"]) * Renewals * frame / 1e6;
    p_state.counters["figure"] = p_state.counters["figure"] + share;
    p_state.counters["ratio"] = p_state.counters["figure"] / frame;
}
BENCHMARK(FrameWithPanel)->Name("frame with statistics, 1e4")->UseManualTime()->Iterations(1000);

void PanelDrawCalls(benchmark::State& p_state) {
    Stage stage;
    for (auto _ : p_state)
        p_state.SetIterationTime(1);
    stage.Prepare(false, Never);
    double const without = stage.DrawCalls();
    stage.Prepare(true, Never);
    stage.Draw(); // has the figures
    PublishFigure(p_state, stage.DrawCalls() - without, "draw calls", 2);
}
BENCHMARK(PanelDrawCalls)->Name("draw calls of statistics")->UseManualTime()->Iterations(1);

/// With OpenGL, pixels included. With GALLIUM_NOOP=1 in the environment, Mesa's drivers do all but the pixels.
void FrameWithPanelOnDevice(benchmark::State& p_state) {
    std::unique_ptr<Host::Offscreen> pictures[2];
    try {
        for (int hasPanel : {0, 1}) {
            pictures[hasPanel] = std::make_unique<Host::Offscreen>(Types::Size(1280, 800), 0);
            Tree const tree = MakePeerTree(Symbols);
            if (hasPanel == 1)
                tree.root->Add(Core::MakeNode<Model::Statistics>());
            pictures[hasPanel]->GetScene().SetModel(tree.root);
        }
    } catch (Ogl::ContextError const& error) {
        p_state.SkipWithError(error.what());
        return;
    }
    auto const frame = [](Host::Offscreen& p_picture) {
        p_picture.Frame();
        benchmark::DoNotOptimize(p_picture.GetScene().Graphics().ReadPixels(0, 0, 1, 1)); // waits for the device
    };
    for (auto const& picture : pictures)
        frame(*picture);
    Measurement measurement("ms a frame", 1e3, 0);
    measurement.BoundByReference(MostOfAFrame);
    for (auto _ : p_state) {
        p_state.SetIterationTime(measurement.Ours([&] { frame(*pictures[1]); }));
        measurement.Reference("the same frame without the panel", [&] { frame(*pictures[0]); });
    }
    measurement.Publish(p_state);
}
BENCHMARK(FrameWithPanelOnDevice)->Name("frame with statistics, OpenGL, 1e4")->UseManualTime()->Iterations(100);

} // namespace

} // namespace Bench
