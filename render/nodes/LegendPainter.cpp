#include "render/nodes/LegendPainter.h"

#include "render/nodes/LoadedSymbol.h"
#include "render/nodes/OverlayShapes.h"
#include "render/nodes/ToolbarLayout.h"
#include "render/context/DrawContext.h"
#include "framework/library/PlainState.h"
#include "framework/library/TexturedQuad.h"
#include "framework/ogl/Agl.h"
#include "framework/ogl/Bind.h"
#include "framework/ogl/PushAttribScope.h"
#include "framework/ogl/Text.h"
#include "framework/utility/Scoped.h"
#include "framework/utility/Unicode.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace Qor::Chart::Render {

namespace {

using namespace Ogl::Tokens;
using Agl = Utility::Scoped<Ogl::Agl>;
using Rectangle = LegendPainter::Rectangle;
using Model::LegendSwatch;

constexpr float DimmedOpacity = 0.3F;
constexpr std::size_t MostTicks = 7;
/// The least distance between the numbers along a bar, in heights of a line.
constexpr float LabelGap = 0.6F;
constexpr float TickLength = 3; ///< at pixel ratio 1
constexpr int Corners = 24; ///< of what is drawn for a circle

QColor ColorOf(LegendRow const& p_row, Types::Schema const& p_schema) {
    return p_row.GetLook().color.value_or(p_schema.foregroundColor);
}

QColor Dimmed(QColor const& p_color, bool p_isDimmed) {
    return p_isDimmed ? OverlayShapes::Faded(p_color, DimmedOpacity) : p_color;
}

bool ShowsSymbol(LegendRow const& p_row) {
    return p_row.GetLook().swatch == LegendSwatch::Symbol && p_row.GetLook().symbol;
}

/// From the right, the front and above, with z upwards.
Types::Matrix4 const& ViewOfSymbols() {
    static Types::Matrix4 const View = Types::Matrix4::Rotation(25, {1, 0, 0}) *
        Types::Matrix4::Rotation(-30, {0, 1, 0}) * Types::Matrix4::Rotation(-90, {1, 0, 0});
    return View;
}

template <std::size_t Count>
void Fill(
    DrawContext const& p_context, std::array<std::array<float, 2>, Count> const& p_corners, QColor const& p_color) {
    Agl agl(p_context.Graphics());
    Ogl::PushAttribScope const saved(agl, AGL_ALL_ATTRIB_BITS);
    Ogl::Bind<Ogl::Shader> const shader(agl, std::shared_ptr<Ogl::Shader const>());
    Library::SetPlainState(*agl);
    agl->Color(p_color);
    agl->Begin(AGL_POLYGON);
    for (auto const& [x, y] : p_corners)
        agl->Vertex(x, y);
    agl->End();
}

/// How much larger than the sphere around it a symbol may be drawn, so that its box just fits into a place.
double ZoomOf(Types::BoundingBox_Base<double> const& p_bounds, Rectangle const& p_place) {
    if (!p_bounds.IsDefined() || p_place.IsEmpty())
        return 1;
    Types::Vector3_Base<double> const half = p_bounds.Extents() / 2.0;
    double x = 0;
    double y = 0;
    for (unsigned corner = 0; corner < 4; ++corner) { // the others lie opposite
        auto const seen = ViewOfSymbols() *
            Types::Vector4_Base<double>(
                (corner & 1U) != 0 ? half.x : -half.x, (corner & 2U) != 0 ? half.y : -half.y, half.z, 0);
        x = std::max(x, std::abs(seen.x));
        y = std::max(y, std::abs(seen.y));
    }
    double const radius = Length(half);
    double const shorter = std::min(p_place.width, p_place.height);
    double const zoom = std::min(radius * p_place.width / (shorter * x), radius * p_place.height / (shorter * y));
    return std::isfinite(zoom) ? zoom : 1;
}

/// Draws a symbol in a view of its own, as large as fits into a place of the viewport.
void DrawSymbol(DrawContext const& p_context, Agl& p_agl, LoadedSymbol const& p_symbol, Types::Color4f const& p_color,
    Rectangle const& p_place) {
    Rectangle view = p_place;
    view.Translate(p_context.Viewport().Top().x, p_context.Viewport().Top().y);
    p_agl->Viewport(view);
    p_agl->MatrixMode(AGL_PROJECTION);
    p_agl->PushMatrix();
    p_agl->LoadIdentity();
    p_agl->Ortho(
        view, p_symbol.Bounds(), Types::Matrix4::Scaling(ZoomOf(p_symbol.Bounds(), p_place)) * ViewOfSymbols());
    p_agl->MatrixMode(AGL_MODELVIEW);
    p_agl->PushMatrix();
    p_agl->LoadIdentity();
    {
        Ogl::Bind<Ogl::Shader> const shader(p_agl, p_symbol.Shader(p_context, p_agl));
        p_agl->Color(p_color);
        p_agl->Draw(p_symbol.Buffer());
    }
    p_agl->PopMatrix();
    p_agl->MatrixMode(AGL_PROJECTION);
    p_agl->PopMatrix();
    p_agl->MatrixMode(AGL_MODELVIEW);
}

} // namespace

