#include "bench/Measurement.h"
#include "bench/Trees.h"

#include "framework/model/RenderStyle.h"
#include "host/Camera.h"
#include "host/FrameDriver.h"

#include <benchmark/benchmark.h>

namespace Bench {

namespace {

constexpr std::size_t Objects = 100000;
constexpr std::size_t Styles = 10000;

/// A scene that is ready to be drawn again and again.
struct Picture {
    explicit Picture(Tree const& p_tree) : scene(MakeScene(p_tree)), driver(*scene) {
        driver.Update();
        camera.Fit(scene->Bounds(), viewport);
        Draw();
    }
    void Draw() { driver.Draw(camera, viewport); }

    Types::Viewport<0> const viewport{0, 0, 256, 256};
    std::unique_ptr<Host::Scene> scene;
    Host::FrameDriver driver;
    Host::Camera camera;
};

/// The leaves of a flat tree, each below a style of its own; with a nesting of more than 1, that many styles deep.
Tree MakeStyledTree(std::size_t p_leaves, std::size_t p_nesting) {
    Tree tree = MakeFlatTree(p_leaves);
    Core::Ptr<Model::ModelNode> parent = tree.root;
    std::size_t number = 0;
    for (Core::Ptr<Model::SimpleObject> const& leaf : tree.leaves) {
        auto const style = Core::MakeNode<Model::RenderStyle>();
        style->SetLineWidth(1.0 + static_cast<double>(number % 3));
        style->SetForegroundColor(QColor(static_cast<int>(number % 255), 0, 0));
        tree.root->Remove(leaf);
        style->Add(leaf);
        parent->Add(style);
        parent = ++number % p_nesting == 0 ? tree.root : Core::Ptr<Model::ModelNode>(style);
    }
    return tree;
}

void DrawTransparent(benchmark::State& p_state) {
    Tree const opaqueTree = MakePeerTree(Objects);
    Tree const glassTree = MakePeerTree(Objects);
    for (Core::Ptr<Model::SimpleObject> const& leaf : glassTree.leaves) {
        QColor color = leaf->Color();
        color.setAlpha(128);
        leaf->SetColor(color);
    }
    Picture opaque(opaqueTree);
    Picture glass(glassTree);
    Measurement measurement("ns an object", 1e9, 800);
    for (auto _ : p_state) {
        p_state.SetIterationTime(measurement.Ours([&] { glass.Draw(); }, Objects));
        measurement.Reference(
            "the same objects opaque", [&] { opaque.Draw(); }, Objects);
    }
    if (glass.driver.Statistics().Drawn() != Objects || opaque.driver.Statistics().Drawn() != Objects)
        p_state.SkipWithError("every object must be drawn once");
    measurement.Publish(p_state);
}
BENCHMARK(DrawTransparent)->Name("draw transparent, sorted, 1e5")->UseManualTime()->Iterations(20);

void DrawStyled(benchmark::State& p_state) {
    Tree const plainTree = MakeFlatTree(Styles);
    Tree const styledTree = MakeStyledTree(Styles, static_cast<std::size_t>(p_state.range(0)));
    Picture plain(plainTree);
    Picture styled(styledTree);
    Measurement measurement("ns a style and its object", 1e9, 3000);
    for (auto _ : p_state) {
        p_state.SetIterationTime(measurement.Ours([&] { styled.Draw(); }, Styles));
        measurement.Reference(
            "the same objects without styles", [&] { plain.Draw(); }, Styles);
    }
    if (styled.driver.Statistics().Drawn() != Styles)
        p_state.SkipWithError("every object must be drawn once");
    measurement.Publish(p_state);
}
BENCHMARK(DrawStyled)->Name("draw styles, 1e4 side by side")->Arg(1)->UseManualTime()->Iterations(20);
BENCHMARK(DrawStyled)->Name("draw styles, 1e4 nested by 100")->Arg(100)->UseManualTime()->Iterations(20);

} // namespace

} // namespace Bench
