#include "framework/types/BoundingBox.h"
#include "framework/types/Matrix4.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <sstream>

namespace {

using namespace Qor::Chart::Types;
using Box = BoundingBox_Base<double>;
using Vector = Vector3_Base<double>;

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double Largest = std::numeric_limits<double>::max();

TEST(BoundingBoxTest, isUndefinedUntilItHoldsAPoint) {
    Box box;
    EXPECT_FALSE(box.IsDefined());
    EXPECT_EQ(box.Min(), Vector());
    EXPECT_EQ(box.Max(), Vector());
    EXPECT_EQ(box.Extents(), Vector());
    EXPECT_FALSE(box.Contains(Vector()));
    EXPECT_TRUE(box.Grow(1));
    EXPECT_FALSE(box.Add(Box()));
    EXPECT_EQ(box, Box());
    EXPECT_TRUE(box.Add(Vector(1, 2, 3)));
    EXPECT_EQ(box, Box({1, 2, 3}, {1, 2, 3}));
    EXPECT_TRUE(box.Contains(Vector(1, 2, 3)));
    box.Reset();
    EXPECT_EQ(box, Box());
    std::ostringstream stream;
    stream << box << Box({1, 2, 3}, {0, 0, 5});
    EXPECT_EQ(stream.str(), "[undefined][(0, 0, 3), (1, 2, 5)]");
}

TEST(BoundingBoxTest, refusesWhatIsNotFinite) {
    Box const unit({0, 0, 0}, {1, 1, 1});
    for (double const bad : {NaN, Infinity, -Infinity}) {
        for (Vector const& point : {Vector(bad, 0, 0), Vector(0, bad, 0), Vector(0, 0, bad)}) {
            Box box = unit;
            EXPECT_FALSE(box.Add(point));
            EXPECT_FALSE(box.Grow(point));
            EXPECT_EQ(box, unit);
            EXPECT_FALSE(Box(point, {}).IsDefined());
            EXPECT_FALSE(Box({}, point).IsDefined());
            EXPECT_FALSE(box.Contains(point));
            EXPECT_FALSE(unit.Transformed(Matrix4::Translation(point)).IsDefined());
        }
    }
    Box large({-Largest, 0, 0}, {Largest, 1, 1});
    EXPECT_EQ(large.Center(), Vector(0, 0.5, 0.5));
    EXPECT_FALSE(large.Grow(Largest));
    EXPECT_FALSE(large.Transformed(Matrix4::Scaling(2)).IsDefined());
    EXPECT_FALSE((BoundingBox_Base<float>({0, 0, 0}, {1, 1, 1}).Transformed(Matrix4::Scaling(1e300)).IsDefined()));
}

TEST(BoundingBoxTest, growsAndShrinksAtMostToItsCenter) {
    Box box({0, 0, 0}, {2, 4, 6});
    EXPECT_TRUE(box.Grow({1, -1, -4}));
    EXPECT_EQ(box, Box({-1, 1, 3}, {3, 3, 3}));
}

TEST(BoundingBoxTest, overlapCountsTouching) {
    Box const unit({0, 0, 0}, {1, 1, 1});
    EXPECT_TRUE(unit.Intersects(Box({1, 1, 1}, {2, 2, 2})));
    EXPECT_FALSE(unit.Intersects(Box({1.1, 0, 0}, {2, 1, 1})));
    EXPECT_TRUE(unit.Intersects(Box({-9, 0.4, 0.4}, {9, 0.6, 0.6})));
    EXPECT_FALSE(unit.Intersects(Box()));
    EXPECT_FALSE(Box().Intersects(Box()));
}

TEST(BoundingBoxTest, transformedBoxIsTheBoxOfTheCorners) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> number(-10, 10);
    auto const point = [&] { return Vector(number(random), number(random), number(random)); };
    for (int round = 0; round < 300; ++round) {
        Box const box(point(), point());
        Matrix4 matrix = Matrix4::Translation(point()) * Matrix4::Rotation(number(random) * 36, point());
        matrix.Set(0, 1, number(random));
        if (round % 3 == 0) {
            matrix = Matrix4::Perspective(60, 1, 0.5, 50) * Matrix4::Translation({0, 0, -40}) * matrix;
        }
        Box expected;
        bool behindTheEye = false;
        for (unsigned corner = 0; corner < 8; ++corner) {
            auto const image = matrix * Vector4_Base<double>(box.Corner(corner), 1);
            behindTheEye = behindTheEye || image.w <= 0;
            expected.Add(image.XYZ() / image.w);
        }
        Box const transformed = box.Transformed(matrix);
        if (behindTheEye) {
            EXPECT_FALSE(transformed.IsDefined());
            continue;
        }
        EXPECT_LE(Length(transformed.Min() - expected.Min()), 1e-11);
        EXPECT_LE(Length(transformed.Max() - expected.Max()), 1e-11);
        EXPECT_EQ(box.Transformed(Matrix4()), box);
    }
    EXPECT_FALSE(Box().Transformed(Matrix4()).IsDefined());
    EXPECT_EQ(Box({0, 0, 0}, {1, 2, 3}).Transformed(Matrix4::Scaling({-1, 1, 0})), Box({-1, 0, 0}, {0, 2, 0}));
}

} // namespace
