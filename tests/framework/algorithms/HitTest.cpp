#include "framework/algorithms/Hit.h"

#include <gtest/gtest.h>

#include <limits>

namespace Qor::Chart::Algorithms {

using Types::Matrix4;
using Types::Pos;
using Ray = Types::Ray_Base<double>;
using Vector3 = Types::Vector3_Base<double>;
using Viewport = Types::Viewport<0>;

namespace {

/// Where a point is seen in the window, in pixels.
Vector3 Project(Vector3 const& p_point, Matrix4 const& p_matrix, Viewport const& p_viewport) {
    auto const clip = p_matrix * Types::Vector4_Base<double>(p_point, 1);
    return {p_viewport.x + (clip.x / clip.w + 1) / 2 * p_viewport.width,
        p_viewport.y + (clip.y / clip.w + 1) / 2 * p_viewport.height, clip.z / clip.w};
}

} // namespace

TEST(HitTest, everyPointOfTheRayIsSeenWhereOnePointed) {
    Viewport const viewport(100, 50, 640, 480);
    Matrix4 farPlaneAtInfinity = Matrix4::Perspective(60, 1.5, 0.1, 100);
    farPlaneAtInfinity.Set(2, 2, -1);
    farPlaneAtInfinity.Set(2, 3, -0.2);
    for (Matrix4 const& view : {Matrix4::LookAt({3, -4, 5}, {0, 0, 0}, {0, 0, 1}),
             Matrix4::LookAt({1e6 + 3, 2e6, 5}, {1e6, 2e6, 0}, {0, 0, 1}) * Matrix4::Scaling({1, -2, 0.5})}) {
        for (Matrix4 const& projection : {Matrix4::Perspective(45, 4.0 / 3, 0.1, 1e5), farPlaneAtInfinity,
                 Matrix4::Ortho(-10, 10, -7, 7, -50, 50), Matrix4::Frustum(-0.1, 0.3, -0.2, 0.1, 0.5, 40)}) {
            for (Pos const pos : {Pos(100, 50), Pos(420, 290), Pos(700, 60)}) {
                Ray ray;
                ASSERT_TRUE(Hit::Unproject(pos, view, projection, viewport, ray));
                EXPECT_NEAR(Types::Length(ray.direction), 1, 1e-12);
                EXPECT_NEAR(Project(ray.origin, projection * view, viewport).z, -1, 1e-5) << projection;
                double depth = -1.0001;
                for (double const distance : {0.5, 5.0, 20.0}) {
                    Vector3 const seen = Project(ray.PointAt(distance), projection * view, viewport);
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
    Matrix4 const notFinite = Matrix4::Translation({std::numeric_limits<double>::quiet_NaN(), 0, 0});
    Viewport const viewport(0, 0, 100, 100);
    using Case = std::tuple<Matrix4, Matrix4, Viewport>;
    for (auto const& [modelView, projection, area] :
        {Case(Matrix4::Scaling({1, 0, 1}), {}, viewport), Case({}, Matrix4::Scaling({1, 1, 0}), viewport),
            Case(notFinite, {}, viewport), Case({}, {}, Viewport(0, 0, 0, 100))}) {
        Ray ray({1, 2, 3}, {0, 0, 1});
        EXPECT_FALSE(Hit::Unproject({50, 50}, modelView, projection, area, ray));
        EXPECT_FALSE(ray.IsDefined());
    }
}

} // namespace Qor::Chart::Algorithms
