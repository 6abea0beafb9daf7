#include "framework/types/Viewport.h"
#include "framework/types/XPosition.h"
#include "framework/types/YPosition.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <sstream>

namespace {

using namespace Qor::Chart::Types;
using Absolute = Viewport<0>;
using Relative = Viewport<1>;
using Length = RelativeLength;

TEST(ViewportTest, relativeResolvesInsideItsParent) {
    Absolute const parent(100, 50, 400, 200);
    EXPECT_EQ(Absolute(Relative(), parent), parent);
    EXPECT_EQ(Absolute(Relative(0.25, 0.5, 0.5, 0.25), parent), Absolute(200, 150, 200, 50));
    EXPECT_EQ(Absolute(Relative(Length::Pixels(10), Length::Fraction(1, -30), Length::Pixels(120), Length::Pixels(30)),
                  parent),
        Absolute(110, 220, 120, 30));
}

TEST(ViewportTest, conversionBackKeepsHowEachCoordinateWasDefined) {
    Absolute const parent(100, 50, 400, 200);
    Relative const current(Length::Fraction(0.5), Length::Pixels(7), Length::Fraction(1, -20), Length::Pixels(3, 0.5));
    Relative const moved(Absolute(200, 90, 180, 150), parent, current);
    EXPECT_EQ(moved.x, Length::Fraction(0.25));
    EXPECT_EQ(moved.y, Length::Pixels(40));
    EXPECT_EQ(moved.width, Length::Fraction(0.5, -20));
    EXPECT_EQ(moved.height, Length::Pixels(50, 0.5));
}

TEST(ViewportTest, conversionsThereAndBackKeepEveryPixel) {
    std::mt19937 random(11);
    std::uniform_int_distribution<int> pixel(-50, 3000);
    std::uniform_int_distribution<int> extent(1, 3000);
    auto const coordinate = [&](int p_round, int p_bit) {
        return (p_round >> p_bit) & 1 ? Length::Pixels(3, 0.1) : Length::Fraction(0.3, -7);
    };
    for (int round = 0; round < 500; ++round) {
        auto const some = [&](auto& p_range) { return static_cast<float>(p_range(random)); };
        Absolute const parent(some(pixel), some(pixel), some(extent), some(extent));
        Absolute const absolute(some(pixel), some(pixel), some(extent), some(extent));
        Relative const current(coordinate(round, 0), coordinate(round, 1), coordinate(round, 2), coordinate(round, 3));
        EXPECT_EQ(Absolute(Relative(absolute, parent, current), parent), absolute) << absolute << " in " << parent;
    }
}

TEST(ViewportTest, aParentWithoutExtentLeavesFractionsAlone) {
    Relative const current(0.1, 0.2, 0.3, 0.4);
    EXPECT_EQ(Relative(Absolute(1, 2, 3, 4), Absolute(), current), current);
    float const nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(Relative(Absolute(nan, nan, nan, nan), Absolute(0, 0, 10, 10), current), current);
}

TEST(ViewportTest, normalizeTurnsNegativeSidesAround) {
    EXPECT_EQ(Absolute(10, 20, -4, 6).Normalized(), Absolute(6, 20, 4, 6));
    EXPECT_EQ(Absolute(10, 20, 4, -30).Normalized(), Absolute(10, -10, 4, 30));
}

TEST(ViewportTest, clampKeepsTheCommonPart) {
    Absolute const bounds(10, 10, 100, 50);
    struct Case {
        Absolute rectangle;
        Absolute expected;
    };
    for (Case const& c :
        {Case{{20.1F, 20.3F, 5.7F, 5.9F}, {20.1F, 20.3F, 5.7F, 5.9F}}, Case{{0, 0, 20, 20}, {10, 10, 10, 10}},
            Case{{100, 50, 50, 50}, {100, 50, 10, 10}}, Case{{0, 0, 500, 500}, bounds},
            Case{{-50, 20, 10, 10}, {10, 20, 0, 10}}, Case{{200, 200, 10, 10}, {110, 60, 0, 0}}}) {
        EXPECT_EQ(c.rectangle.Clamped(bounds), c.expected) << c.rectangle;
    }
    Absolute const clamped = Absolute(std::numeric_limits<float>::quiet_NaN(), 20, 5, 5).Clamp(bounds);
    EXPECT_EQ(clamped, Absolute(10, 20, 0, 5));
}

TEST(ViewportTest, growsAndShrinksAtMostToItsMiddle) {
    EXPECT_EQ(Absolute(10, 10, 20, 2).Grow(-1), Absolute(11, 11, 18, 0));
    EXPECT_EQ(Absolute(10, 10, 20, 2).Grow(-3), Absolute(13, 11, 14, 0));
    EXPECT_EQ(Absolute(10, 10, 20, 2).Grow(1.5F), Absolute(8.5F, 8.5F, 23, 5));
}

TEST(ViewportTest, neighboursShareNoPoint) {
    Absolute const left(0, 0, 10, 10);
    Absolute const right(10, 0, 10, 10);
    EXPECT_TRUE(left.Contains(Pos(9, 9)) && left.Contains(Pos(0, 0)));
    EXPECT_TRUE(!left.Contains(Pos(10, 5)) && right.Contains(Pos(10, 5)));
    EXPECT_TRUE(Absolute(0, 0, std::numeric_limits<float>::quiet_NaN(), 5).IsEmpty());
    EXPECT_EQ(Absolute(-1.9F, 1.9F, 3e9F, 5.5F).Origin(), Pos(-1, 1));
    EXPECT_EQ(Absolute(0, 0, 3e9F, 5.5F).Extent(), Size(std::numeric_limits<int>::max(), 5));
}

TEST(ViewportTest, printsHowCoordinatesAreDefined) {
    std::ostringstream stream;
    stream << Relative(Length::Pixels(0), Length::Fraction(0), Length::Fraction(0.5, -20), Length::Pixels(12, 0.25))
           << "; " << Absolute(1, 2.5F, 3, 4);
    EXPECT_EQ(stream.str(), "0px, 0%, 50%-20px, 25%+12px; 1, 2.5, 3, 4");
}

TEST(PositionTest, distancesCountFromEitherEdge) {
    EXPECT_EQ(XPosition(DefinedAs::Pixels, XEdge::Left, 5).Resolve(100, 400, 40), 105);
    EXPECT_EQ(XPosition(DefinedAs::Pixels, XEdge::Right, 5).Resolve(100, 400, 40), 455);
    EXPECT_EQ(XPosition(DefinedAs::Fraction, XEdge::Right, 0.5).Resolve(100, 400, 40), 260);
    EXPECT_EQ(YPosition(DefinedAs::Pixels, YEdge::Top, 20).Resolve(0, 300, 30), 250);
    EXPECT_EQ(YPosition(DefinedAs::Fraction, YEdge::Bottom, 0.1).Resolve(50, 300, 30), 80);
}

} // namespace
