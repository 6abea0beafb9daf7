#include "render/nodes/PaneLayout.h"

#include "framework/algorithms/Hit.h"
#include "framework/types/Math.h"

#include <algorithm>
#include <cmath>

namespace Qor::Chart::Render {

namespace {

constexpr float GripReach = 5;
constexpr float GripLength = 10;
constexpr float ButtonMargin = 2;
constexpr float ButtonInset = 10; ///< of the rightmost button from the end of the title bar
constexpr float ButtonGap = 5;

float Rounded(float p_value) {
    return static_cast<float>(std::floor(static_cast<double>(p_value) + 0.5));
}

void FitSide(float p_parentStart, float p_parentLength, float& p_start, float& p_length) {
    p_start = std::max(p_start, p_parentStart);
    float const overshoot = p_start + p_length - (p_parentStart + p_parentLength);
    if (p_length > p_parentLength)
        p_length = p_parentLength;
    else if (overshoot > 0)
        p_start -= overshoot;
    if (p_length <= 0)
        p_length = 1;
}

bool IsLeft(PaneLayout::Grip p_grip) {
    return p_grip == PaneLayout::Grip::TopLeft || p_grip == PaneLayout::Grip::BottomLeft;
}

bool IsTop(PaneLayout::Grip p_grip) {
    return p_grip == PaneLayout::Grip::TopLeft || p_grip == PaneLayout::Grip::TopRight;
}

void MoveLowSide(float& p_start, float& p_length, float p_least, int p_to) {
    int const limit = Types::Math::Truncate(p_start + p_length - p_least);
    if (p_to < limit) {
        p_length -= static_cast<float>(p_to) - p_start;
        p_start = static_cast<float>(p_to);
    } else {
        p_length = p_least;
        p_start = static_cast<float>(limit);
    }
}

void MoveHighSide(float p_start, float& p_length, float p_least, int p_to) {
    bool const isFarEnough = p_to > Types::Math::Truncate(p_start + p_least);
    p_length = isFarEnough ? static_cast<float>(p_to) - p_start : p_least;
}

} // namespace

PaneLayout::Rectangle PaneLayout::Place(Types::Viewport<1> const& p_relative, Rectangle const& p_parent) {
    Rectangle const exact(p_relative, p_parent);
    return {Rounded(exact.x), Rounded(exact.y), Rounded(exact.width), Rounded(exact.height)};
}

PaneLayout::Rectangle PaneLayout::Widened(Rectangle p_rectangle) {
    p_rectangle.width = std::max(p_rectangle.width, LeastWidth);
    p_rectangle.height = std::max(p_rectangle.height, LeastHeight);
    return p_rectangle;
}

PaneLayout::Rectangle PaneLayout::FittedInto(Rectangle const& p_parent, Rectangle p_child) {
    FitSide(p_parent.x, p_parent.width, p_child.x, p_child.width);
    FitSide(p_parent.y, p_parent.height, p_child.y, p_child.height);
    return p_child;
}

PaneLayout::Rectangle PaneLayout::TitleBar(Rectangle const& p_pane, unsigned p_titleHeight) {
    auto const height = static_cast<float>(p_titleHeight);
    return {0, p_pane.height - height - 1, p_pane.width - 1, height};
}

PaneLayout::Rectangle PaneLayout::PopOutButton(Rectangle const& p_titleBar, unsigned p_titleHeight) {
    auto const height = static_cast<float>(p_titleHeight);
    float const side = std::max(height - 2 * ButtonMargin, 0.0F);
    return {p_titleBar.Right() - height - ButtonInset, p_titleBar.y + ButtonMargin, side, side};
}

PaneLayout::Rectangle PaneLayout::DetachButton(Rectangle const& p_titleBar, unsigned p_titleHeight) {
    Rectangle button = PopOutButton(p_titleBar, p_titleHeight);
    return button.Translate(-button.width - ButtonGap, 0);
}

// The second area of the lower right grip begins as far right as the first one, unlike its mirror image above: the pane's
// lower edge stays free beside it.
std::array<PaneLayout::Rectangle, 2> PaneLayout::GripAreas(Grip p_grip, Rectangle const& p_pane) {
    constexpr float thickness = 2 * GripReach;
    constexpr float length = GripReach + GripLength;
    float const left = p_pane.x - GripReach;
    float const right = p_pane.Right() - GripReach;
    float const bottom = p_pane.y - GripReach;
    float const top = p_pane.Top();
    switch (p_grip) {
    case Grip::TopLeft:
        return {{{left, top - GripLength, thickness, length}, {left, top - GripReach, length, thickness}}};
    case Grip::TopRight:
        return {{{right, top - GripLength, thickness, length},
            {p_pane.Right() - GripLength, top - GripReach, length, thickness}}};
    case Grip::BottomLeft:
        return {{{left, bottom, thickness, length}, {left, bottom, length, thickness}}};
    case Grip::BottomRight:
        break;
    }
    return {{{right, bottom, thickness, length}, {right, bottom, length, thickness}}};
}

bool PaneLayout::IsOnGrip(Grip p_grip, Rectangle const& p_pane, Types::Pos const& p_pos) {
    auto const areas = GripAreas(p_grip, p_pane);
    return std::ranges::any_of(areas, [&](Rectangle const& p_area) { return Algorithms::Hit::IsHit(p_area, p_pos); });
}

PaneLayout::GripLines PaneLayout::LinesOf(Grip p_grip, Rectangle const& p_pane) {
    constexpr int length = static_cast<int>(GripLength);
    Types::Size const extent = p_pane.Extent();
    Types::Pos const corner(IsLeft(p_grip) ? 0 : extent.width - 1, IsTop(p_grip) ? extent.height - 1 : 0);
    Types::Pos const alongWidth(IsLeft(p_grip) ? length : -length, 0);
    Types::Pos const alongHeight(0, IsTop(p_grip) ? -length : length);
    return {corner, corner + alongWidth, corner + alongHeight};
}

PaneLayout::Rectangle PaneLayout::Resized(Rectangle p_pane, Grip p_grip, Types::Pos const& p_pos) {
    if (IsLeft(p_grip))
        MoveLowSide(p_pane.x, p_pane.width, LeastWidth, p_pos.x);
    else
        MoveHighSide(p_pane.x, p_pane.width, LeastWidth, p_pos.x);
    if (IsTop(p_grip))
        MoveHighSide(p_pane.y, p_pane.height, LeastHeight, p_pos.y);
    else
        MoveLowSide(p_pane.y, p_pane.height, LeastHeight, p_pos.y);
    return p_pane;
}

} // namespace Qor::Chart::Render
