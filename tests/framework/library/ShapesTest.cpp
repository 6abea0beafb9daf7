#include "framework/library/Shapes.h"

#include "tests/framework/library/Triangles.h"

#include <gtest/gtest.h>

#include <array>
#include <map>

namespace Qor::Chart::Library {

TEST(ShapesTest, areClosedSurfacesWithNormalsThatFillTheUnitBox) {
    for (Shape const shape : AllShapes) {
        for (unsigned const segments : {4U, 7U, Shapes::DefaultSegments}) {
            SCOPED_TRACE(std::string(NameOf(shape)) + std::to_string(segments));
            Mesh const mesh = Shapes::Build(shape, segments);
            EXPECT_EQ(mesh.vertices.texCoords[0].size(), mesh.vertices.positions.size());
            EXPECT_LE(ExpectSolid(mesh.vertices, mesh.indices), 1 + 1e-9);

            // Each edge is run through once in each direction.
            std::map<std::array<float, 6>, int> edges;
            for (std::size_t i = 0; i < mesh.indices.size(); ++i) {
                auto const& a = mesh.vertices.positions[mesh.indices[i]];
                auto const& b = mesh.vertices.positions[mesh.indices[i % 3 == 2 ? i - 2 : i + 1]];
                ++edges[{a.x + 0.0F, a.y + 0.0F, a.z + 0.0F, b.x + 0.0F, b.y + 0.0F, b.z + 0.0F}];
            }
            for (auto const& [e, count] : edges) {
                EXPECT_EQ(count, 1);
                EXPECT_TRUE(edges.contains({e[3], e[4], e[5], e[0], e[1], e[2]}));
            }

            double const height = shape == Shape::Disc ? 0.05 : shape == Shape::Torus ? 0.15 : 0.5;
            auto const bounds = Ogl::VertexBuffer(mesh.vertices).Bounds();
            Types::Vector3_Base<double> const corner(0.5, 0.5, height);
            EXPECT_NEAR(Types::Length(bounds.Max() - corner), 0, 1e-7) << bounds;
            EXPECT_NEAR(Types::Length(bounds.Min() + corner), 0, 1e-7) << bounds;
        }
    }
}

} // namespace Qor::Chart::Library
