#include "framework/library/Shapes.h"

#include "framework/library/Geometry.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <tuple>
#include <utility>

namespace Qor::Chart::Library {

namespace {

using Vector3 = Types::Vector3_Base<double>;

struct ShapesTest : testing::TestWithParam<std::tuple<Shape, unsigned>> {
    Shape const shape = std::get<0>(GetParam());
    Mesh const mesh = Shapes::Build(shape, std::get<1>(GetParam()));

    Vector3 Position(std::size_t p_corner) const { return Vector3(mesh.vertices.positions[mesh.indices[p_corner]]); }
    Vector3 FaceNormal(std::size_t p_triangle) const {
        Vector3 const a = Position(3 * p_triangle);
        return Types::Cross(Position(3 * p_triangle + 1) - a, Position(3 * p_triangle + 2) - a);
    }
    std::size_t TriangleCount() const { return mesh.indices.size() / 3; }
};

using Corner = std::tuple<float, float, float>;

Corner KeyOf(Types::Vector3_Base<float> const& p_position) {
    return {p_position.x + 0.0F, p_position.y + 0.0F, p_position.z + 0.0F};
}

} // namespace

TEST_P(ShapesTest, isAClosedSurfaceSeenCounterClockwiseFromOutside) {
    // Each edge is run through once in each direction, and the volume inside is positive.
    std::map<std::pair<Corner, Corner>, int> edges;
    double volume = 0;
    for (std::size_t i = 0; i < TriangleCount(); ++i) {
        std::array<Corner, 3> corners;
        for (std::size_t corner = 0; corner < 3; ++corner) {
            corners[corner] = KeyOf(mesh.vertices.positions[mesh.indices[3 * i + corner]]);
        }
        for (std::size_t corner = 0; corner < 3; ++corner) {
            ++edges[{corners[corner], corners[(corner + 1) % 3]}];
        }
        volume += Types::Dot(Position(3 * i), FaceNormal(i)) / 6;
        EXPECT_GT(Types::Length(FaceNormal(i)), 0) << "triangle " << i << " has no area";
    }
    for (auto const& [edge, count] : edges) {
        EXPECT_EQ(count, 1);
        EXPECT_TRUE(edges.contains({edge.second, edge.first}));
    }
    EXPECT_GT(volume, 0.01);
    EXPECT_LE(volume, 1 + 1e-9);
}

TEST_P(ShapesTest, hasUnitNormalsOnTheSideOfItsFaces) {
    ASSERT_EQ(mesh.vertices.normals.size(), mesh.vertices.positions.size());
    ASSERT_EQ(mesh.vertices.texCoords[0].size(), mesh.vertices.positions.size());
    for (auto const& normal : mesh.vertices.normals) {
        EXPECT_NEAR(Types::Length(normal), 1, 1e-6);
    }
    for (std::size_t i = 0; i < mesh.indices.size(); ++i) {
        Vector3 const face = Types::Normalized(FaceNormal(i / 3));
        // Between two neighbours of a rough circle a normal may lean by half a step.
        EXPECT_GT(Types::Dot(face, Vector3(mesh.vertices.normals[mesh.indices[i]])), 0.4) << "triangle " << i / 3;
    }
}

TEST_P(ShapesTest, fillsTheUnitBox) {
    double height = 0.5;
    height = shape == Shape::Disc ? 0.05 : shape == Shape::Torus ? 0.15 : height;
    Types::BoundingBox_Base<double> const expected({-0.5, -0.5, -height}, {0.5, 0.5, height});
    auto const bounds = Ogl::VertexBuffer(mesh.vertices).Bounds();
    EXPECT_NEAR(Types::Length(bounds.Min() - expected.Min()), 0, 1e-7) << bounds;
    EXPECT_NEAR(Types::Length(bounds.Max() - expected.Max()), 0, 1e-7) << bounds;
    EXPECT_TRUE(Types::BoundingBox_Base<double>({-0.5, -0.5, -0.5}, {0.5, 0.5, 0.5}).Contains(bounds.Min()));
}

INSTANTIATE_TEST_SUITE_P(All, ShapesTest,
    testing::Combine(testing::ValuesIn(AllShapes), testing::Values(4U, 7U, Shapes::DefaultSegments)),
    [](auto const& p_info) {
        return std::string(NameOf(std::get<0>(p_info.param))) + std::to_string(std::get<1>(p_info.param));
    });

TEST(ShapeVolumeTest, agreesWithTheFormulas) {
    struct {
        Shape shape;
        double volume;
    } const cases[] = {{Shape::Cube, 1}, {Shape::Sphere, 0.5236}, {Shape::Cylinder, 0.7854}, {Shape::Cone, 0.2618},
        {Shape::Tetrahedron, 1.0 / 3}, {Shape::Octahedron, 1.0 / 6}, {Shape::Cross, 7.0 / 27},
        {Shape::Pyramid, 1.0 / 3}, {Shape::Torus, 0.1555}};
    for (auto const& each : cases) {
        Mesh const mesh = Shapes::Build(each.shape, 512);
        double volume = 0;
        for (std::size_t i = 0; i < mesh.indices.size(); i += 3) {
            auto const at = [&](std::size_t p_corner) {
                return Vector3(mesh.vertices.positions[mesh.indices[i + p_corner]]);
            };
            volume += Types::Dot(at(0), Types::Cross(at(1), at(2))) / 6;
        }
        EXPECT_NEAR(volume, each.volume, 1e-4) << NameOf(each.shape);
    }
}

TEST(GeometryTest, keepsOneBufferForEachShape) {
    Geometry const geometry;
    EXPECT_EQ(geometry.UnitCube(), geometry.Buffer(Shape::Cube));
    for (Shape const shape : AllShapes) {
        EXPECT_TRUE(geometry.Buffer(shape)->IsValid());
        EXPECT_EQ(geometry.Buffer(shape), geometry.Buffer(shape));
    }
    qordebug::CaptureScope const log(Utility::GetLogger());
    EXPECT_EQ(geometry.Buffer(static_cast<Shape>(99)), geometry.UnitCube());
    EXPECT_EQ(log.texts(qordebug::severity::ensure).size(), 1U);
}

} // namespace Qor::Chart::Library
