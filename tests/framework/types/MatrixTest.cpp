#include "framework/types/Matrix4.h"
#include "framework/types/Transformation.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

namespace {

using namespace Qor::Chart::Types;
using Vector = Vector3_Base<double>;
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

void ExpectNear(Vector const& p_a, Vector const& p_b) {
    EXPECT_LE(Length(p_a - p_b), 1e-12) << p_a << " and " << p_b;
}

TEST(Matrix4Test, projectionsSendTheirVolumeToTheUnitCube) {
    Transformation const ortho(Matrix4::Ortho(10, 30, -5, 5, 1, 9));
    ExpectNear(ortho({10, -5, -1}), {-1, -1, -1});
    ExpectNear(ortho({30, 5, -9}), {1, 1, 1});
    Transformation const perspective(Matrix4::Perspective(90, 2, 1, 9));
    ExpectNear(perspective({2, 1, -1}), {1, 1, -1});
    ExpectNear(perspective({-18, -9, -9}), {-1, -1, 1});
    ExpectNear(Transformation(Matrix4::LookAt({0, 0, 5}, {0, 0, 0}, {0, 3, 0}))({1, 2, 0}), {1, 2, -5});
    for (Matrix4 const& matrix : {Matrix4::Ortho(1, 1, 2, 2, 3, 3), Matrix4::Perspective(0, 1, 1, 2),
             Matrix4::Perspective(60, NaN, 1, 2), Matrix4::Frustum(0, 1, 0, 1, -1, 1)}) {
        EXPECT_TRUE(matrix.IsIdentity()) << matrix;
    }
    EXPECT_EQ(Matrix4::LookAt({1, 2, 3}, {1, 2, 4}, {0, 0, 1}), Matrix4::Translation({-1, -2, -3}));
}

TEST(Matrix4Test, invertsAffineAndPerspectiveMatricesOfAnyScale) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> number(-2, 2);
    for (int round = 0; round < 200; ++round) {
        Matrix4 const matrix = Matrix4::Translation({number(random), number(random), number(random)}) *
            Matrix4::Rotation(90 * number(random), {number(random), number(random), 3}) *
            Matrix4::Scaling({1 + std::abs(number(random)), -1, 0.5}) *
            (round % 2 ? Matrix4::Perspective(60, 1.5, 0.1, 100) : Matrix4());
        auto const inverse = matrix.Inverse();
        ASSERT_TRUE(inverse) << matrix;
        Matrix4 const product = matrix * *inverse;
        for (int index = 0; index < 16; ++index)
            EXPECT_NEAR(product.Data()[index], index % 5 == 0, 1e-9) << matrix;
    }
    for (double const scale : {1e-100, 1e-30, 1e6, 1e100})
        EXPECT_DOUBLE_EQ(Matrix4::Scaling(scale).Inverse().value().At(1, 1), 1 / scale);
    EXPECT_TRUE((Matrix4::Translation({1e8, 0, 0}) * Matrix4::Scaling(1e-4)).Inverse());
    EXPECT_TRUE(Matrix4::Perspective(60, 1, 1e-5, 1e7).Inverse());
}

TEST(Matrix4Test, singularOrUnusableMatricesHaveNoInverse) {
    double const rankTwo[] = {1, 2, 3, 0, 4, 5, 6, 0, 7, 8, 9, 0, 0, 0, 0, 1};
    Matrix4 const singular = Matrix4::FromColumnMajor(rankTwo);
    for (Matrix4 const& matrix : {singular, Matrix4::Scaling({1, 0, 1}), Matrix4::Translation({0, NaN, 0}),
             Matrix4::Scaling(std::numeric_limits<double>::denorm_min()),
             Matrix4::Rotation(33, {1, 2, 3}) * singular * Matrix4::Rotation(77, {3, 1, 1})}) {
        EXPECT_FALSE(matrix.Inverse()) << matrix;
    }
}

TEST(TransformationTest, normalsStayPerpendicularUnderShearAndPointOutwardsUnderMirror) {
    Matrix4 shear;
    shear.Set(0, 1, 0.7);
    for (Matrix4 const& matrix : {shear, Matrix4::Scaling({3, 1, 0.2}), Matrix4::Scaling({-1, 1, 1}) * shear}) {
        Transformation const transformation(matrix);
        Vector const normal(0.6, 0.8, 0);
        Vector const image = transformation.Normal(normal);
        EXPECT_NEAR(Dot(image, transformation.Direction({-0.8, 0.6, 0})), 0, 1e-12);
        EXPECT_NEAR(Length(image), 1, 1e-12);
        EXPECT_GT(Dot(image, transformation.Direction(normal)), 0);
    }
    ExpectNear(Transformation(Matrix4::Scaling({2, 2, 0})).Normal({0, 0, 1}), {0, 0, 1});
    EXPECT_EQ(Transformation(Matrix4::Scaling(0)).Normal({0, 0, 1}), Vector());
}

} // namespace
