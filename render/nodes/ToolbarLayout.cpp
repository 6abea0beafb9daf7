#include "render/nodes/ToolbarLayout.h"

#include "framework/algorithms/Hit.h"

#include <algorithm>
#include <cmath>

namespace Qor::Chart::Render {

namespace {

// Lengths at pixel ratio 1.
constexpr float Gap = 2;
constexpr float HandleLength = 6;

/// The distance that gives a number of pixels.
double DistanceOf(Types::DefinedAs p_definedAs, double p_present, double p_pixels, int p_extent) {
    if (p_definedAs == Types::DefinedAs::Pixels)
        return p_pixels;
    return p_extent > 0 ? p_pixels / p_extent : p_present;
}

} // namespace

float ToolbarLayout::Scaled(float p_length, float p_pixelRatio) {
    return std::max(std::round(p_length * p_pixelRatio), 1.0F);
}

ToolbarLayout::ToolbarLayout(Request const& p_request)
    : isVertical(p_request.isVertical), gap(Scaled(Gap, p_request.pixelRatio)) {
    if (p_request.widths.empty())
        return;
    float const widest = std::max(p_request.side, *std::max_element(p_request.widths.begin(), p_request.widths.end()));
    float const thickness = isVertical ? widest : p_request.side;
    float end = gap;
    auto const next = [&](float p_length) {
        float const begin = end;
        end += p_length + gap;
        return isVertical ? Rectangle(gap, -end + gap, thickness, p_length)
                          : Rectangle(begin, gap, p_length, thickness);
    };
    if (p_request.isMovable)
        handle = next(Scaled(HandleLength, p_request.pixelRatio));
    for (float const width : p_request.widths)
        buttons.push_back(next(isVertical ? p_request.side : std::max(width, p_request.side)));

    float const across = thickness + 2 * gap;
    bar = isVertical ? Rectangle(0, 0, across, end) : Rectangle(0, 0, end, across);
    auto const& [paneWidth, paneHeight] = p_request.pane;
    bar.x = static_cast<float>(std::round(p_request.x.Resolve(0, paneWidth, bar.width)));
    bar.y = static_cast<float>(std::round(p_request.y.Resolve(0, paneHeight, bar.height)));
    bar = MovedInto(p_request.pane, bar);
    float const top = isVertical ? bar.height : 0;
    if (!handle.IsEmpty())
        handle.Translate(bar.x, bar.y + top);
    for (Rectangle& button : buttons)
        button.Translate(bar.x, bar.y + top);
}

std::optional<std::size_t> ToolbarLayout::ButtonAt(Types::Pos const& p_pos) const {
    auto const found = std::find_if(buttons.begin(), buttons.end(),
        [&](Rectangle const& p_button) { return Algorithms::Hit::IsHit(p_button, p_pos); });
    if (found == buttons.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - buttons.begin());
}

Types::XPosition ToolbarLayout::Following(
    Types::XPosition const& p_present, float p_x, float p_width, int p_paneWidth) {
    bool const isLeft = p_present.edge == Types::XEdge::Left;
    double const pixels = isLeft ? p_x : static_cast<double>(p_paneWidth) - p_x - p_width;
    return {
        p_present.definedAs, p_present.edge, DistanceOf(p_present.definedAs, p_present.distance, pixels, p_paneWidth)};
}

Types::YPosition ToolbarLayout::Following(
    Types::YPosition const& p_present, float p_y, float p_height, int p_paneHeight) {
    bool const isBottom = p_present.edge == Types::YEdge::Bottom;
    double const pixels = isBottom ? p_y : static_cast<double>(p_paneHeight) - p_y - p_height;
    return {
        p_present.definedAs, p_present.edge, DistanceOf(p_present.definedAs, p_present.distance, pixels, p_paneHeight)};
}

ToolbarLayout::Rectangle ToolbarLayout::MovedInto(Types::Size const& p_pane, Rectangle p_rectangle) {
    float const right = static_cast<float>(p_pane.width) - p_rectangle.width;
    float const top = static_cast<float>(p_pane.height) - p_rectangle.height;
    p_rectangle.x = std::max(std::min(p_rectangle.x, right), 0.0F);
    p_rectangle.y = std::min(std::max(p_rectangle.y, 0.0F), top);
    return p_rectangle;
}

ToolbarLayout::Rectangle ToolbarLayout::TipPlace(
    Types::Size const& p_pane, std::size_t p_button, Types::Size const& p_tip) const {
    Rectangle const& button = buttons[p_button];
    Rectangle tip(button.x, button.Top(), static_cast<float>(p_tip.width), static_cast<float>(p_tip.height));
    if (isVertical) {
        tip.x = bar.Right() + gap;
        tip.y -= tip.height;
        if (tip.Right() > static_cast<float>(p_pane.width))
            tip.x = bar.x - gap - tip.width;
    } else {
        tip.y = bar.y - gap - tip.height;
        if (tip.y < 0)
            tip.y = bar.Top() + gap;
    }
    return MovedInto(p_pane, tip);
}

} // namespace Qor::Chart::Render
