#include "framework/library/Normals.h"

#include "framework/library/Shapes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace Qor::Chart::Library {

namespace {

using Vector3 = Types::Vector3_Base<float>;

/// A shape as it would come from a file without normals, either with shared or with separate vertices.
Mesh WithoutNormals(Shape p_shape, bool p_shared) {
    Mesh const built = Shapes::Build(p_shape, 64);
    Mesh mesh;
    for (std::uint32_t const index : built.indices) {
        Vector3 const& position = built.vertices.positions[index];
        auto& positions = mesh.vertices.positions;
        auto const found = p_shared ? std::find(positions.begin(), positions.end(), position) : positions.end();
        mesh.indices.push_back(static_cast<std::uint32_t>(found - positions.begin()));
        if (found == positions.end()) {
            positions.push_back(position);
        }
    }
    return mesh;
}

} // namespace

TEST(NormalsTest, keepsEdgesSharpAndRoundSurfacesSmooth) {
    for (bool const shared : {false, true}) {
        Mesh cube = WithoutNormals(Shape::Cube, shared);
        Normals::Generate(cube);
        EXPECT_EQ(cube.indices.size(), 36U);
        for (Vector3 const& normal : cube.vertices.normals) {
            EXPECT_NEAR(std::max({std::abs(normal.x), std::abs(normal.y), std::abs(normal.z)}), 1, 1e-6);
        }
        Mesh sphere = WithoutNormals(Shape::Sphere, shared);
        Normals::Generate(sphere);
        ASSERT_EQ(sphere.vertices.normals.size(), sphere.vertices.positions.size());
        for (std::size_t i = 0; i < sphere.vertices.normals.size(); ++i) {
            Vector3 const expected = Types::Normalized(sphere.vertices.positions[i]);
            EXPECT_GT(Types::Dot(sphere.vertices.normals[i], expected), 0.995F);
        }
    }
    Mesh shared = WithoutNormals(Shape::Cube, true);
    Normals::Generate(shared);
    EXPECT_EQ(shared.vertices.positions.size(), 24U) << "a corner of a cube has three normals";
}

TEST(NormalsTest, copesWithTrianglesWithoutAreaAndWithManyAtOneVertex) {
    Mesh fan;
    fan.vertices.positions = {{0, 0, 0}};
    constexpr std::uint32_t Count = 100000;
    for (std::uint32_t i = 0; i <= Count; ++i) {
        double const angle = 6.283185307179586 * i / Count;
        fan.vertices.positions.emplace_back(
            static_cast<float>(std::cos(angle)), static_cast<float>(std::sin(angle)), 0.0F);
    }
    fan.vertices.colors.resize(fan.vertices.positions.size());
    for (std::uint32_t i = 1; i <= Count; ++i) {
        fan.indices.insert(fan.indices.end(), {0, i, i + 1});
    }
    fan.indices.insert(fan.indices.end(), {0, 0, 0});
    Normals::Generate(fan);
    EXPECT_EQ(fan.vertices.colors.size(), fan.vertices.positions.size());
    for (Vector3 const& normal : fan.vertices.normals) {
        EXPECT_NEAR(normal.z, 1, 1e-5);
    }
}

} // namespace Qor::Chart::Library
