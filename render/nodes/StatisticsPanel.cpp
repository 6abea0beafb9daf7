#include "render/nodes/StatisticsPanel.h"

#include "render/nodes/OverlayShapes.h"
#include "render/nodes/PixelScope.h"
#include "render/nodes/ToolbarLayout.h"
#include "render/context/DrawContext.h"
#include "framework/library/PlainState.h"
#include "framework/ogl/Agl.h"
#include "framework/ogl/Bind.h"
#include "framework/ogl/Text.h"
#include "framework/utility/Scoped.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <utility>

namespace Qor::Chart::Render {

namespace {

using namespace Ogl::Tokens;
using Agl = Utility::Scoped<Ogl::Agl>;
using Rectangle = Types::Viewport<0>;

// Lengths at pixel ratio 1.
constexpr float Padding = 8;
constexpr float ColumnGap = 14;
constexpr float UnitGap = 4;
constexpr float GroupGap = 7;
constexpr float Leading = 3;

constexpr int GroundAlpha = 232;
constexpr double NameStrength = 0.72; ///< how far names stand out from the ground, with figures at 1

QColor Between(QColor const& p_from, QColor const& p_to, double p_part) {
    auto const mix = [p_part](int p_a, int p_b) { return static_cast<int>(std::lround(p_a + (p_b - p_a) * p_part)); };
    return {mix(p_from.red(), p_to.red()), mix(p_from.green(), p_to.green()), mix(p_from.blue(), p_to.blue())};
}

/// Rectangles of one colour each, which become one shape.
class Rectangles {
public:
    void Add(Rectangle const& p_place, QColor const& p_color) {
        auto const first = static_cast<std::uint32_t>(_data.positions.size());
        for (auto const& [x, y] : {std::pair(p_place.x, p_place.y), std::pair(p_place.Right(), p_place.y),
                 std::pair(p_place.Right(), p_place.Top()), std::pair(p_place.x, p_place.Top())}) {
            _data.positions.emplace_back(x, y, 0.0F);
            _data.colors.emplace_back(p_color);
        }
        for (std::uint32_t const corner : {0U, 1U, 2U, 0U, 2U, 3U})
            _indices.push_back(first + corner);
    }