bool LegendPainter::TakeStyle(DrawContext const& p_context) {
    Types::Schema const& schema = p_context.Schema().Top();
    Types::NiceIntervals::NumberFormat const& format = p_context.NumberFormat().Top();
    float const ratio = OverlayShapes::PixelRatio(p_context);
    if (_font && schema == _schema && format == _format && ratio == _ratio)
        return false;
    _font.Take(p_context);
    _font->SetVerticalAlignment(Ogl::VerticalAlignment::Center);
    _font->SetBreaksLines(false);
    _schema = schema;
    _format = format;
    _ratio = ratio;
    _lineHeight = static_cast<float>(std::max(_font->Extents(std::wstring_view(L"0")).height, 1));
    return true;
}

float LegendPainter::WidthOf(LegendRow const& p_row) {
    LegendRow::Look const& look = p_row.GetLook();
    float const width = LegendLayout::WidthOf(WidthOf(look.text), look.HasSwatch(), _lineHeight, _ratio);
    return look.HasBar() ? std::max(width, LegendLayout::BarWidth(_lineHeight)) : width;
}

float LegendPainter::WidthOf(std::wstring const& p_title) {
    return p_title.empty() ? 0 : static_cast<float>(_font->Extents(p_title).width);
}

void LegendPainter::Prepare(DrawContext const& p_context, Page const& p_page) {
    _block.Clear();
    _bars.clear();
    if (p_page.layout.IsEmpty())
        return;
    _font->SetHorizontalAlignment(Ogl::HorizontalAlignment::Start);
    AddText(p_page.title, p_page.layout.title, _schema.textColor);
    for (Item const& item : p_page.items) {
        LegendRow::Look const& look = item.row->GetLook();
        LegendLayout::Parts const parts = p_page.layout.PartsOf(item.place, look.HasBar(), look.HasSwatch());
        _font->SetHorizontalAlignment(Ogl::HorizontalAlignment::Start);
        AddText(look.text, parts.text, item.isDimmed ? _schema.disabledColor : _schema.textColor);
        if (look.HasBar() && !parts.bar.IsEmpty())
            AddBar(p_context, item, parts);
    }
    _font->SetHorizontalAlignment(Ogl::HorizontalAlignment::Left);
    AddCounts(p_page.layout);
}

void LegendPainter::AddText(std::wstring const& p_text, Rectangle const& p_place, QColor const& p_color) {
    if (p_text.empty() || p_place.IsEmpty())
        return;
    _font->SetColor(p_color);
    _block.Add(*_font, p_text, p_place);
}

void LegendPainter::AddBar(DrawContext const& p_context, Item const& p_item, LegendLayout::Parts const& p_parts) {
    Bar bar{p_parts.bar, nullptr, p_item.isDimmed, {}};
    if (LegendScale const* const scale = p_item.row->GetLook().scale.get()) {
        Agl agl(p_context.Graphics());
        float const line = ToolbarLayout::Scaled(1, _ratio);
        QImage const image = scale->map.Bar(static_cast<int>(p_parts.bar.width - 2 * line), 1);
        if (!image.isNull())
            bar.texture = std::make_shared<Library::Texture const>(image, agl, "", Library::Texture::Exact);
        AddTicks(*scale, p_parts, bar.isDimmed ? _schema.disabledColor : _schema.textColor, bar);
    }
    _bars.push_back(std::move(bar));
}

