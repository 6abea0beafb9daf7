#include "bench/Measurement.h"
#include "bench/Trees.h"

#include "framework/ogl/Agl.h"
#include "framework/ogl/AutoNameLoader.h"
#include "framework/ogl/HitDetect.h"
#include "framework/ogl/PickVolume.h"
#include "framework/ogl/PrimitiveTree.h"
#include "framework/ogl/RecorderBackend.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>

namespace Bench {

namespace {

constexpr std::uint32_t Side = 708;
constexpr double Triangles = 2.0 * Side * Side;
constexpr int PickBatch = 200;

/// Waves over the square from -1 to 1: a million triangles.
std::shared_ptr<Ogl::PrimitiveBuffer const> MakeWaves() {
    Ogl::VertexData data;
    std::vector<std::uint32_t> indices;
    for (std::uint32_t y = 0; y <= Side; ++y) {
        for (std::uint32_t x = 0; x <= Side; ++x) {
            float const u = 2 * static_cast<float>(x) / Side - 1;
            float const v = 2 * static_cast<float>(y) / Side - 1;
            data.positions.emplace_back(u, v, 0.3F * std::sin(9 * u) * std::cos(7 * v));
            std::uint32_t const first = y * (Side + 1) + x;
            if (x < Side && y < Side)
                indices.insert(
                    indices.end(), {first, first + 1, first + Side + 2, first, first + Side + 2, first + Side + 1});
        }
    }
    return std::make_shared<Ogl::PrimitiveBuffer>(
        std::make_shared<Ogl::IndexBuffer>(Ogl::Tokens::AGL_TRIANGLES, std::move(indices)),
        std::make_shared<Ogl::VertexBuffer>(std::move(data)));
}

Ogl::PrimitiveTree::Shape ShapeOf(Ogl::PrimitiveBuffer const& p_buffer) {
    return {p_buffer.Vertices()->Data().positions, p_buffer.Indices()->Indices(), 3};
}

/// The waves, seen aslant.
struct PickScene {
    std::shared_ptr<Ogl::PrimitiveBuffer const> waves = MakeWaves();
    Ogl::Agl agl{std::make_unique<Ogl::RecorderBackend>()};
    Types::Viewport<0> viewport{0, 0, 1000, 1000};
    Types::Matrix4 projection = Types::Matrix4::Perspective(45, 1, 0.1, 10);

    PickScene() {
        agl.Translate(0, 0, -2.5);
        agl.Rotate(-50, {1, 0, 0});
        Pick(0);
    }
    /// True when there was a hit. The places wander over the whole mesh.
    bool Pick(int p_turn) {
        Types::Pos const position(300 + p_turn * 7919 % 400, 350 + p_turn * 6007 % 300);
        Ogl::HitBuffer buffer(2);
        {
            Utility::Scoped<Ogl::Agl> const scope{Utility::Unscoped<Ogl::Agl>(agl)};
            Ogl::HitDetect detect(scope, viewport, projection, position, {1, 1}, buffer);
            Ogl::AutoNameLoader names(detect, Ogl::HitRecord::NameFirst);
            names.Next();
            agl.Draw(waves);
        }
        return !buffer.Records().empty();
    }
};

void PickMesh(benchmark::State& p_state) {
    PickScene scene;
    Ogl::State state;
    state.viewport.rectangle = {0, 0, 1000, 1000};
    Ogl::PickVolume const volume(
        {499, 499, 501, 501}, scene.agl.Get(Ogl::Tokens::AGL_MODELVIEW_MATRIX), scene.projection, state);
    Ogl::PrimitiveTree::Shape const shape = ShapeOf(*scene.waves);
    Measurement measurement("us a pick", 1e6, 5);
    int turn = 0;
    int hits = 0;
    for (auto _ : p_state) {
        p_state.SetIterationTime(measurement.Ours(
            [&] {
                for (int pick = 0; pick < PickBatch; ++pick)
                    hits += scene.Pick(turn++) ? 1 : 0;
            },
            PickBatch));
        measurement.Reference("every triangle clipped", [&] {
            double nearest = Ogl::PickVolume::NoHit;
            auto const corner = [&](std::size_t p_index) {
                return Types::Vector4_Base<double>(
                    Types::Vector3_Base<double>(shape.positions[shape.indices[p_index]]), 1);
            };
            for (std::size_t i = 0; i < shape.indices.size(); i += 3)
                nearest = std::min(nearest, volume.TriangleDepth(corner(i), corner(i + 1), corner(i + 2)));
            benchmark::DoNotOptimize(nearest);
        });
    }
    if (hits != turn)
        p_state.SkipWithError("every pick must hit the mesh");
    measurement.Publish(p_state);
}
BENCHMARK(PickMesh)->Name("pick in a mesh of 1e6 triangles")->UseManualTime()->Iterations(30);

void BuildHierarchy(benchmark::State& p_state) {
    auto const waves = MakeWaves();
    Measurement measurement("s a mesh", 1, 0.3);
    for (auto _ : p_state)
        p_state.SetIterationTime(measurement.Ours([&] {
            Ogl::PrimitiveTree const tree(ShapeOf(*waves));
            benchmark::DoNotOptimize(tree.Memory());
        }));
    measurement.Publish(p_state);
}
BENCHMARK(BuildHierarchy)->Name("pick hierarchy, build, 1e6 triangles")->UseManualTime()->Iterations(10);

void HierarchyMemory(benchmark::State& p_state) {
    auto const waves = MakeWaves();
    for (auto _ : p_state) {
        std::size_t const before = HeapInUse();
        Ogl::PrimitiveTree const tree(ShapeOf(*waves));
        PublishFigure(p_state, static_cast<double>(HeapInUse() - before) / Triangles, "bytes a triangle", 40);
        p_state.SetIterationTime(1);
    }
}
BENCHMARK(HierarchyMemory)->Name("pick hierarchy, memory, 1e6 triangles")->UseManualTime()->Iterations(1);

} // namespace

} // namespace Bench
