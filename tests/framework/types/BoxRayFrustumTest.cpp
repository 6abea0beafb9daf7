#include "framework/types/BoundingBox.h"
#include "framework/types/Frustum.h"
#include "framework/types/Matrix4.h"
#include "framework/types/Ray.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

namespace {

using namespace Qor::Chart::Types;
using Box = BoundingBox_Base<double>;
using Frustum = Frustum_Base<double>;
using Ray = Ray_Base<double>;
using Vector = Vector3_Base<double>;
using Limits = std::numeric_limits<double>;

TEST(BoundingBoxTest, isUndefinedUntilItHoldsAPoint) {
    Box box;
    EXPECT_FALSE(box.IsDefined() || box.Contains(Vector()) || box.Intersects(Box()) || box.Add(Box()));
    EXPECT_EQ(box.Extents(), Vector());
    EXPECT_TRUE(box.Grow(1));
    EXPECT_EQ(box, Box());
    EXPECT_TRUE(box.Add(Vector(1, 2, 3)));
    EXPECT_EQ(box, Box({1, 2, 3}, {1, 2, 3}));
    EXPECT_TRUE(box.Contains(Vector(1, 2, 3)));
}

TEST(BoundingBoxTest, refusesWhatIsNotFinite) {
    Box const unit({0, 0, 0}, {1, 1, 1});
    for (double const bad : {Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity()}) {
        for (Vector const& point : {Vector(bad, 0, 0), Vector(0, bad, 0), Vector(0, 0, bad)}) {
            Box box = unit;
            EXPECT_FALSE(box.Add(point) || box.Grow(point) || box.Contains(point));
            EXPECT_EQ(box, unit);
            EXPECT_FALSE(Box(point, {}).IsDefined() || Box({}, point).IsDefined());
            EXPECT_FALSE(unit.Transformed(Matrix4::Translation(point)).IsDefined());
        }
    }
    Box large({-Limits::max(), 0, 0}, {Limits::max(), 1, 1});
    EXPECT_EQ(large.Center(), Vector(0, 0.5, 0.5));
    EXPECT_FALSE(large.Grow(Limits::max()) || large.Transformed(Matrix4::Scaling(2)).IsDefined());
    EXPECT_FALSE((BoundingBox_Base<float>({0, 0, 0}, {1, 1, 1}).Transformed(Matrix4::Scaling(1e300)).IsDefined()));
}

TEST(BoundingBoxTest, transformedBoxIsTheBoxOfTheCorners) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> number(-10, 10);
    auto const point = [&] { return Vector(number(random), number(random), number(random)); };
    for (int round = 0; round < 300; ++round) {
        Box const box(point(), point());
        Matrix4 matrix = Matrix4::Translation(point()) * Matrix4::Rotation(number(random) * 36, point());
        matrix.Set(0, 1, number(random));
        if (round % 3 == 0)
            matrix = Matrix4::Perspective(60, 1, 0.5, 50) * Matrix4::Translation({0, 0, -40}) * matrix;
        Box expected;
        bool behindTheEye = false;
        for (unsigned corner = 0; corner < 8; ++corner) {
            auto const image = matrix * Vector4_Base<double>(box.Corner(corner), 1);
            behindTheEye = behindTheEye || image.w <= 0;
            expected.Add(image.XYZ() / image.w);
        }
        Box const transformed = box.Transformed(matrix);
        ASSERT_EQ(transformed.IsDefined(), !behindTheEye);
        if (!behindTheEye) {
            EXPECT_LE(Length(transformed.Min() - expected.Min()), 1e-11);
            EXPECT_LE(Length(transformed.Max() - expected.Max()), 1e-11);
        }
    }
    EXPECT_FALSE(Box().Transformed(Matrix4()).IsDefined());
}

TEST(RayTest, entersBoxesAtTheNearerSide) {
    using Case = std::pair<Ray, std::optional<double>>;
    for (auto const& [ray, distance] :
        {Case{{{-2, 0.5, 0.5}, {4, 0, 0}}, 0.5}, Case{{{-2, 0.5, 0.5}, {-1, 0, 0}}, std::nullopt},
            Case{{{0.5, 0.5, 0.5}, {0, 0, -1}}, 0.0}, Case{{{-1, -1, -1}, {1, 1, 1}}, 1.0},
            Case{{{-1, 1, 0.5}, {1, 0, 0}}, 1.0}, Case{{{-1, 1.01, 0.5}, {1, 0, 0}}, std::nullopt},
            Case{{{0.5, 0.5, 0.5}, {}}, std::nullopt}, Case{{{5, 0, 0}, {-1, 2, 0}}, std::nullopt}}) {
        EXPECT_EQ(ray.Enters(Box({0, 0, 0}, {1, 1, 1})), distance) << ray;
        EXPECT_FALSE(ray.Enters(Box()));
    }
}

/// Whether a point projects into the rectangle, computed as the pipeline does it.
bool Projects(Vector const& p_point, Viewport<0> const& p_rectangle, Matrix4 const& p_clip, Viewport<0> const& p_view) {
    auto const clip = p_clip * Vector4_Base<double>(p_point, 1);
    Vector const device = clip.XYZ() / clip.w;
    double const x = p_view.x + (device.x + 1) / 2 * p_view.width;
    double const y = p_view.y + (device.y + 1) / 2 * p_view.height;
    return clip.w > 0 && x >= p_rectangle.x && x <= p_rectangle.Right() && y >= p_rectangle.y &&
        y <= p_rectangle.Top() && std::abs(device.z) <= 1;
}

TEST(FrustumTest, holdsExactlyWhatProjectsIntoTheRectangle) {
    Viewport<0> const viewport(100, 50, 640, 480);
    Viewport<0> const rectangle(300, 200, 80, 120);
    Matrix4 const modelView = Matrix4::LookAt({3, 4, 9}, {0, 0, 0}, {0, 1, 0}) * Matrix4::Scaling({1, 2, -1});
    std::mt19937 random(5);
    std::uniform_real_distribution<double> number(-6, 6);
    for (Matrix4 const& projection : {Matrix4::Perspective(50, 4.0 / 3, 1, 20), Matrix4::Ortho(-5, 5, -4, 4, 1, 20)}) {
        Frustum const frustum(rectangle, modelView, projection, viewport);
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
        EXPECT_FALSE(frustum.MayIntersect(Box({50, 50, 50}, {60, 60, 60})) || frustum.MayIntersect(Box()));
    }
}

TEST(FrustumTest, unusableArgumentsLeaveItUndefinedAndEmpty) {
    Viewport<0> const viewport(0, 0, 100, 100);
    Matrix4 const notFinite = Matrix4::Translation({std::nan(""), 0, 0});
    for (Frustum const& frustum : {Frustum(), Frustum({5, 5, 0, 5}, {}, {}, viewport),
             Frustum({5, 5, 5, 5}, {}, {}, {0, 0, 0, 100}), Frustum({5, 5, 5, 5}, notFinite, {}, viewport)}) {
        EXPECT_FALSE(frustum.IsDefined() || frustum.Contains(Vector()));
        EXPECT_FALSE(frustum.MayIntersect(Box({-1, -1, -1}, {1, 1, 1})));
    }
}

} // namespace
