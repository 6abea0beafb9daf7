#include "bench/Measurement.h"
#include "bench/Trees.h"

#include "bench/peers/common.h"
#include "framework/model/Pane.h"
#include "framework/model/SceneGraph.h"
#include "host/Camera.h"
#include "host/FrameDriver.h"
#include "host/InputDispatcher.h"
#include "host/PaneFinder.h"
#include "host/Picker.h"
#include "render/context/UpdateContext.h"
#include "render/loops/UpdateNodePathLoop.h"
#include "render/pick/BoxSelection.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <utility>

namespace Bench {

namespace {

using Types::RelativeLength;

constexpr std::size_t Symbols = 100000;

/// The symbols in a pane that the user may drag, which fills the window but for a margin. A window with its input.
struct PaneWindow {
    Core::Ptr<Model::Pane> pane = Core::MakeNode<Model::Pane>();
    std::unique_ptr<Host::Scene> scene;
    std::unique_ptr<Host::FrameDriver> driver;
    std::unique_ptr<Host::InputDispatcher> input;
    Types::Viewport<0> window{0, 0, 2 * peer::kView, 2 * peer::kView};
    Host::Camera camera;

    /// @param p_content  goes below the pane
    explicit PaneWindow(Core::Ptr<Model::ModelNode> const& p_content) {
        pane->SetViewport({RelativeLength::Pixels(8), RelativeLength::Pixels(8), RelativeLength::Pixels(256),
            RelativeLength::Pixels(256)});
        pane->SetMovable(true);
        pane->Add(p_content);
        Tree tree{Core::MakeNode<Model::SceneGraph>(), {}};
        tree.root->Add(pane);
        scene = MakeScene(tree);
        driver = std::make_unique<Host::FrameDriver>(*scene);
        driver->Update();
        camera.Look(0, 0);
        camera.Fit(scene->Bounds(), window);
        input = std::make_unique<Host::InputDispatcher>(*scene);
        input->SetView(camera, window);
        driver->Draw(camera, window);
    }
};

/// The symbols fill a cube; half of its width and half of its height hold a quarter of them, hidden ones included.
void SelectBox(benchmark::State& p_state) {
    Tree const tree = MakePeerTree(Symbols);
    for (auto const& leaf : tree.leaves)
        leaf->SetPickable(true);
    PaneWindow const shown(tree.root);
    auto const views = Host::PaneFinder::All(shown.scene->Visual(), shown.window);
    using Operation = Render::BoxSelection::Operation;
    Render::BoxSelection const box(views.front().pane, {91, 91, 90, 90}, false, Operation::Replace);
    Host::Picker picker(*shown.scene);
    Measurement measurement("ms a box", 1e3, 60);
    std::size_t found = 0;
    for (auto _ : p_state) {
        p_state.SetIterationTime(
            measurement.Ours([&] { found = picker.Pick(shown.camera, shown.window, box).size(); }));
    }
    if (found < Symbols / 5 || found > Symbols / 3)
        p_state.SkipWithError(("the box must hold a quarter of the symbols, not " + std::to_string(found)).c_str());
    measurement.Publish(p_state);
}
BENCHMARK(SelectBox)->Name("box over a quarter of 1e5 symbols")->UseManualTime()->Iterations(9);

/// What a move of the pointer costs until the visual tree is up to date again.
void DragPane(benchmark::State& p_state) {
    PaneWindow const shown(MakePeerTree(Symbols).root);
    Types::Pos const start(100, 255); // on the title bar
    shown.input->PointerMoved(start);
    shown.input->PointerPressed(start);
    Measurement measurement("us a move", 1e6, 200);
    int turn = 0;
    bool isFollowing = true;
    auto const context = shown.scene->MakeUpdateContext();
    for (auto _ : p_state) {
        ++turn;
        auto const before = shown.pane->GetViewport();
        p_state.SetIterationTime(measurement.Ours([&] {
            shown.input->PointerMoved({start.x + 10 + turn % 100, start.y - turn % 50});
            Update(*shown.scene, context);
            Render::UpdateNodePathLoop()(shown.scene->Visual());
        }));
        isFollowing = isFollowing && !(shown.pane->GetViewport() == before);
    }
    if (!isFollowing)
        p_state.SkipWithError("the pane must follow the pointer");
    measurement.Publish(p_state);
}
BENCHMARK(DragPane)->Name("drag of a pane over 1e5 symbols")->UseManualTime()->Iterations(1000);

} // namespace

} // namespace Bench
