#include "framework/types/Frustum.h"
#include "framework/types/Matrix4.h"
#include "framework/types/Ray.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using namespace Qor::Chart::Types;
using Box = BoundingBox_Base<double>;
using Frustum = Frustum_Base<double>;
using Ray = Ray_Base<double>;
using Vector = Vector3_Base<double>;

TEST(RayTest, entersBoxesAtTheNearerSide) {
    Box const unit({0, 0, 0}, {1, 1, 1});
    struct Case {
        Ray ray;
        std::optional<double> distance;
    };
    for (Case const& c : {Case{{{-2, 0.5, 0.5}, {1, 0, 0}}, 2.0}, Case{{{-2, 0.5, 0.5}, {4, 0, 0}}, 0.5},
             Case{{{-2, 0.5, 0.5}, {-1, 0, 0}}, std::nullopt}, Case{{{0.5, 0.5, 0.5}, {0, 0, -1}}, 0.0},
             Case{{{-1, -1, -1}, {1, 1, 1}}, 1.0}, Case{{{-1, 1, 0.5}, {1, 0, 0}}, 1.0},
             Case{{{-1, 1.01, 0.5}, {1, 0, 0}}, std::nullopt}, Case{{{0.5, 0.5, 0.5}, {}}, std::nullopt},
             Case{{{5, 0, 0}, {-1, 2, 0}}, std::nullopt}}) {
        EXPECT_EQ(c.ray.Enters(unit), c.distance) << c.ray;
    }
    EXPECT_FALSE(Ray({0, 0, 0}, {1, 0, 0}).Enters(Box()));
    EXPECT_FALSE(Ray().IsDefined());
}

TEST(RayTest, distancesSurviveTransformation) {
    Matrix4 const matrix = Matrix4::Translation({1, 2, 3}) * Matrix4::Scaling({2, 2, 2});
    Ray const ray({0, 0, 0}, {1, 2, 0});
    Ray const image = ray.Transformed(matrix);
    EXPECT_EQ(image.PointAt(3), Vector(7, 14, 3));
    EXPECT_DOUBLE_EQ(ray.ClosestTo({1, 2, 9}), 1);
    EXPECT_DOUBLE_EQ(ray.ClosestTo({-1, -2, 0}), 0);
}

/// Whether a point projects into the rectangle, computed as the pipeline does it.
bool Projects(
    Vector const& p_point, Viewport<0> const& p_rectangle, Matrix4 const& p_clip, Viewport<0> const& p_viewport) {
    auto const clip = p_clip * Vector4_Base<double>(p_point, 1);
    if (clip.w <= 0) {
        return false;
    }
    Vector const device = clip.XYZ() / clip.w;
    double const x = p_viewport.x + (device.x + 1) / 2 * p_viewport.width;
    double const y = p_viewport.y + (device.y + 1) / 2 * p_viewport.height;
    return x >= p_rectangle.x && x <= p_rectangle.Right() && y >= p_rectangle.y && y <= p_rectangle.Top() &&
        std::abs(device.z) <= 1;
}

TEST(FrustumTest, holdsExactlyWhatProjectsIntoTheRectangle) {
    Viewport<0> const viewport(100, 50, 640, 480);
    Viewport<0> const rectangle(300, 200, 80, 120);
    Matrix4 const modelView = Matrix4::LookAt({3, 4, 9}, {0, 0, 0}, {0, 1, 0}) * Matrix4::Scaling({1, 2, -1});
    std::mt19937 random(5);
    std::uniform_real_distribution<double> number(-6, 6);
    for (Matrix4 const& projection : {Matrix4::Perspective(50, 4.0 / 3, 1, 20), Matrix4::Ortho(-5, 5, -4, 4, 1, 20)}) {
        Frustum const frustum(rectangle, modelView, projection, viewport);
        ASSERT_TRUE(frustum.IsDefined());
        int inside = 0;
        for (int round = 0; round < 4000; ++round) {
            Vector const point(number(random), number(random), number(random));
            bool const expected = Projects(point, rectangle, projection * modelView, viewport);
            EXPECT_EQ(frustum.Contains(point), expected) << point;
            Box box(point, point);
            EXPECT_EQ(frustum.Contains(box), expected);
            box.Grow(0.5);
            EXPECT_TRUE(!expected || frustum.MayIntersect(box));
            inside += expected;
        }
        EXPECT_GT(inside, 30);
        EXPECT_FALSE(frustum.MayIntersect(Box({50, 50, 50}, {60, 60, 60})));
        EXPECT_FALSE(frustum.MayIntersect(Box()));
    }
}

TEST(FrustumTest, unusableArgumentsLeaveItUndefinedAndEmpty) {
    Viewport<0> const viewport(0, 0, 100, 100);
    Matrix4 notFinite;
    notFinite.Set(0, 0, std::nan(""));
    for (Frustum const& frustum : {Frustum(), Frustum({5, 5, 0, 5}, {}, {}, viewport),
             Frustum({5, 5, 5, 5}, {}, {}, {0, 0, 0, 100}), Frustum({5, 5, 5, 5}, notFinite, {}, viewport)}) {
        EXPECT_FALSE(frustum.IsDefined());
        EXPECT_FALSE(frustum.Contains(Vector()));
        EXPECT_FALSE(frustum.MayIntersect(Box({-1, -1, -1}, {1, 1, 1})));
        EXPECT_EQ(frustum, Frustum());
    }
    EXPECT_TRUE(Frustum::PickMatrix(viewport, viewport).IsIdentity());
}

} // namespace
