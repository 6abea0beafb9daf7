#include "bench/Measurement.h"
#include "bench/PlainGl.h"
#include "bench/Trees.h"

#include "bench/peers/common.h"
#include "framework/library/Geometry.h"
#include "framework/model/Group.h"
#include "framework/model/Pane.h"
#include "framework/model/SceneGraph.h"
#include "framework/model/Symbol.h"
#include "framework/ogl/Agl.h"
#include "framework/ogl/Context.h"
#include "framework/ogl/OffscreenTarget.h"
#include "framework/ogl/RecorderBackend.h"
#include "host/Camera.h"
#include "host/FrameDriver.h"
#include "host/Picker.h"

#include <benchmark/benchmark.h>
#include <epoxy/gl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace Bench {

namespace {

constexpr std::size_t Symbols = 100000;
constexpr int Tolerance = 2;
constexpr int PickBatch = 200;

/// A scene of one pane that fills the window, and a way to look at it.
struct PaneScene {
    std::vector<Core::Ptr<Model::SimpleObject>> leaves;
    std::unique_ptr<Host::Scene> scene;
    std::unique_ptr<Host::Picker> picker;
    Types::Viewport<0> window{0, 0, peer::kView, peer::kView};
    Host::Camera camera;

    explicit PaneScene(std::vector<Core::Ptr<Model::SimpleObject>> p_leaves) : leaves(std::move(p_leaves)) {
        auto const pane = Core::MakeNode<Model::Pane>();
        pane->SetProjectionMode(Model::Pane::ProjectionMode::Perspective);
        Core::Ptr<Model::Group> group;
        for (std::size_t i = 0; i < leaves.size(); ++i) {
            if (i % (Symbols / peer::kGroups) == 0) {
                group = Core::MakeNode<Model::Group>();
                pane->Add(group);
            }
            leaves[i]->SetPickable(true);
            group->Add(leaves[i]);
        }
        Tree tree{Core::MakeNode<Model::SceneGraph>(), {}};
        tree.root->Add(pane);
        scene = MakeScene(tree);
        Host::FrameDriver(*scene).Update();
        camera.Look(0, 0);
        camera.Fit(scene->Bounds(), window);
        picker = std::make_unique<Host::Picker>(*scene);
    }
    std::vector<Render::HitRecord> Pick(Types::Pos const& p_pixel, Render::Layer p_layers = Render::LayerBoth) const {
        return picker->Pick(camera, window, {p_pixel, {Tolerance, Tolerance}}, p_layers);
    }
    /// How the pane is projected that holds a hit.
    Types::Matrix4 ProjectionAround(Render::HitRecord const& p_hit) const {
        Core::Ptr<Render::Vis> const pane = p_hit.hitRoot.Lock();
        Ogl::Agl agl(std::make_unique<Ogl::RecorderBackend>());
        agl.MatrixMode(Ogl::Tokens::AGL_PROJECTION);
        agl.Perspective(window, pane->BoundingBox(), camera.Matrix(scene->Bounds()));
        return agl.Get(Ogl::Tokens::AGL_PROJECTION_MATRIX);
    }
};

/// What a program without a library would do: all symbols drawn in selection mode, in a context that still has it.
struct SelectionMode {
    Ogl::Context context{Ogl::Context::Profile::Compatibility};
    Ogl::OffscreenTarget target{peer::kView, peer::kView};
    PlainGl plain;
    std::vector<Object> objects;

