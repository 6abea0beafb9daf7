#include "render/nodes/PaneLayout.h"

#include <gtest/gtest.h>

namespace Qor::Chart::Render {
namespace {

using Grip = PaneLayout::Grip;
using Rectangle = PaneLayout::Rectangle;
using Types::RelativeLength;

TEST(PaneLayoutTest, panesLieAtWholePixelsInTheirParentAndAreFittedIntoIt) {
    Rectangle const parent(100, 50, 333, 201);
    EXPECT_EQ(PaneLayout::Place({0.5, 0.25, 0.5, 0.5}, parent), Rectangle(267, 100, 167, 101));
    EXPECT_EQ(PaneLayout::Place({RelativeLength::Pixels(-1.5), RelativeLength::Pixels(0.5),
                                    RelativeLength::Pixels(0.49), RelativeLength::Pixels(7, 1)},
                  Rectangle(0, 0, 10, 10)),
        Rectangle(-1, 1, 0, 17));
    std::pair<Rectangle, Rectangle> const fits[] = {
        {{80, 20, 50, 50}, {100, 50, 50, 50}}, // shifted right and up
        {{400, 240, 50, 50}, {383, 201, 50, 50}}, // shifted left and down
        {{120, 40, 400, 300}, {120, 50, 333, 201}}, // too large: cut, and stays where it begins
        {{120, 60, 0, -3}, {120, 60, 1, 1}},
    };
    for (auto const& [child, expected] : fits)
        EXPECT_EQ(PaneLayout::FittedInto(parent, child), expected) << child;
}

TEST(PaneLayoutTest, gripsMoveTheirTwoSidesAndKeepTheLeastSize) {
    struct Case {
        Grip grip;
        Types::Pos to;
        Rectangle expected;
    };
    for (Case const& c : {
             Case{Grip::TopLeft, {30, 160}, {30, 40, 170, 120}},
             Case{Grip::TopRight, {260, 90}, {100, 40, 160, 50}},
             Case{Grip::BottomLeft, {120, 10}, {120, 10, 80, 110}},
             Case{Grip::BottomRight, {180, 60}, {100, 60, 80, 60}},
             Case{Grip::TopLeft, {500, 0}, {150, 40, 50, 20}}, // beyond the far sides, which stay
             Case{Grip::BottomRight, {0, 500}, {100, 100, 50, 20}},
         })
        EXPECT_EQ(PaneLayout::Resized({100, 40, 100, 80}, c.grip, c.to), c.expected);
}

} // namespace
} // namespace Qor::Chart::Render