    std::shared_ptr<Ogl::PrimitiveBuffer const> Shape() {
        return std::make_shared<Ogl::PrimitiveBuffer const>(
            std::make_shared<Ogl::IndexBuffer const>(AGL_TRIANGLES, std::move(_indices)),
            std::make_shared<Ogl::VertexBuffer const>(std::move(_data)));
    }

private:
    Ogl::VertexData _data;
    std::vector<std::uint32_t> _indices;
};

bool IsDigit(char p_sign) {
    return p_sign >= '0' && p_sign <= '9';
}

} // namespace

void StatisticsPanel::SetPlace(DrawContext const& p_context, Place const& p_place) {
    Types::Schema const& schema = p_context.Schema().Top();
    if (_place == p_place && _schema == schema)
        return;
    _place = p_place;
    _schema = schema;
    _isLaidOut = false;
}

void StatisticsPanel::SetRows(Rows p_rows) {
    if (_rows == p_rows)
        return;
    _rows = std::move(p_rows);
    _isLaidOut = false;
}

void StatisticsPanel::Draw(DrawContext const& p_context) {
    if (_rows.empty() || _place.pane.IsEmpty())
        return;
    if (!_isLaidOut)
        LayOut(p_context);
    _isLaidOut = true;
    Agl agl(p_context.Graphics());
    PixelScope const pixels(agl, p_context.Viewport().Top());
    {
        Ogl::PushAttribScope const saved(agl, AGL_ALL_ATTRIB_BITS);
        Ogl::Bind<Ogl::Shader> const shader(*agl, std::shared_ptr<Ogl::Shader const>());
        Library::SetPlainState(*agl);
        agl->Color(1, 1, 1);
        agl->Draw(_ground);
    }
    _block.Draw(*agl);
}

float StatisticsPanel::WidthOf(char const* p_text) {
    return static_cast<float>(_font->Extents(p_text).width);
}

StatisticsPanel::Measures StatisticsPanel::Measure() {
    float const ratio = _place.pixelRatio;
    Measures measures;
    measures.padding = ToolbarLayout::Scaled(Padding, ratio);
    measures.gap = ToolbarLayout::Scaled(ColumnGap, ratio);
    measures.groupGap = ToolbarLayout::Scaled(GroupGap, ratio);
    measures.rowHeight = static_cast<float>(_font->Extents("0").height) + ToolbarLayout::Scaled(Leading, ratio);
    for (Row const& row : _rows)
        measures.names = std::max(measures.names, WidthOf(row.name));
    for (char const* const digit : {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"})
        measures.digit = std::max(measures.digit, WidthOf(digit));
    measures.figures = std::max(5 * measures.digit + WidthOf("."), WidthOf("idle"));
    for (char const* const unit : {"fps", "ms", "MB"})
        measures.units = std::max(measures.units, WidthOf(unit));
    measures.units += ToolbarLayout::Scaled(UnitGap, ratio);
    return measures;
}

/// Rows go down from the upper side of the panel, lines between groups too.
void StatisticsPanel::LayOut(DrawContext const& p_context) {
    _font.Take(p_context);
    _font->SetBreaksLines(false);
    _font->SetVerticalAlignment(Ogl::VerticalAlignment::Center);
    Measures const measures = Measure();
    auto const isSeparate = [this](Row const& p_row) { return p_row.isFirst && &p_row != &_rows.front(); };
    auto const groups = static_cast<float>(std::ranges::count_if(_rows, isSeparate));
    float const width = measures.names + measures.gap + measures.figures + measures.units + 2 * measures.padding;
    float const height =
        static_cast<float>(_rows.size()) * measures.rowHeight + groups * measures.groupGap + 2 * measures.padding;
    _bounds = Rectangle(static_cast<float>(std::round(_place.x.Resolve(0, _place.pane.width, width))),
        static_cast<float>(std::round(_place.y.Resolve(0, _place.pane.height, height))), width, height);
    _bounds = ToolbarLayout::MovedInto(_place.pane, _bounds);

    _block.Clear();
    std::vector<float> lines;
    float top = _bounds.Top() - measures.padding;
    for (Row const& row : _rows) {
        if (isSeparate(row)) {
            lines.push_back(top - std::floor(measures.groupGap / 2));
            top -= measures.groupGap;
        }
        top -= measures.rowHeight;
        AddRow(row, measures, _bounds.x + measures.padding, top);
    }
    MakeGround(lines, ToolbarLayout::Scaled(1, _place.pixelRatio));
}

void StatisticsPanel::AddText(std::string_view p_text, Rectangle const& p_cell, QColor const& p_color, bool p_isRight) {
    _font->SetColor(p_color);
    _font->SetHorizontalAlignment(p_isRight ? Ogl::HorizontalAlignment::Right : Ogl::HorizontalAlignment::Left);
    _block.Add(*_font, p_text, p_cell);
}

void StatisticsPanel::AddRow(Row const& p_row, Measures const& p_measures, float p_left, float p_bottom) {
    QColor const faint = Between(OverlayShapes::ReadableGround(_schema), _schema.textColor, NameStrength);
    Rectangle cell(p_left, p_bottom, p_measures.names, p_measures.rowHeight);
    AddText(p_row.name, cell, faint, false);
    cell = Rectangle(cell.Right() + p_measures.gap, p_bottom, p_measures.figures, p_measures.rowHeight);
    AddFigure(p_row.figure, p_measures, cell);
    cell = Rectangle(cell.Right(), p_bottom, p_measures.units, p_measures.rowHeight);
    float const gap = ToolbarLayout::Scaled(UnitGap, _place.pixelRatio);
    AddText(p_row.figure.unit, Rectangle(cell.x + gap, cell.y, cell.width - gap, cell.height), faint, false);
}

/// Digits stand in cells of one width, from the right on, so that they line up in any font.
void StatisticsPanel::AddFigure(CompactNumber const& p_figure, Measures const& p_measures, Rectangle p_cell) {
    QColor const& color = _schema.textColor;
    if (!std::ranges::any_of(p_figure.digits, IsDigit)) {
        AddText(p_figure.digits, p_cell, color, true);
        return;
    }
    float right = p_cell.Right();
    for (auto sign = p_figure.digits.rbegin(); sign != p_figure.digits.rend(); ++sign) {
        std::array<char, 2> const text{*sign, 0};
        float const width = IsDigit(*sign) ? p_measures.digit : WidthOf(text.data());
        right -= width;
        AddText(text.data(), Rectangle(right, p_cell.y, width, p_cell.height), color, true);
    }
}

void StatisticsPanel::MakeGround(std::vector<float> const& p_lines, float p_pixel) {
    QColor const ground = OverlayShapes::ReadableGround(_schema);
    QColor const frame = OverlayShapes::WithAlpha(_schema.borderColor, GroundAlpha);
    Rectangle const inside(
        _bounds.x + p_pixel, _bounds.y + p_pixel, _bounds.width - 2 * p_pixel, _bounds.height - 2 * p_pixel);
    Rectangles parts;
    parts.Add(Rectangle(_bounds.x, _bounds.y, _bounds.width, p_pixel), frame);
    parts.Add(Rectangle(_bounds.x, inside.Top(), _bounds.width, p_pixel), frame);
    parts.Add(Rectangle(_bounds.x, inside.y, p_pixel, inside.height), frame);
    parts.Add(Rectangle(inside.Right(), inside.y, p_pixel, inside.height), frame);
    parts.Add(inside, OverlayShapes::WithAlpha(ground, GroundAlpha));
    float const margin = ToolbarLayout::Scaled(Padding, _place.pixelRatio);
    QColor const line = OverlayShapes::WithAlpha(Between(ground, _schema.textColor, 0.2), 255);
    for (float const y : p_lines)
        parts.Add(Rectangle(_bounds.x + margin, y, _bounds.width - 2 * margin, p_pixel), line);
    _ground = parts.Shape();
}

} // namespace Qor::Chart::Render
