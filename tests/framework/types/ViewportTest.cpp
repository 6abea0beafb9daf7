#include "framework/types/Viewport.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

namespace {

using namespace Qor::Chart::Types;
using Absolute = Viewport<0>;
using Relative = Viewport<1>;
using Length = RelativeLength;
constexpr float NaN = std::numeric_limits<float>::quiet_NaN();

TEST(ViewportTest, relativeResolvesInsideItsParentAndBackAsItWasDefined) {
    Absolute const parent(100, 50, 400, 200);
    EXPECT_EQ(
        Absolute(
            Relative(Length::Pixels(10), Length::Fraction(1, -30), Length::Fraction(0.5), Length::Pixels(30)), parent),
        Absolute(110, 220, 200, 30));
    Relative const current(Length::Fraction(0.5), Length::Pixels(7), Length::Fraction(1, -20), Length::Pixels(3, 0.5));
    Relative const moved(Absolute(200, 90, 180, 150), parent, current);
    EXPECT_EQ(moved.x, Length::Fraction(0.25));
    EXPECT_EQ(moved.y, Length::Pixels(40));
    EXPECT_EQ(moved.width, Length::Fraction(0.5, -20));
    EXPECT_EQ(moved.height, Length::Pixels(50, 0.5));
    Relative const fractions(0.1, 0.2, 0.3, 0.4);
    EXPECT_EQ(Relative(Absolute(1, 2, 3, 4), Absolute(), fractions), fractions);
    EXPECT_EQ(Relative(Absolute(NaN, NaN, NaN, NaN), Absolute(0, 0, 10, 10), fractions), fractions);
}

TEST(ViewportTest, conversionsThereAndBackKeepEveryPixel) {
    std::mt19937 random(11);
    std::uniform_int_distribution<int> pixel(-50, 3000);
    std::uniform_int_distribution<int> extent(1, 3000);
    for (int round = 0; round < 500; ++round) {
        auto const some = [&](auto& p_range) { return static_cast<float>(p_range(random)); };
        auto const length = [&] { return random() % 2 ? Length::Pixels(3, 0.1) : Length::Fraction(0.3, -7); };
        Absolute const parent(some(pixel), some(pixel), some(extent), some(extent));
        Absolute const absolute(some(pixel), some(pixel), some(extent), some(extent));
        Relative const current(length(), length(), length(), length());
        EXPECT_EQ(Absolute(Relative(absolute, parent, current), parent), absolute) << absolute << " in " << parent;
    }
}

TEST(ViewportTest, clampKeepsTheCommonPart) {
    Absolute const bounds(10, 10, 100, 50);
    for (auto const& [rectangle, expected] :
        {std::pair(Absolute(20.1F, 20.3F, 5.7F, 5.9F), Absolute(20.1F, 20.3F, 5.7F, 5.9F)),
            std::pair(Absolute(0, 0, 20, 20), Absolute(10, 10, 10, 10)), std::pair(Absolute(0, 0, 500, 500), bounds),
            std::pair(Absolute(-50, 20, 10, 10), Absolute(10, 20, 0, 10)),
            std::pair(Absolute(200, 200, 10, 10), Absolute(110, 60, 0, 0)),
            std::pair(Absolute(NaN, 20, 5, 5), Absolute(10, 20, 0, 5))}) {
        EXPECT_EQ(rectangle.Clamped(bounds), expected) << rectangle;
    }
}

} // namespace
