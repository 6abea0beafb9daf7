#include "framework/ogl/PickVolume.h"

#include "tests/framework/ogl/referee/Random.h"
#include "framework/ogl/PrimitiveBuffer.h"
#include "framework/ogl/PrimitiveTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace Qor::Chart::Ogl {
namespace {

using Vector3 = Types::Vector3_Base<double>;
using Vector4 = PickVolume::Vector4;
using Matrix4 = Types::Matrix4;
using Referee::Random;

State MakeState(Random& p_random) {
    State state;
    state.viewport.rectangle = {20, 10, 400, 300};
    for (std::size_t i = 0; i < 2; ++i) {
        Vector3 const normal = p_random.Point(1);
        state.clipPlanes.planes[i] = {normal, p_random.In(0, 2)};
        state.enables |= EnableBit::ClipPlane0 << i;
    }
    return state;
}

std::shared_ptr<PrimitiveBuffer> MakeBuffer(
    Token p_kind, std::vector<Types::Vector3_Base<float>> p_positions, std::vector<std::uint32_t> p_indices) {
    VertexData data;
    data.positions = std::move(p_positions);
    return std::make_shared<PrimitiveBuffer>(
        std::make_shared<IndexBuffer>(p_kind, std::move(p_indices)), std::make_shared<VertexBuffer>(std::move(data)));
}

/// Waves over a square of p_side by p_side cells, as quads; one vertex is infinitely high.
std::shared_ptr<PrimitiveBuffer> MakeWaves(std::uint32_t p_side) {
    std::vector<Types::Vector3_Base<float>> positions;
    std::vector<std::uint32_t> indices;
    for (std::uint32_t y = 0; y <= p_side; ++y) {
        for (std::uint32_t x = 0; x <= p_side; ++x) {
            float const u = 2 * float(x) / float(p_side) - 1;
            float const v = 2 * float(y) / float(p_side) - 1;
            positions.emplace_back(u, v, 0.3F * std::sin(9 * u) * std::cos(7 * v));
            if (x < p_side && y < p_side) {
                std::uint32_t const first = y * (p_side + 1) + x;
                indices.insert(indices.end(), {first, first + 1, first + p_side + 2, first + p_side + 1});
            }
        }
    }
    positions[positions.size() / 3].z = std::numeric_limits<float>::infinity();
    return MakeBuffer(Tokens::AGL_QUADS, std::move(positions), std::move(indices));
}

std::shared_ptr<PrimitiveBuffer> MakeCloud(
    Token p_kind, std::size_t p_size, double p_spread, Random& p_random, Vector3 const& p_scale = {1, 1, 1}) {
    std::vector<Types::Vector3_Base<float>> positions(p_size);
    Vector3 center;
    for (std::size_t i = 0; i < p_size; ++i) {
        center = i % 3 == 0 ? p_random.Point(1) : center;
        Vector3 const point = center + p_random.Point(p_spread);
        positions[i] =
            Types::Vector3_Base<float>(Vector3(point.x * p_scale.x, point.y * p_scale.y, point.z * p_scale.z));
    }
    std::vector<std::uint32_t> indices(p_size);
    std::iota(indices.begin(), indices.end(), 0U);
    return MakeBuffer(p_kind, std::move(positions), std::move(indices));
}

double BruteForce(PrimitiveBuffer const& p_buffer, PickVolume const& p_volume) {
    Pipeline const pipeline = FilledPipeline(p_buffer.Kind());
    std::size_t const corners = IndicesPerPrimitive(pipeline);
    auto const indices = p_buffer.Assembled(pipeline);
    double nearest = PickVolume::NoHit;
    for (std::size_t i = 0; i < indices.size(); i += corners) {
        std::vector<Vector4> positions;
        for (std::uint32_t const index : indices.subspan(i, corners))
            positions.emplace_back(Vector3(p_buffer.Vertices()->Data().positions[index]), 1);
        nearest = std::min(nearest, p_volume.Depth(positions));
    }
    return nearest;
}

TEST(PrimitiveTree, findsWhatBruteForceFindsWithLittleMemory) {
    Random random(7);
    auto const waves = MakeWaves(225);
    PrimitiveTree const tree({waves->Vertices()->Data().positions, waves->Assembled(Pipeline::Triangles), 3});
    EXPECT_LT(tree.Memory(), 225 * 225 * 2 * 20);
    struct Case {
        std::shared_ptr<PrimitiveBuffer> buffer;
        int turns;
        double size = 1;
    };
    std::vector<Case> cases = {{waves, 60}, {MakeCloud(Tokens::AGL_LINES, 6000, 0.05, random), 400},
        {MakeCloud(Tokens::AGL_POINTS, 5000, 0.05, random), 400},
        {MakeCloud(Tokens::AGL_TRIANGLES, 7000, 0.1, random), 400},
        {MakeCloud(Tokens::AGL_TRIANGLE_STRIP, 300, 0.5, random), 400},
        {MakeCloud(Tokens::AGL_POINTS, 100, 0, random, {0, 0, 0}), 100},
        {MakeCloud(Tokens::AGL_TRIANGLES, 3000, 0.1, random, {0, 1, 1e-30}), 400},
        {MakeCloud(Tokens::AGL_TRIANGLES, 3000, 0.1, random, {1e-37, 1e-37, 1e-37}), 400, 1e-37},
        {MakeCloud(Tokens::AGL_TRIANGLES, 3000, 0.1, random, {3e38, 3e38, 3e38}), 400, 3e38}};
    for (std::size_t size = 1; size < 22; ++size) {
        cases.push_back({MakeCloud(Tokens::AGL_TRIANGLES, 3 * size, 1, random), 100});
    }
    for (auto const& [buffer, turns, size] : cases) {
        int hits = 0;
        for (int turn = 0; turn < turns; ++turn) {
            State state = MakeState(random);
            if (turn % 4 == 0) {
                state.enables |= EnableBit::CullFace;
                state.viewport.nearDepth = 1;
                state.viewport.farDepth = 0;
            }
            Matrix4 const projection =
                turn % 2 == 0 ? Matrix4::Perspective(60, 4.0 / 3, 0.1, 20) : Matrix4::Ortho(-2, 2, -1.5, 1.5, -4, 4);
            Matrix4 const modelView = Matrix4::Translation({0, 0, -random.In(0, 2)}) *
                Matrix4::Rotation(random.In(0, 360), random.Point(1)) *
                Matrix4::Scaling({1 / size, 1 / size, 1 / size});
            double const x = random.In(100, 340);
            double const y = random.In(80, 240);
            double const reach = std::pow(10, random.In(0, 2.5));
            PickVolume const volume({x - reach, y - reach, x + reach, y + reach}, modelView, projection, state);
            double const expected = BruteForce(*buffer, volume);
            hits += expected != PickVolume::NoHit ? 1 : 0;
            ASSERT_EQ(buffer->Pick(volume, PickVolume::NoHit), expected);
            ASSERT_EQ(buffer->Pick(volume, expected), PickVolume::NoHit) << "only nearer hits are looked for";
        }
        EXPECT_GT(hits, turns / 20);
    }
}

} // namespace
} // namespace Qor::Chart::Ogl
