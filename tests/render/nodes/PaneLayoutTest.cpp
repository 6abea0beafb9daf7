#include "render/nodes/PaneLayout.h"

#include <gtest/gtest.h>

namespace Qor::Chart::Render {
namespace {

using Grip = PaneLayout::Grip;
using Rectangle = PaneLayout::Rectangle;
using Relative = Types::Viewport<1>;
using Types::RelativeLength;

TEST(PaneLayoutTest, panesLieAtWholePixelsInTheirParentAndAreFittedIntoIt) {
    Rectangle const parent(100, 50, 333, 201);
    EXPECT_EQ(PaneLayout::Place({0.5, 0.25, 0.5, 0.5}, parent), Rectangle(267, 100, 167, 101));
    EXPECT_EQ(PaneLayout::Place({RelativeLength::Pixels(-1.5), RelativeLength::Pixels(0.5),
                                    RelativeLength::Pixels(0.49), RelativeLength::Pixels(7, 1)},
                  Rectangle(0, 0, 10, 10)),
        Rectangle(-1, 1, 0, 17));
    EXPECT_EQ(PaneLayout::Widened({3, 4, 50, 19}), Rectangle(3, 4, 50, 20));

    std::pair<Rectangle, Rectangle> const fits[] = {
        {{120, 60, 50, 50}, {120, 60, 50, 50}},
        {{80, 20, 50, 50}, {100, 50, 50, 50}}, // shifted right and up
        {{400, 240, 50, 50}, {383, 201, 50, 50}}, // shifted left and down
        {{120, 40, 400, 300}, {120, 50, 333, 201}}, // too large: cut, and stays where it begins
        {{120, 60, 0, -3}, {120, 60, 1, 1}},
    };
    for (auto const& [child, expected] : fits)
        EXPECT_EQ(PaneLayout::FittedInto(parent, child), expected) << child;
}

TEST(PaneLayoutTest, titleBarButtonsAndGripsLieWhereTheyAreDrawn) {
    Rectangle const bar = PaneLayout::TitleBar({100, 50, 200, 150}, 20);
    EXPECT_EQ(bar, Rectangle(0, 129, 199, 20));
    EXPECT_EQ(PaneLayout::PopOutButton(bar, 20), Rectangle(169, 131, 16, 16));
    EXPECT_EQ(PaneLayout::DetachButton(bar, 20), Rectangle(148, 131, 16, 16));

    struct Case {
        Grip grip;
        Rectangle first, second;
        Types::Pos corner, alongWidth, alongHeight;
    };
    Rectangle const pane(100, 50, 200, 150);
    for (Case const& c : {
             Case{Grip::TopLeft, {95, 190, 10, 15}, {95, 195, 15, 10}, {0, 149}, {10, 149}, {0, 139}},
             Case{Grip::TopRight, {295, 190, 10, 15}, {290, 195, 15, 10}, {199, 149}, {189, 149}, {199, 139}},
             Case{Grip::BottomLeft, {95, 45, 10, 15}, {95, 45, 15, 10}, {0, 0}, {10, 0}, {0, 10}},
             Case{Grip::BottomRight, {295, 45, 10, 15}, {295, 45, 15, 10}, {199, 0}, {189, 0}, {199, 10}},
         }) {
        EXPECT_EQ(PaneLayout::GripAreas(c.grip, pane), (std::array{c.first, c.second}));
        auto const lines = PaneLayout::LinesOf(c.grip, pane);
        EXPECT_EQ(std::tie(lines.corner, lines.alongWidth, lines.alongHeight),
            std::tie(c.corner, c.alongWidth, c.alongHeight));
    }
    EXPECT_TRUE(PaneLayout::IsOnGrip(Grip::BottomLeft, pane, {109, 50}));
    EXPECT_FALSE(PaneLayout::IsOnGrip(Grip::BottomRight, pane, {292, 50}))
        << "nearer to the corner than its mirror image";
    EXPECT_TRUE(PaneLayout::IsOnGrip(Grip::TopRight, pane, {292, 199}));
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
             Case{Grip::TopRight, {150, 60}, {100, 40, 50, 20}}, // at the limit
             Case{Grip::BottomLeft, {150, 100}, {150, 100, 50, 20}},
         })
        EXPECT_EQ(PaneLayout::Resized({100, 40, 100, 80}, c.grip, c.to), c.expected);
}

} // namespace
} // namespace Qor::Chart::Render
