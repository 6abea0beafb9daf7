#include "bench/Measurement.h"
#include "bench/Trees.h"

#include "framework/model/SelectionList.h"
#include "host/FrameDriver.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

namespace Bench {

namespace {

/// Symbols with a selection list beside them, shown.
struct SelectableScene {
    Tree tree;
    Core::Ptr<Model::SelectionList> list = Core::MakeNode<Model::SelectionList>();
    std::unique_ptr<Host::Scene> scene;
    std::unique_ptr<Host::FrameDriver> driver;
    std::vector<Core::Ptr<Model::ModelNode>> nodes;

    SelectableScene(std::size_t p_count, bool p_hasList) : tree(MakePeerTree(p_count)) {
        nodes.assign(tree.leaves.begin(), tree.leaves.end());
        if (p_hasList)
            tree.root->Add(list);
        scene = MakeScene(tree);
        driver = std::make_unique<Host::FrameDriver>(*scene);
        driver->Update();
        driver->Update();
    }
};

std::vector<Model::SelectionEntry> EntriesOf(SelectableScene const& p_scene) {
    std::vector<Model::SelectionEntry> entries;
    for (auto const& node : p_scene.nodes)
        entries.push_back({node, {}});
    return entries;
}

/// All of so many nodes are selected, toggled, replaced by one and cleared; each with the update that shows it.
/// The figure is a node's share.
void ChangeSelection(benchmark::State& p_state, int p_what, double p_bound) {
    auto const count = static_cast<std::size_t>(p_state.range(0));
    Measurement measurement("ns a node", 1e9, p_bound);
    std::unique_ptr<SelectableScene> shown;
    bool isRight = true;
    for (auto _ : p_state) {
        if (!shown)
            shown = std::make_unique<SelectableScene>(count, true);
        auto const entries = EntriesOf(*shown);
        Model::SelectionList& list = *shown->list;
        list.DeselectAll();
        if (p_what > 0)
            list.Select(entries);
        if (p_what == 2)
            list.Deselect(std::span(entries).first(1));
        shown->driver->Update();
        shown->driver->Update();
        auto const change = [&] {
            switch (p_what) {
            case 0:
                list.Select(entries);
                break;
            case 1:
                list.Toggle(entries);
                break;
            case 2:
                list.Replace(std::span(entries).first(1));
                break;
            case 3:
                list.DeselectAll();
                break;
            default:
                break;
            }
            shown->driver->Update();
        };
        p_state.SetIterationTime(measurement.Ours(change, static_cast<double>(count)));
        std::size_t const expected = p_what == 0 ? count : p_what == 2 ? 1 : 0;
        isRight = isRight && list.Count() == expected && !list.ForgetGone();
    }
    if (!isRight)
        p_state.SkipWithError("the list must hold what was selected and still lives");
    measurement.Publish(p_state);
}
BENCHMARK_CAPTURE(ChangeSelection, select, 0, 5000.0)->Arg(1)->Arg(1000)->Arg(100000)->UseManualTime()->Iterations(9);
BENCHMARK_CAPTURE(ChangeSelection, toggle, 1, 5000.0)->Arg(1)->Arg(1000)->Arg(100000)->UseManualTime()->Iterations(9);
BENCHMARK_CAPTURE(ChangeSelection, replace, 2, 5000.0)->Arg(1)->Arg(1000)->Arg(100000)->UseManualTime()->Iterations(9);
BENCHMARK_CAPTURE(ChangeSelection, clear, 3, 5000.0)->Arg(1)->Arg(1000)->Arg(100000)->UseManualTime()->Iterations(9);

/// All nodes are deleted while they are selected, and while they are not.
void DeleteSelected(benchmark::State& p_state) {
    auto const count = static_cast<std::size_t>(p_state.range(0));
    Measurement measurement("ns a node", 1e9, 0);
    measurement.BoundByReference(4);
    bool isRight = true;
    for (auto _ : p_state) {
        for (bool const isSelected : {true, false}) {
            SelectableScene shown(count, true);
            if (isSelected)
                shown.list->Select(EntriesOf(shown));
            shown.driver->Update();
            shown.driver->Update();
            shown.nodes.clear();
            shown.tree.leaves.clear();
            auto const erase = [&shown] {
                for (auto const& group : *shown.tree.root)
                    group->Clear();
                shown.driver->Update();
            };
            if (isSelected)
                p_state.SetIterationTime(measurement.Ours(erase, static_cast<double>(count)));
            else
                measurement.Reference("not selected", erase, static_cast<double>(count));
            isRight = isRight && !shown.list->ForgetGone();
        }
    }
    if (!isRight)
        p_state.SkipWithError("what is gone must have left the list");
    measurement.Publish(p_state);
}
BENCHMARK(DeleteSelected)->Name("delete of selected nodes")->Arg(1000)->Arg(100000)->UseManualTime()->Iterations(5);

/// An update in which one symbol of 1e5 has changed, with an empty selection list and without a list.
void EmptySelection(benchmark::State& p_state) {
    SelectableScene const with(100000, true);
    SelectableScene const without(100000, false);
    Measurement measurement("us an update", 1e6, 0);
    measurement.BoundByReference(1.5);
    int turn = 0;
    auto const change = [&turn](SelectableScene const& p_scene) {
        p_scene.tree.leaves[static_cast<std::size_t>(turn)]->SetColor(QColor(turn % 256, 10, 10));
        p_scene.driver->Update();
    };
    for (auto _ : p_state) {
        ++turn;
        p_state.SetIterationTime(measurement.Ours([&] { change(with); }));
        measurement.Reference("without a list", [&] { change(without); });
    }
    measurement.Publish(p_state);
}
BENCHMARK(EmptySelection)->Name("update with nothing selected")->UseManualTime()->Iterations(300);

} // namespace

} // namespace Bench
