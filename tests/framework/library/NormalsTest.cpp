#include "framework/library/Normals.h"

#include "framework/library/Shapes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace Qor::Chart::Library {

namespace {

using Vector3 = Types::Vector3_Base<float>;

/// A shape with new normals, as if it came from a file without any, with either shared or separate vertices.
Mesh Renewed(Shape p_shape, bool p_shared) {
    Mesh const built = Shapes::Build(p_shape, 64);
    Mesh mesh;
    for (std::uint32_t const index : built.indices) {
        Vector3 const& position = built.vertices.positions[index];
        auto& positions = mesh.vertices.positions;
        auto const found = p_shared ? std::find(positions.begin(), positions.end(), position) : positions.end();
        mesh.indices.push_back(static_cast<std::uint32_t>(found - positions.begin()));
        if (found == positions.end())
            positions.push_back(position);
    }
    Normals::Generate(mesh);
    EXPECT_EQ(mesh.vertices.normals.size(), mesh.vertices.positions.size());
    return mesh;
}

} // namespace

TEST(NormalsTest, keepsEdgesSharpAndRoundSurfacesSmooth) {
    for (bool const shared : {false, true}) {
        Mesh const cube = Renewed(Shape::Cube, shared);
        EXPECT_EQ(cube.vertices.positions.size(), shared ? 24U : 36U) << "a corner of a cube has three normals";
        for (Vector3 const& normal : cube.vertices.normals)
            EXPECT_NEAR(std::max({std::abs(normal.x), std::abs(normal.y), std::abs(normal.z)}), 1, 1e-6);
        Mesh const sphere = Renewed(Shape::Sphere, shared);
        for (std::size_t i = 0; i < sphere.vertices.normals.size(); ++i) {
            Vector3 const expected = Types::Normalized(sphere.vertices.positions[i]);
            EXPECT_GT(Types::Dot(sphere.vertices.normals[i], expected), 0.995F);
        }
    }
}

TEST(NormalsTest, copesWithTrianglesWithoutAreaAndWithManyAtOneVertex) {
    Mesh fan;
    fan.vertices.positions = {{0, 0, 0}, {1, 0, 0}};
    constexpr std::uint32_t Count = 100000;
    for (std::uint32_t i = 2; i < Count; ++i) {
        float const angle = 6 * static_cast<float>(i) / Count;
        fan.vertices.positions.emplace_back(std::cos(angle), std::sin(angle), 0.0F);
        fan.indices.insert(fan.indices.end(), {0, i - 1, i});
    }
    fan.vertices.colors.resize(fan.vertices.positions.size());
    fan.indices.insert(fan.indices.end(), {0, 0, 0});
    Normals::Generate(fan);
    EXPECT_EQ(fan.vertices.colors.size(), fan.vertices.positions.size());
    for (Vector3 const& normal : fan.vertices.normals)
        EXPECT_NEAR(normal.z, 1, 1e-5);
}

} // namespace Qor::Chart::Library