/// As many ticks as there is space for their numbers. A number stands below its tick, or as near as it can.
void LegendPainter::AddTicks(
    LegendScale const& p_scale, LegendLayout::Parts const& p_parts, QColor const& p_color, Bar& p_bar) {
    if (p_parts.labels.IsEmpty())
        return;
    float const gap = std::ceil(LabelGap * _lineHeight);
    float const line = ToolbarLayout::Scaled(1, _ratio);
    std::vector<LegendScale::Tick> ticks;
    std::vector<Rectangle> places;
    for (std::size_t most = MostTicks; most > 0; --most) {
        ticks = p_scale.Ticks(_format, most);
        std::ranges::sort(ticks, {}, &LegendScale::Tick::position);
        places.clear();
        bool fits = true;
        for (LegendScale::Tick const& tick : ticks) {
            auto const width = static_cast<float>(_font->Extents(tick.text).width);
            float const center = p_bar.place.x + std::round(static_cast<float>(tick.position) * p_bar.place.width);
            float const right = p_parts.labels.Right() - width;
            float const x =
                std::clamp(std::round(center - width / 2), p_parts.labels.x, std::max(right, p_parts.labels.x));
            fits = fits && right >= p_parts.labels.x && (places.empty() || x >= places.back().Right() + gap);
            places.emplace_back(x, p_parts.labels.y, width, p_parts.labels.height);
        }
        if (fits)
            break;
        ticks.clear();
    }
    float const length = ToolbarLayout::Scaled(TickLength, _ratio);
    for (std::size_t i = 0; i < ticks.size(); ++i) {
        float const center = p_bar.place.x + std::round(static_cast<float>(ticks[i].position) * p_bar.place.width);
        float const x = std::clamp(center - std::floor(line / 2), p_bar.place.x, p_bar.place.Right() - line);
        p_bar.ticks.emplace_back(x, p_bar.place.y - length, line, length);
        AddText(Utility::FromUtf8(ticks[i].text), places[i], p_color);
    }
}

void LegendPainter::AddCounts(LegendLayout const& p_layout) {
    if (!p_layout.IsScrolled())
        return;
    float const gap = ToolbarLayout::Scaled(2, _ratio);
    auto const add = [&](std::size_t p_count, Rectangle p_place) {
        p_place.x += gap;
        p_place.width -= gap;
        AddText(std::to_wstring(p_count), p_place, p_count > 0 ? _schema.textColor : _schema.disabledColor);
    };
    add(p_layout.first, p_layout.upCount);
    add(p_layout.hiddenAfter, p_layout.downCount);
}

void LegendPainter::Draw(
    DrawContext const& p_context, Page const& p_page, Ground const& p_ground, Rectangle const& p_lit) {
    float const line = ToolbarLayout::Scaled(1, _ratio);
    LegendLayout const& layout = p_page.layout;
    OverlayShapes::DrawFrame(p_context, layout.ground, p_ground.border, p_ground.fill, line);
    OverlayShapes::DrawFrame(p_context, layout.rule, {}, _schema.gridColor);
    if (!p_lit.IsEmpty())
        OverlayShapes::DrawButtonGround(p_context, p_lit, {.isHovered = true});
    for (Item const& item : p_page.items) {
        LegendRow::Look const& look = item.row->GetLook();
        if (look.HasSwatch() && !ShowsSymbol(*item.row))
            DrawSwatch(p_context, item, layout.PartsOf(item.place, false, true).swatch);
    }
    DrawBars(p_context);
    DrawButtons(p_context, layout);
    DrawSymbols(p_context, p_page);
    Agl agl(p_context.Graphics());
    _block.Draw(*agl);
}

void LegendPainter::DrawSwatch(DrawContext const& p_context, Item const& p_item, Rectangle const& p_place) const {
    float const line = ToolbarLayout::Scaled(1, _ratio);
    QColor const color = Dimmed(ColorOf(*p_item.row, _schema), p_item.isDimmed);
    switch (p_item.row->GetLook().swatch) {
    case LegendSwatch::Line: {
        float const width = std::min(ToolbarLayout::Scaled(std::max(_schema.lineWidth, 2.0F), _ratio), p_place.height);
        float const y = p_place.y + std::floor((p_place.height - width) / 2);
        OverlayShapes::DrawFrame(p_context, {p_place.x, y, p_place.width, width}, {}, color);
        return;
    }
    case LegendSwatch::Point:
        DrawPoint(p_context, p_place, color);
        return;
    case LegendSwatch::Symbol: // it cannot be had
        OverlayShapes::DrawFrame(p_context, OverlayShapes::Inset(p_place, 0, line), _schema.disabledColor, {}, line);
        return;
    default:
        OverlayShapes::DrawFrame(p_context, OverlayShapes::Inset(p_place, 0, line),
            Dimmed(_schema.borderColor, p_item.isDimmed), color, line);
    }
}

