#include "render/nodes/LegendLayout.h"

#include "render/nodes/ToolbarLayout.h"
#include "framework/algorithms/Hit.h"

#include <algorithm>
#include <cmath>

namespace Qor::Chart::Render {

namespace {

using Rectangle = LegendLayout::Rectangle;

// Lengths at pixel ratio 1.
constexpr float Margin = 8;
constexpr float Padding = 6;
constexpr float RowSpacing = 4;
constexpr float SwatchGap = 6;
constexpr float ColumnGap = 12;
constexpr float BarHeight = 10;
constexpr float TickLength = 4;
constexpr float RuleGap = 3;

// Lengths in heights of a line.
constexpr float SwatchWidth = 1.5F;
constexpr float ShortestText = 3;
constexpr float NarrowestLegend = 8;
constexpr float NarrowestBar = 14;

float SwatchWidthOf(float p_lineHeight) {
    return std::ceil(SwatchWidth * p_lineHeight);
}

float RowHeight(float p_lineHeight, float p_ratio) {
    return p_lineHeight + ToolbarLayout::Scaled(RowSpacing, p_ratio);
}

float TallHeight(float p_lineHeight, float p_ratio) {
    return 2 * p_lineHeight + ToolbarLayout::Scaled(BarHeight, p_ratio) + ToolbarLayout::Scaled(TickLength, p_ratio) +
        2 * ToolbarLayout::Scaled(RowSpacing, p_ratio);
}

} // namespace

/// What the steps of the layout hand to each other. The inner lengths are without the padding.
struct LegendLayout::Space {
    float margin = 0;
    float padding = 0;
    float gap = 0; ///< between columns
    float innerWidth = 0; ///< the most that there is
    float innerHeight = 0;
    float width = 0; ///< what is taken
    float cellWidth = 0;
    float head = 0; ///< the height of the title and its rule
    float body = 0;
    float foot = 0; ///< the height of the buttons
};

LegendLayout::LegendLayout(Request const& p_request)
    : _tall(p_request.tall)
    , _rows(p_request.tall.size())
    , _ratio(p_request.pixelRatio)
    , _lineHeight(p_request.lineHeight) {
    Space space;
    space.margin = p_request.isAutomatic ? ToolbarLayout::Scaled(Margin, _ratio) : 0;
    space.padding = ToolbarLayout::Scaled(Padding, _ratio);
    space.gap = ToolbarLayout::Scaled(ColumnGap, _ratio);
    float const around = 2 * (space.margin + space.padding);
    space.innerWidth =
        static_cast<float>(p_request.pane.width) - around - (p_request.isAutomatic ? p_request.reservedRight : 0);
    space.innerHeight =
        static_cast<float>(p_request.pane.height) - around - (p_request.isAutomatic ? p_request.reservedAbove : 0);
    bool const isNothing = _rows == 0 && !(p_request.titleWidth > 0);
    if (isNothing || space.innerWidth < SwatchWidthOf(_lineHeight) ||
        space.innerHeight < RowHeight(_lineHeight, _ratio))
        return;
    space.head = p_request.titleWidth > 0
        ? _lineHeight + 2 * ToolbarLayout::Scaled(RuleGap, _ratio) + ToolbarLayout::Scaled(1, _ratio)
        : 0;
    ChooseColumns(p_request, space);
    ChooseHeights(p_request, space);
    Place(p_request, space);
    _tall = {};
}

float LegendLayout::HeightOf(std::size_t p_line) const {
    std::size_t const begin = p_line * columns;
    std::size_t const end = std::min(begin + columns, _rows);
    bool const isTall = std::any_of(_tall.begin() + static_cast<std::ptrdiff_t>(begin),
        _tall.begin() + static_cast<std::ptrdiff_t>(end), [](std::uint8_t p_tall) { return p_tall != 0; });
    return isTall ? TallHeight(_lineHeight, _ratio) : RowHeight(_lineHeight, _ratio);
}

bool LegendLayout::FitFrom(std::size_t p_line, float p_height) const {
    float height = 0;
    for (std::size_t line = p_line; line < Lines() && height <= p_height; ++line)
        height += HeightOf(line);
    return height <= p_height;
}

std::size_t LegendLayout::FirstBefore(std::size_t p_line, float p_height) const {
    if (p_line == 0)
        return 0;
    std::size_t line = p_line - 1;
    float height = HeightOf(line);
    while (line > 0 && height + HeightOf(line - 1) <= p_height)
        height += HeightOf(--line);
    return line;
}

void LegendLayout::ChooseColumns(Request const& p_request, Space& p_space) {
    float const swatch = SwatchWidthOf(_lineHeight);
    float const least = swatch + ToolbarLayout::Scaled(SwatchGap, _ratio) + ShortestText * _lineHeight;
    float limit = p_space.innerWidth;
    if (p_request.columns == 0) {
        float const half = std::floor(static_cast<float>(p_request.pane.width) / 2) - 2 * p_space.padding;
        limit = std::min(limit, std::max(half, NarrowestLegend * _lineHeight));
    }
    float const natural = std::clamp(std::ceil(p_request.rowWidth), std::min(swatch, limit), limit);
    float const narrowest = p_request.columns == 0 ? natural : std::min(least, limit);
    auto const most = static_cast<std::size_t>(
        std::max(std::floor((limit + p_space.gap) / std::max(narrowest + p_space.gap, 1.0F)), 1.0F));
    std::size_t const wanted = p_request.columns == 0 ? most : static_cast<std::size_t>(p_request.columns);
    std::size_t const end = std::max<std::size_t>(std::min({wanted, most, _rows}), 1);
    columns = p_request.columns == 0 ? 1 : end;
    while (columns < end && !FitFrom(0, p_space.innerHeight - p_space.head))
        ++columns;
    auto const count = static_cast<float>(columns);
    float const gaps = (count - 1) * p_space.gap;
    float const taken = std::min(count * natural + gaps, limit);
    p_space.cellWidth = std::floor((std::max(taken, std::min(std::ceil(p_request.titleWidth), limit)) - gaps) / count);
    p_space.width = p_space.cellWidth * count + gaps;
}

void LegendLayout::ChooseHeights(Request const& p_request, Space& p_space) {
    float const row = RowHeight(_lineHeight, _ratio);
    float const space = p_space.innerHeight - p_space.head;
    if (FitFrom(0, space)) {
        for (std::size_t line = 0; line < Lines(); ++line)
            p_space.body += HeightOf(line);
        return;
    }
    p_space.foot = row;
    if (space - p_space.foot < row)
        p_space.head = 0;
    if (p_space.innerHeight - p_space.foot < row)
        p_space.foot = 0;
    p_space.body = std::floor((p_space.innerHeight - p_space.head - p_space.foot) / row) * row;
    std::size_t const lastTop = FirstBefore(Lines(), p_space.body);
    first = std::min(p_request.first / columns, lastTop) * columns;
    previousPage = FirstBefore(first / columns, p_space.body) * columns;
}

void LegendLayout::Place(Request const& p_request, Space const& p_space) {
    float const width = p_space.width + 2 * p_space.padding;
    float const height = p_space.head + p_space.body + p_space.foot + 2 * p_space.padding;
    auto const& [paneWidth, paneHeight] = p_request.pane;
    ground = Rectangle(0, 0, width, height);
    if (p_request.isAutomatic) {
        ground.x = static_cast<float>(paneWidth) - p_request.reservedRight - p_space.margin - width;
        ground.y = static_cast<float>(paneHeight) - p_request.reservedAbove - p_space.margin - height;
    } else {
        ground.x = static_cast<float>(std::round(p_request.x.Resolve(0, paneWidth, width)));
        ground.y = static_cast<float>(std::round(p_request.y.Resolve(0, paneHeight, height)));
    }
    ground = ToolbarLayout::MovedInto(p_request.pane, ground);
    if (p_space.head > 0) {
        float const top = ground.Top() - p_space.padding;
        float const line = ToolbarLayout::Scaled(1, _ratio);
        title = Rectangle(ground.x + p_space.padding, top - _lineHeight, p_space.width, _lineHeight);
        rule = Rectangle(title.x, title.y - ToolbarLayout::Scaled(RuleGap, _ratio) - line, p_space.width, line);
    }
    PlaceCells(p_space);
    if (p_space.foot > 0)
        PlaceButtons(p_space);
}

void LegendLayout::PlaceCells(Space const& p_space) {
    float const bottom = ground.y + p_space.padding + p_space.foot;
    float top = bottom + p_space.body;
    std::size_t line = first / columns;
    for (; line < Lines(); ++line) {
        float const height = HeightOf(line);
        bool const isFirst = line * columns == first;
        if (top - height < bottom && !isFirst)
            break;
        float const shown = std::min(height, top - bottom);
        top -= shown;
        for (std::size_t column = 0; column < columns && line * columns + column < _rows; ++column) {
            float const x = ground.x + p_space.padding + static_cast<float>(column) * (p_space.cellWidth + p_space.gap);
            cells.push_back({line * columns + column, Rectangle(x, top, p_space.cellWidth, shown)});
        }
    }
    nextPage = std::min(line * columns, _rows);
    hiddenAfter = _rows - nextPage;
}

void LegendLayout::PlaceButtons(Space const& p_space) {
    float const half = std::floor(p_space.width / 2);
    float const side = std::min(p_space.foot, half);
    float const y = ground.y + p_space.padding;
    float const left = ground.x + p_space.padding;
    up = Rectangle(left, y, side, p_space.foot);
    upCount = Rectangle(left + side, y, half - side, p_space.foot);
    down = Rectangle(left + half, y, side, p_space.foot);
    downCount = Rectangle(down.Right(), y, half - side, p_space.foot);
}

LegendLayout::Cell const* LegendLayout::CellAt(Types::Pos const& p_pos) const {
    auto const found = std::find_if(
        cells.begin(), cells.end(), [&](Cell const& p_cell) { return Algorithms::Hit::IsHit(p_cell.place, p_pos); });
    return found == cells.end() ? nullptr : &*found;
}

LegendLayout::Parts LegendLayout::PartsOf(Rectangle const& p_place, bool p_isTall, bool p_hasSwatch) const {
    Parts parts;
    float const spacing = ToolbarLayout::Scaled(RowSpacing, _ratio);
    float const half = std::floor(spacing / 2);
    if (!p_isTall) {
        float const height = RowHeight(_lineHeight, _ratio);
        float const y = p_place.Top() - height; // the upper end of a higher line
        float left = p_place.x;
        if (p_hasSwatch) {
            parts.swatch =
                Rectangle(p_place.x, y + half, std::min(SwatchWidthOf(_lineHeight), p_place.width), height - 2 * half);
            left = parts.swatch.Right() + ToolbarLayout::Scaled(SwatchGap, _ratio);
        }
        parts.text = Rectangle(left, y + half, std::max(p_place.Right() - left, 0.0F), _lineHeight);
        return parts;
    }
    float top = p_place.Top() - spacing;
    auto const next = [&](float p_height) {
        top -= p_height;
        return top >= p_place.y ? Rectangle(p_place.x, top, p_place.width, p_height) : Rectangle();
    };
    parts.text = next(_lineHeight);
    top -= half;
    parts.bar = next(ToolbarLayout::Scaled(BarHeight, _ratio));
    top -= ToolbarLayout::Scaled(TickLength, _ratio);
    parts.labels = next(_lineHeight);
    return parts;
}

float LegendLayout::WidthOf(float p_textWidth, bool p_hasSwatch, float p_lineHeight, float p_pixelRatio) {
    if (!p_hasSwatch)
        return p_textWidth;
    return SwatchWidthOf(p_lineHeight) + ToolbarLayout::Scaled(SwatchGap, p_pixelRatio) + p_textWidth;
}

float LegendLayout::BarWidth(float p_lineHeight) {
    return std::ceil(NarrowestBar * p_lineHeight);
}

} // namespace Qor::Chart::Render
