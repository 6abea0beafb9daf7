#include "framework/algorithms/Hit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace Qor::Chart::Algorithms {

using Types::Matrix4;
using Types::Pos;
using Ray = Types::Ray_Base<double>;
using Vector3 = Types::Vector3_Base<double>;
using Viewport = Types::Viewport<0>;

namespace {

/// Where a point is seen in the window, in pixels.
Types::Vector3_Base<double> Project(Vector3 const& p_point, Matrix4 const& p_matrix, Viewport const& p_viewport) {
    auto const clip = p_matrix * Types::Vector4_Base<double>(p_point, 1);
    return {p_viewport.x + (clip.x / clip.w + 1) / 2 * p_viewport.width,
        p_viewport.y + (clip.y / clip.w + 1) / 2 * p_viewport.height, clip.z / clip.w};
}

/// A projection with its far plane at infinity.
Matrix4 InfiniteProjection() {
    Matrix4 matrix = Matrix4::Perspective(60, 1.5, 0.1, 100);
    matrix.Set(2, 2, -1);
    matrix.Set(2, 3, -0.2);
    return matrix;
}

} // namespace

TEST(HitTest, placesOnTheRightAndUpperSideBelongToTheNeighbour) {
    Viewport const viewport(10, 20, 30, 40);
    struct {
        Pos pos;
        bool hit;
    } const cases[] = {
        {{10, 20}, true}, {{39, 59}, true}, {{40, 59}, false}, {{39, 60}, false}, {{9, 20}, false}, {{10, 19}, false}};
    for (auto const& each : cases) {
        EXPECT_EQ(Hit::IsHit(viewport, each.pos), each.hit) << each.pos;
    }
    EXPECT_FALSE(Hit::IsHit(Viewport(10, 20, 0, 40), {10, 20}));
}

TEST(HitTest, everyPointOfTheRayIsSeenWhereOnePointed) {
    Viewport const viewport(100, 50, 640, 480);
    Matrix4 const views[] = {Matrix4::LookAt({3, -4, 5}, {0, 0, 0}, {0, 0, 1}),
        Matrix4::LookAt({1e6 + 3, 2e6, 5}, {1e6, 2e6, 0}, {0, 0, 1}) * Matrix4::Scaling({1, -2, 0.5})};
    Matrix4 const projections[] = {Matrix4::Perspective(45, 4.0 / 3, 0.1, 1e5), InfiniteProjection(),
        Matrix4::Ortho(-10, 10, -7, 7, -50, 50), Matrix4::Frustum(-0.1, 0.3, -0.2, 0.1, 0.5, 40)};
    for (Matrix4 const& view : views) {
        for (Matrix4 const& projection : projections) {
            for (Pos const pos : {Pos(100, 50), Pos(420, 290), Pos(700, 60)}) {
                Ray ray;
                ASSERT_TRUE(Hit::Unproject(pos, view, projection, viewport, ray));
                EXPECT_NEAR(Types::Length(ray.direction), 1, 1e-12);
                EXPECT_NEAR(Project(ray.origin, projection * view, viewport).z, -1, 1e-5) << projection;
                double depth = -1.0001;
                for (double const distance : {0.5, 5.0, 20.0}) {
                    auto const seen = Project(ray.PointAt(distance), projection * view, viewport);
                    EXPECT_NEAR(seen.x, pos.x, 1e-3) << projection;
                    EXPECT_NEAR(seen.y, pos.y, 1e-3) << projection;
                    EXPECT_GT(seen.z, depth) << "the ray leads towards the viewer: " << projection;
                    depth = seen.z;
                }
            }
        }
    }
}

TEST(HitTest, whatCannotBeInvertedFailsAndLeavesNoRay) {
    Viewport const viewport(0, 0, 100, 100);
    double const nan = std::numeric_limits<double>::quiet_NaN();
    struct {
        Matrix4 modelView;
        Matrix4 projection;
        Viewport viewport;
    } const cases[] = {{Matrix4::Scaling({1, 0, 1}), {}, viewport}, {{}, Matrix4::Scaling({1, 1, 0}), viewport},
        {Matrix4::Translation({nan, 0, 0}), {}, viewport}, {{}, {}, Viewport(0, 0, 0, 100)}};
    for (auto const& each : cases) {
        Ray ray({1, 2, 3}, {0, 0, 1});
        EXPECT_FALSE(Hit::Unproject({50, 50}, each.modelView, each.projection, each.viewport, ray));
        EXPECT_FALSE(ray.IsDefined());
    }
}

} // namespace Qor::Chart::Algorithms
