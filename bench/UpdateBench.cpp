#include "bench/Measurement.h"
#include "bench/Trees.h"

#include "framework/types/Matrix4.h"
#include "render/context/UpdateContext.h"
#include "render/loops/UpdateLoop.h"
#include "render/loops/UpdateNodePathLoop.h"

#include <benchmark/benchmark.h>

#include <QColor>

namespace Bench {

namespace {

constexpr std::size_t Million = 1000000;
constexpr std::size_t FanOut = 100;
constexpr int IdleBatch = 1000;

/// A tree that is up to date, for benchmarks that leave it so.
struct Fixture {
    Tree tree;
    std::unique_ptr<Host::Scene> scene;
    Render::UpdateContext context;

    explicit Fixture(Tree p_tree)
        : tree(std::move(p_tree)), scene(MakeScene(tree)), context(scene->MakeUpdateContext()) {
        Update(*scene, context);
        Render::UpdateNodePathLoop()(scene->Visual());
    }
};

Fixture& Balanced() {
    static Fixture fixture(MakeTree(Million, FanOut));
    return fixture;
}

Fixture& Flat() {
    static Fixture fixture(MakeFlatTree(100000));
    return fixture;
}

void IdleUpdate(benchmark::State& p_state) {
    Fixture& fixture = Balanced();
    Measurement measurement("ns a frame", 1e9, 1000);
    unsigned visited = 0;
    for (auto _ : p_state) {
        double const seconds = measurement.Ours(
            [&] {
                for (int frame = 0; frame < IdleBatch; ++frame)
                    visited = Update(*fixture.scene, fixture.context);
            },
            IdleBatch);
        p_state.SetIterationTime(seconds);
    }
    if (visited != 1)
        p_state.SkipWithError("an unchanged tree must cost one visit");
    measurement.Publish(p_state);
}
BENCHMARK(IdleUpdate)->Name("update, nothing changed, 1e6")->UseManualTime()->Iterations(50);

void IdleUpdateAndPaths(benchmark::State& p_state) {
    Fixture& fixture = Balanced();
    Measurement measurement("ns a frame", 1e9, 2000);
    for (auto _ : p_state) {
        double const seconds = measurement.Ours(
            [&] {
                for (int frame = 0; frame < IdleBatch; ++frame) {
                    Update(*fixture.scene, fixture.context);
                    Render::UpdateNodePathLoop()(fixture.scene->Visual());
                }
            },
            IdleBatch);
        p_state.SetIterationTime(seconds);
    }
    measurement.Publish(p_state);
}
BENCHMARK(IdleUpdateAndPaths)->Name("update and paths, nothing changed, 1e6")->UseManualTime()->Iterations(50);

/// Changes one leaf and updates, against plain passes over the children of every node above the leaf.
void ChangedLeaf(
    benchmark::State& p_state, Fixture& p_fixture, std::string const& p_unit, double p_scale, double p_bound) {
    Measurement measurement(p_unit, p_scale, p_bound);
    std::size_t const leaves = p_fixture.tree.leaves.size();
    std::size_t turn = 0;
    for (auto _ : p_state) {
        std::size_t const position = turn * 7919 % leaves;
        auto const& leaf = p_fixture.tree.leaves[position];
        leaf->SetColor(QColor(static_cast<int>(turn % 256), 10, 20));
        ++turn;
        p_state.SetIterationTime(measurement.Ours([&] { Update(*p_fixture.scene, p_fixture.context); }));
        measurement.Reference("plain passes over the same children", [&] {
            Render::Vis* node = p_fixture.scene->Visual().Get();
            std::size_t below = leaves;
            while (!node->Empty()) {
                PassOverChildren(*node);
                below = (below + node->Size() - 1) / node->Size();
                auto child = node->begin();
                for (std::size_t skip = position / below % node->Size(); skip > 0; --skip)
                    ++child;
                node = child->Get();
            }
        });
    }
    measurement.Publish(p_state);
}

void ChangedLeafBalanced(benchmark::State& p_state) {
    ChangedLeaf(p_state, Balanced(), "us a change", 1e6, 60);
}
BENCHMARK(ChangedLeafBalanced)->Name("update, one leaf changed, 1e6")->UseManualTime()->Iterations(2000);

void ChangedLeafFlat(benchmark::State& p_state) {
    ChangedLeaf(p_state, Flat(), "ms a change", 1e3, 8);
}
BENCHMARK(ChangedLeafFlat)->Name("update, one leaf changed, flat 1e5")->UseManualTime()->Iterations(100);

/// What a scene without any of this would have for a leaf.
struct PlainLeaf {
    PlainLeaf* parent = nullptr;
    std::vector<std::unique_ptr<PlainLeaf>> children;
    Types::Matrix4 matrix;
    Types::BoundingBox_Base<double> box;
    QColor color;
    std::string name;
};

Types::BoundingBox_Base<double> PlainUpdate(PlainLeaf& p_node) {
    for (auto const& child : p_node.children)
        p_node.box.Add(PlainUpdate(*child));
    if (p_node.children.empty()) {
        p_node.box.Add(Types::Vector3_Base<double>(-0.5, -0.5, -0.5));
        p_node.box.Add(Types::Vector3_Base<double>(0.5, 0.5, 0.5));
        p_node.box = p_node.box.Transformed(p_node.matrix);
    }
    return p_node.box;
}

std::unique_ptr<PlainLeaf> PlainTree(Model::ModelNode const& p_model) {
    auto node = std::make_unique<PlainLeaf>();
    node->name = p_model.Name();
    if (auto const* const object = dynamic_cast<Model::SimpleObject const*>(&p_model)) {
        node->matrix = *object->Transform();
        node->color = object->Color();
    }
    for (Core::Ptr<Model::ModelNode> const& child : p_model) {
        node->children.push_back(PlainTree(*child));
        node->children.back()->parent = node.get();
    }
    return node;
}

void FirstUpdate(benchmark::State& p_state) {
    Measurement measurement("s a tree", 1, 3);
    for (auto _ : p_state) {
        Tree const tree = MakeTree(Million, FanOut);
        std::unique_ptr<Host::Scene> scene;
        p_state.SetIterationTime(measurement.Ours([&] {
            scene = MakeScene(tree);
            Update(*scene, scene->MakeUpdateContext());
        }));
        scene.reset();
        std::unique_ptr<PlainLeaf> plain;
        measurement.Reference("plain structures, built and boxed", [&] {
            plain = PlainTree(*tree.root);
            PlainUpdate(*plain);
        });
    }
    measurement.Publish(p_state);
}
BENCHMARK(FirstUpdate)->Name("generate and first update, 1e6")->UseManualTime()->Iterations(3);

void MemoryPerLeaf(benchmark::State& p_state) {
    for (auto _ : p_state) {
        std::size_t const before = HeapInUse();
        {
            Tree tree = MakeTree(Million, FanOut);
            tree.leaves = {};
            auto const scene = MakeScene(tree);
            Update(*scene, scene->MakeUpdateContext());
            Render::UpdateNodePathLoop()(scene->Visual());
            auto const bytes = static_cast<double>(HeapInUse() - before);
            PublishFigure(p_state, bytes / Million, "bytes a leaf", 1000);
        }
        p_state.SetIterationTime(1);
    }
}
BENCHMARK(MemoryPerLeaf)->Name("memory, model and visual node, 1e6")->UseManualTime()->Iterations(1);

void Destroy(benchmark::State& p_state) {
    Measurement measurement("ns a leaf", 1e9, 0);
    for (auto _ : p_state) {
        Tree tree = MakeTree(Million, FanOut);
        auto scene = MakeScene(tree);
        Update(*scene, scene->MakeUpdateContext());
        p_state.SetIterationTime(measurement.Ours([&] { scene.reset(); }, Million));
    }
    measurement.Publish(p_state);
}
BENCHMARK(Destroy)->Name("destroy the visual tree, 1e6")->UseManualTime()->Iterations(1);

/// Takes all children of one group away again, in an order unlike theirs; twice as many must not cost much more than
/// twice as much.
void RemoveAll(benchmark::State& p_state) {
    Measurement measurement("ns a child", 1e9, 0);
    auto const count = static_cast<std::size_t>(p_state.range(0));
    for (auto _ : p_state) {
        Tree tree = MakeFlatTree(count);
        auto const scene = MakeScene(tree);
        auto const context = scene->MakeUpdateContext();
        Update(*scene, context);
        p_state.SetIterationTime(measurement.Ours(
            [&] {
                for (std::size_t turn = 0; turn < count; ++turn)
                    tree.root->Remove(tree.leaves[turn * 7919 % count]);
                Update(*scene, context);
            },
            static_cast<double>(count)));
    }
    measurement.Publish(p_state);
}
BENCHMARK(RemoveAll)->Name("remove all children of a group")->Arg(50000)->Arg(100000)->UseManualTime()->Iterations(3);

} // namespace

} // namespace Bench
