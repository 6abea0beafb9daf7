#include "bench/Measurement.h"

#include "framework/model/Pane.h"
#include "framework/model/SceneGraph.h"
#include "framework/model/SimpleObject.h"
#include "host/qt/SceneWidget.h"
#include "host/qt/SurfaceFormat.h"

#include <QApplication>
#include <QEventLoop>
#include <QTimer>
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <ctime>

namespace Bench {

namespace {

using namespace Qor::Chart;

constexpr int SettleMilliseconds = 1000;
constexpr int IdleMilliseconds = 10000;
constexpr int Symbols = 1000;

/// Of all threads of this process.
double ProcessorMilliseconds() {
    return 1000.0 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

void RunFor(int p_milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(p_milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

Core::Ptr<Model::ModelNode> MakeModel() {
    auto const root = Core::MakeNode<Model::SceneGraph>();
    auto const pane = Core::MakeNode<Model::Pane>();
    auto const symbol = Core::MakeNode<Model::Symbol>(Model::SymbolShape::Cube);
    pane->SetToolbarShown(true);
    for (int i = 0; i < Symbols; ++i) {
        auto const cube = Core::MakeNode<Model::SimpleObject>(symbol);
        int const row = i / 10 % 10;
        int const storey = i / 100;
        cube->SetTransform(Types::Matrix4::Translation({2.0 * (i % 10), 2.0 * row, 2.0 * storey}));
        pane->Add(cube);
    }
    root->Add(pane);
    return root;
}

/// What a window costs in which nothing happens, and how often it draws.
void IdleWindow(benchmark::State& p_state) {
    if (!std::getenv("DISPLAY") && !std::getenv("WAYLAND_DISPLAY")) {
        p_state.SkipWithError("there is no display");
        return;
    }
    int count = 0;
    QApplication const application(count, nullptr);
    if (!Host::WhyNoOpenGl().empty()) {
        p_state.SkipWithError(Host::WhyNoOpenGl().c_str());
        return;
    }
    Host::SceneWidget widget;
    widget.View().SetModel(MakeModel());
    widget.resize(800, 600);
    widget.show();
    RunFor(SettleMilliseconds);
    for (auto _ : p_state) {
        std::uint32_t const frames = widget.View().Driver().Statistics().frame;
        double const before = ProcessorMilliseconds();
        RunFor(IdleMilliseconds);
        double const used = ProcessorMilliseconds() - before;
        p_state.SetIterationTime(IdleMilliseconds / 1000.0);
        p_state.counters["frames"] = widget.View().Driver().Statistics().frame - frames;
        PublishFigure(p_state, used, "ms in ten seconds", 10);
    }
}
BENCHMARK(IdleWindow)->Name("processor time of an idle window")->UseManualTime()->Iterations(1);

} // namespace

} // namespace Bench