void LegendPainter::DrawPoint(DrawContext const& p_context, Rectangle const& p_place, QColor const& p_color) const {
    float const wanted = std::max(_schema.pointSize, 6.0F) * _ratio / 2;
    float const radius = std::min({wanted, p_place.width / 2, p_place.height / 2});
    std::array<std::array<float, 2>, Corners> corners{};
    for (std::size_t i = 0; i < Corners; ++i) {
        float const angle = 2 * std::numbers::pi_v<float> * static_cast<float>(i) / Corners;
        corners[i] = {p_place.x + p_place.width / 2 + radius * std::cos(angle),
            p_place.y + p_place.height / 2 + radius * std::sin(angle)};
    }
    Fill(p_context, corners, p_color);
}

void LegendPainter::DrawSymbols(DrawContext const& p_context, Page const& p_page) const {
    if (std::ranges::none_of(p_page.items, [](Item const& p_item) { return ShowsSymbol(*p_item.row); }))
        return;
    Agl agl(p_context.Graphics());
    Ogl::PushAttribScope const saved(agl, AGL_ALL_ATTRIB_BITS);
    Library::SetPlainState(*agl);
    agl->Enable(AGL_DEPTH_TEST);
    agl->DepthFunc(AGL_LESS);
    agl->DepthMask(true);
    agl->Enable(AGL_SCISSOR_TEST);
    Rectangle ground = p_page.layout.ground;
    ground.Translate(p_context.Viewport().Top().x, p_context.Viewport().Top().y);
    agl->PushScissor();
    agl->Scissor(ground);
    agl->Clear(AGL_DEPTH_BUFFER_BIT);
    for (Item const& item : p_page.items) {
        if (!ShowsSymbol(*item.row))
            continue;
        LoadedSymbol const& symbol = *item.row->GetLook().symbol;
        bool const isPlain = !item.row->GetLook().color && symbol.HasColors();
        QColor const color = isPlain ? QColor(Qt::white) : ColorOf(*item.row, _schema);
        DrawSymbol(p_context, agl, symbol, Types::Color4f(Dimmed(color, item.isDimmed)),
            p_page.layout.PartsOf(item.place, false, true).swatch);
    }
    agl->PopScissor();
}

void LegendPainter::DrawBars(DrawContext const& p_context) const {
    float const line = ToolbarLayout::Scaled(1, _ratio);
    for (Bar const& bar : _bars) {
        QColor const border = Dimmed(_schema.borderColor, bar.isDimmed);
        OverlayShapes::DrawFrame(p_context, bar.place, border, bar.texture ? QColor() : _schema.disabledColor, line);
        if (bar.texture) {
            Library::TexturedQuad quad(OverlayShapes::Inset(bar.place, line, line));
            quad.SetColor(Dimmed(Qt::white, bar.isDimmed));
            quad(p_context.Graphics(), *bar.texture);
        }
        for (Rectangle const& tick : bar.ticks)
            OverlayShapes::DrawFrame(p_context, tick, {}, bar.isDimmed ? _schema.disabledColor : _schema.textColor);
    }
}

void LegendPainter::DrawButtons(DrawContext const& p_context, LegendLayout const& p_layout) const {
    auto const draw = [&](Rectangle const& p_place, float p_direction, bool p_isEnabled) {
        float const size = std::floor(std::min(p_place.width, p_place.height) / 4);
        float const x = p_place.x + p_place.width / 2;
        float const y = p_place.y + p_place.height / 2 - p_direction * size / 2;
        std::array<std::array<float, 2>, 3> const corners{{{x - size, y}, {x + size, y}, {x, y + p_direction * size}}};
        Fill(p_context, corners, p_isEnabled ? _schema.textColor : _schema.disabledColor);
    };
    if (!p_layout.IsScrolled())
        return;
    draw(p_layout.up, 1, p_layout.first > 0);
    draw(p_layout.down, -1, p_layout.hiddenAfter > 0);
}

} // namespace Qor::Chart::Render
