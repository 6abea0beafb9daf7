#include "bench/Measurement.h"
#include "bench/Trees.h"

#include "framework/model/Legend.h"
#include "framework/model/Pane.h"
#include "framework/model/SceneGraph.h"
#include "host/Camera.h"
#include "host/FrameDriver.h"
#include "host/Picker.h"
#include "render/context/UpdateContext.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

namespace Bench {

namespace {

using Model::LegendEntry;

constexpr int Side = 512;
constexpr int FrameBatch = 100;
constexpr int PickBatch = 200;
constexpr int ChangeBatch = 100;
constexpr int AddBatch = 20;

/// A pane with a legend of so many entries, in a window.
struct LegendWindow {
    Core::Ptr<Model::Legend> legend = Core::MakeNode<Model::Legend>();
    std::vector<Core::Ptr<LegendEntry>> entries;
    std::unique_ptr<Host::Scene> scene;
    std::unique_ptr<Host::FrameDriver> driver;
    Types::Viewport<0> window{0, 0, Side, Side};
    Host::Camera camera;

    explicit LegendWindow(std::size_t p_entries) {
        auto const pane = Core::MakeNode<Model::Pane>();
        legend->SetTitle(L"Legend");
        legend->SetColumns(1);
        for (std::size_t i = 0; i < p_entries; ++i)
            Add();
        pane->Add(legend);
        Tree tree{Core::MakeNode<Model::SceneGraph>(), {}};
        tree.root->Add(pane);
        scene = MakeScene(tree);
        driver = std::make_unique<Host::FrameDriver>(*scene);
        driver->Frame(camera, window);
    }
    void Add() {
        entries.push_back(Core::MakeNode<LegendEntry>(L"Entry " + std::to_wstring(entries.size())));
        legend->Add(entries.back());
    }
};

/// Legends with few entries and with many in turn: what is hidden must cost next to nothing.
struct Pair {
    LegendWindow small{10};
    LegendWindow large;

    explicit Pair(benchmark::State const& p_state) : large(static_cast<std::size_t>(p_state.range(0))) {}

    template <class Work>
    void Run(benchmark::State& p_state, Measurement& p_measurement, int p_batch, Work const& p_work) {
        for (auto _ : p_state) {
            p_state.SetIterationTime(p_measurement.Ours([&] { p_work(large); }, p_batch));
            p_measurement.Reference(
                "a legend of 10 entries", [&] { p_work(small); }, p_batch);
        }
        p_measurement.Publish(p_state);
    }
};

void LegendFrame(benchmark::State& p_state) {
    Pair pair(p_state);
    Measurement measurement("us a frame", 1e6, 1000);
    measurement.BoundByReference(8); // some thirty rows are to be seen in place of ten
    pair.Run(p_state, measurement, FrameBatch, [](LegendWindow& p_shown) {
        for (int i = 0; i < FrameBatch; ++i)
            p_shown.driver->Draw(p_shown.camera, p_shown.window);
    });
}
BENCHMARK(LegendFrame)->Name("frame of a legend")->Arg(1000)->Arg(10000)->UseManualTime()->Iterations(15);

/// The update after one entry has got another colour.
void LegendChange(benchmark::State& p_state) {
    Pair pair(p_state);
    Measurement measurement("us a change", 1e6, 20);
    int turn = 0;
    pair.Run(p_state, measurement, ChangeBatch, [&turn](LegendWindow& p_shown) {
        auto const context = p_shown.scene->MakeUpdateContext();
        for (int i = 0; i < ChangeBatch; ++i) {
            ++turn;
            p_shown.entries[static_cast<std::size_t>(turn) * 7 % p_shown.entries.size()]->SetColor(
                QColor::fromHsv(turn % 360, 255, 255));
            Update(*p_shown.scene, context);
        }
    });
}
BENCHMARK(LegendChange)
    ->Name("change of one entry of a legend")
    ->Arg(1000)
    ->Arg(10000)
    ->UseManualTime()
    ->Iterations(15);

/// The update after one more entry has come.
void LegendAdd(benchmark::State& p_state) {
    Pair pair(p_state);
    Measurement measurement("us an entry", 1e6, 50);
    pair.Run(p_state, measurement, AddBatch, [](LegendWindow& p_shown) {
        auto const context = p_shown.scene->MakeUpdateContext();
        for (int i = 0; i < AddBatch; ++i) {
            p_shown.Add();
            Update(*p_shown.scene, context);
        }
    });
}
BENCHMARK(LegendAdd)->Name("one more entry of a legend")->Arg(1000)->Arg(10000)->UseManualTime()->Iterations(15);

void LegendPick(benchmark::State& p_state) {
    Pair pair(p_state);
    Measurement measurement("us a pick", 1e6, 50);
    std::size_t found = 0;
    pair.Run(p_state, measurement, PickBatch, [&](LegendWindow& p_shown) {
        Host::Picker picker(*p_shown.scene);
        for (int i = 0; i < PickBatch; ++i) // below the title, near the right side
            found += picker.Pick(p_shown.camera, p_shown.window, {{Side - 40, Side - 50 - i % 60}, {}}).size();
    });
    if (found == 0)
        p_state.SkipWithError("the picks must hit rows");
}
BENCHMARK(LegendPick)->Name("pick in a legend")->Arg(1000)->Arg(10000)->UseManualTime()->Iterations(15);

} // namespace

} // namespace Bench