    SelectionMode(PaneScene const& p_scene, std::shared_ptr<Ogl::PrimitiveBuffer const> const& p_shape,
        Types::Matrix4 const& p_projection)
        : plain(std::span(&p_shape, 1), p_projection) {
        for (Core::Ptr<Model::SimpleObject> const& leaf : p_scene.leaves) {
            Object& object = objects.emplace_back();
            double const* const elements = leaf->Transform()->Data();
            std::transform(elements, elements + object.floats.size(), object.floats.begin(),
                [](double p_element) { return static_cast<float>(p_element); });
        }
        target.Bind();
        glViewport(0, 0, peer::kView, peer::kView);
    }
    std::vector<PlainGl::Hit> Pick(Types::Pos const& p_pixel) { return plain.Select(objects, p_pixel, Tolerance); }
};

/// A selection mode that finds what the scene finds there, or the reason why there is none as the result.
std::unique_ptr<SelectionMode> MakeReference(benchmark::State& p_state, PaneScene const& p_scene,
    std::shared_ptr<Ogl::PrimitiveBuffer const> const& p_shape, Types::Pos const& p_pixel) {
    auto const ours = p_scene.Pick(p_pixel);
    if (ours.empty()) {
        p_state.SkipWithError("the pick must hit something");
        return nullptr;
    }
    try {
        auto reference = std::make_unique<SelectionMode>(p_scene, p_shape, p_scene.ProjectionAround(ours.front()));
        auto const theirs = reference->Pick(p_pixel);
        auto const nearest = std::ranges::min_element(theirs, {}, &PlainGl::Hit::depth);
        Core::Ptr<Render::Vis> const node = ours.front().node.Lock();
        if (theirs.size() != ours.size() || node->SourceModel().Lock() != p_scene.leaves[nearest->object])
            p_state.SkipWithError("selection mode must find the same");
        return reference;
    } catch (Ogl::ContextError const& error) {
        p_state.SkipWithError(error.what());
        return nullptr;
    }
}

void PickAmongSymbols(benchmark::State& p_state) {
    PaneScene const scene(MakePeerTree(Symbols).leaves);
    Types::Pos const pixel(peer::kView / 2, peer::kView / 2);
    auto const reference = MakeReference(p_state, scene, scene.scene->Geometry().UnitCube(), pixel);
    if (!reference)
        return;
    Measurement measurement("ms a pick", 1e3, 15);
    for (auto _ : p_state) {
        p_state.SetIterationTime(measurement.Ours([&] { scene.Pick(pixel); }));
        measurement.Reference("all symbols drawn in selection mode", [&] { reference->Pick(pixel); });
    }
    measurement.Publish(p_state);
}
BENCHMARK(PickAmongSymbols)->Name("scene pick among 1e5 symbols")->UseManualTime()->Iterations(9);

void PickOverlay(benchmark::State& p_state) {
    PaneScene const scene(MakePeerTree(Symbols).leaves);
    Types::Pos const pixel(peer::kView / 2, peer::kView / 2);
    for (auto _ : p_state) {
        scene.Pick(pixel, Render::LayerOverlay);
        p_state.SetIterationTime(1);
    }
    PublishFigure(p_state, scene.picker->Visited(), "nodes met", 2);
}
BENCHMARK(PickOverlay)->Name("scene pick, overlay only, 1e5 symbols")->UseManualTime()->Iterations(1);

// ------------------------------------------------------------------------------------------------------------- one mesh

/// A million triangles, and the file of them.
class MeshFile {
public:
    MeshFile() : _path(std::filesystem::temp_directory_path() / ("qorbench-" + std::to_string(getpid()) + ".ply")) {
        peer::Mesh const mesh = peer::makeTerrain();
        std::vector<Types::Vector3_Base<float>> positions;
        for (std::size_t i = 0; i < mesh.pos.size(); i += 3)
            positions.emplace_back(mesh.pos[i], mesh.pos[i + 1], mesh.pos[i + 2]);
        std::ofstream file(_path, std::ios::binary);
        file << "ply\nformat binary_little_endian 1.0\nelement vertex " << positions.size()
             << "\nproperty float x\nproperty float y\nproperty float z\nelement face " << mesh.idx.size() / 3
             << "\nproperty list uchar int vertex_indices\nend_header\n";
        Write(file, positions.data(), positions.size());
        for (std::size_t i = 0; i < mesh.idx.size(); i += 3) {
            file.put(3);
            Write(file, &mesh.idx[i], 3);
        }
        Ogl::VertexData data;
        data.positions = std::move(positions);
        _shape = std::make_shared<Ogl::PrimitiveBuffer>(
            std::make_shared<Ogl::IndexBuffer>(Ogl::Tokens::AGL_TRIANGLES, mesh.idx),
            std::make_shared<Ogl::VertexBuffer>(std::move(data)));
    }
    ~MeshFile() {
        std::error_code ignored;
        std::filesystem::remove(_path, ignored);
    }
    MeshFile(MeshFile const&) = delete;
    MeshFile& operator=(MeshFile const&) = delete;

    std::string Path() const { return _path.string(); }
    std::shared_ptr<Ogl::PrimitiveBuffer const> const& Shape() const { return _shape; }

private:
    template <class T>
    static void Write(std::ofstream& p_file, T const* p_values, std::size_t p_count) {
        p_file.write(reinterpret_cast<char const*>(p_values), static_cast<std::streamsize>(p_count * sizeof(T)));
    }

    std::filesystem::path _path;
    std::shared_ptr<Ogl::PrimitiveBuffer const> _shape;
};

PaneScene SceneOf(Core::Ptr<Model::Symbol> const& p_symbol) {
    auto leaf = Core::MakeNode<Model::SimpleObject>(p_symbol);
    leaf->SetTransform(Types::Matrix4());
    return PaneScene({leaf});
}

/// Places wander over the middle of the picture.
void PickBatchIn(PaneScene const& p_scene, int& p_turn) {
    for (int pick = 0; pick < PickBatch; ++pick, ++p_turn)
        p_scene.Pick({64 + p_turn * 79 % 128, 64 + p_turn * 61 % 128});
}

/// What the pick in a scene of one cube costs is the cost of the tree.
double SecondsOfTree() {
    PaneScene const scene = SceneOf(Core::MakeNode<Model::Symbol>(Model::SymbolShape::Cube));
    double best = 1;
    int turn = 0;
    for (int round = 0; round < 20; ++round) {
        auto const begin = std::chrono::steady_clock::now();
        PickBatchIn(scene, turn);
        std::chrono::duration<double> const elapsed = std::chrono::steady_clock::now() - begin;
        best = std::min(best, elapsed.count() / PickBatch);
    }
    return best;
}

void PickInMesh(benchmark::State& p_state) {
    MeshFile const mesh;
    PaneScene const scene = SceneOf(Core::MakeNode<Model::Symbol>(mesh.Path()));
    auto const reference = MakeReference(p_state, scene, mesh.Shape(), {peer::kView / 2, peer::kView / 2});
    if (!reference)
        return;
    Measurement measurement("us a pick", 1e6, 5 + 1e6 * SecondsOfTree());
    int turn = 0;
    for (auto _ : p_state) {
        p_state.SetIterationTime(measurement.Ours([&] { PickBatchIn(scene, turn); }, PickBatch));
        measurement.Reference("the mesh drawn in selection mode", [&] { reference->Pick({128, 128}); });
    }
    measurement.Publish(p_state);
}
BENCHMARK(PickInMesh)->Name("scene pick in a mesh of 1e6 triangles")->UseManualTime()->Iterations(15);

} // namespace

} // namespace Bench
