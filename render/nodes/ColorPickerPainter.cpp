#include "render/nodes/ColorPickerPainter.h"

#include "render/nodes/OverlayShapes.h"
#include "render/nodes/ToolbarLayout.h"
#include "render/context/DrawContext.h"
#include "framework/library/PlainState.h"
#include "framework/library/TexturedQuad.h"
#include "framework/ogl/Agl.h"
#include "framework/ogl/PushAttribScope.h"
#include "framework/utility/Scoped.h"

#include <QImage>

#include <algorithm>
#include <array>
#include <cmath>

namespace Qor::Chart::Render {

namespace {

using namespace Ogl::Tokens;
using Agl = Utility::Scoped<Ogl::Agl>;
using Layout = ColorPickerLayout;
using Rectangle = Types::Viewport<0>;
using Shapes = OverlayShapes;

// Lengths at pixel ratio 1.
constexpr float CheckSide = 4;
constexpr float RingRadius = 6;
constexpr float RingLine = 1.6F;
constexpr float RingEdge = 1;
constexpr float ThumbWidth = 7;
constexpr float ThumbOverhang = 2;
constexpr float FocusDistance = 3;
constexpr float FocusLine = 2;

constexpr QRgb LightCheck = 0xFFFFFFFF;
constexpr QRgb DarkCheck = 0xFFCCCCCC;
constexpr QColor Edge(70, 70, 70);
constexpr QColor Refusal(215, 45, 45);
constexpr int EmptyPlaceAlpha = 90;
constexpr int DisabledAlpha = 160; ///< of the veil over what cannot be used

QImage Checks() {
    QImage image(2, 2, QImage::Format_ARGB32);
    image.fill(LightCheck);
    image.setPixel(0, 0, DarkCheck);
    image.setPixel(1, 1, DarkCheck);
    return image;
}

/// How much of a pixel lies within a distance of a circle's line.
float Coverage(float p_away, float p_reach) {
    return std::clamp(p_reach - p_away + 0.5F, 0.0F, 1.0F);
}

/// A white ring with dark edges, to be seen on any colour. The side is odd, so that it has a pixel in the middle.
QImage Ring(float p_ratio) {
    int const half = std::max(static_cast<int>(std::lround(RingRadius * p_ratio)), 2);
    int const side = 2 * half + 1;
    float const line = RingLine * p_ratio / 2;
    float const edge = line + RingEdge * p_ratio;
    float const radius = static_cast<float>(half) + 0.5F - edge;
    QImage image(side, side, QImage::Format_ARGB32);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            float const away =
                std::abs(std::hypot(static_cast<float>(x - half), static_cast<float>(y - half)) - radius);
            float const white = Coverage(away, line);
            int const grey = static_cast<int>(std::lround(255 * white + static_cast<float>(Edge.red()) * (1 - white)));
            int const alpha = static_cast<int>(std::lround(255 * Coverage(away, edge)));
            image.setPixel(x, y, qRgba(grey, grey, grey, alpha));
        }
    }
    return image;
}

/// Draws pieces of one picker, all equally faded.
class Brush {
public:
    Brush(DrawContext const& p_context, float p_opacity)
        : _context(p_context), _opacity(p_opacity), _ratio(Shapes::PixelRatio(p_context)) {}

    Types::Schema const& Schema() const { return _context.Schema().Top(); }
    float Scaled(float p_length) const { return ToolbarLayout::Scaled(p_length, _ratio); }

    void Frame(Rectangle const& p_place, QColor const& p_outline, QColor const& p_fill, float p_line = 1) const {
        Shapes::DrawFrame(_context, p_place, Faded(p_outline), Faded(p_fill), Scaled(p_line));
    }
    void Outline(Rectangle const& p_place) const { Frame(p_place, Schema().borderColor, QColor()); }

    /// Fills a rectangle so that it fades from one side to the other.
    void Fade(Rectangle const& p_place, QColor const& p_begin, QColor const& p_end, bool p_isUpwards) const {
        if (p_place.IsEmpty())
            return;
        Agl agl(_context.Graphics());
        Ogl::PushAttribScope const saved(agl, AGL_ALL_ATTRIB_BITS);
        Library::SetPlainState(*agl);
        agl->ShadeModel(AGL_SMOOTH);
        QColor const begin = Faded(p_begin);
        QColor const end = Faded(p_end);
        agl->Begin(AGL_QUADS);
        agl->Color(begin);
        agl->Vertex(p_place.x, p_place.y);
        agl->Color(p_isUpwards ? begin : end);
        agl->Vertex(p_place.Right(), p_place.y);
        agl->Color(end);
        agl->Vertex(p_place.Right(), p_place.Top());
        agl->Color(p_isUpwards ? end : begin);
        agl->Vertex(p_place.x, p_place.Top());
        agl->End();
    }

    void Checks(Rectangle const& p_place, Library::Texture const& p_checks) const {
        double const period = 2 * static_cast<double>(Scaled(CheckSide));
        Library::TexturedQuad quad(p_place);
        quad.SetPart(0, 0, p_place.width / period, p_place.height / period).SetColor(Faded(Qt::white));
        quad(_context.Graphics(), p_checks);
    }

    /// Draws an image around the middle of a pixel.
    void Mark(float p_x, float p_y, Library::Texture const& p_image) const {
        auto const width = static_cast<float>(p_image.Width());
        auto const height = static_cast<float>(p_image.Height());
        Library::TexturedQuad quad(Rectangle(p_x - width / 2, p_y - height / 2, width, height));
        quad.SetColor(Faded(Qt::white));
        quad(_context.Graphics(), p_image);
    }

    /// What marks a value on a slider.
    void Thumb(Rectangle const& p_slider, double p_value) const {
        float const half = std::floor(Scaled(ThumbWidth) / 2);
        float const over = Scaled(ThumbOverhang);
        float const x = Layout::XOf(p_slider, p_value) - 0.5F;
        Frame({x - half, p_slider.y - over, 2 * half + 1, p_slider.height + 2 * over}, Edge, Qt::white);
    }

    void Swatch(Rectangle const& p_place, QColor const& p_color, Library::Texture const& p_checks) const {
        if (p_place.IsEmpty())
            return;
        if (p_color.alpha() < 255)
            Checks(p_place, p_checks);
        Frame(p_place, QColor(), p_color);
        Outline(p_place);
    }

private:
    QColor Faded(QColor const& p_color) const {
        return p_color.isValid() && _opacity < 1 ? Shapes::Faded(p_color, _opacity) : p_color;
    }

    DrawContext const& _context;
    float _opacity;
    float _ratio;
};

void DrawArea(Brush const& p_brush, Rectangle const& p_place, HsvColor const& p_hsv, Library::Texture const& p_ring) {
    if (p_place.IsEmpty())
        return;
    p_brush.Fade(p_place, Qt::white, HsvColor{p_hsv.hue, 1, 1}.Rgb(), false);
    p_brush.Fade(p_place, Qt::black, QColor(0, 0, 0, 0), true);
    p_brush.Outline(p_place);
    p_brush.Mark(Layout::XOf(p_place, p_hsv.saturation), Layout::YOf(p_place, p_hsv.value), p_ring);
}

void DrawHue(Brush const& p_brush, Rectangle const& p_place, double p_hue) {
    constexpr int sectors = 6;
    constexpr double sector = 60;
    if (p_place.IsEmpty())
        return;
    float const width = p_place.width / sectors;
    for (int i = 0; i < sectors; ++i) {
        Rectangle const part(p_place.x + width * static_cast<float>(i), p_place.y, width, p_place.height);
        p_brush.Fade(part, HsvColor{i * sector, 1, 1}.Rgb(), HsvColor{(i + 1) * sector, 1, 1}.Rgb(), false);
    }
    p_brush.Outline(p_place);
    p_brush.Thumb(p_place, p_hue / (sectors * sector));
}

void DrawAlpha(
    Brush const& p_brush, Rectangle const& p_place, QColor const& p_color, Library::Texture const& p_checks) {
    if (p_place.IsEmpty())
        return;
    p_brush.Checks(p_place, p_checks);
    p_brush.Fade(p_place, Shapes::WithAlpha(p_color, 0), Shapes::WithAlpha(p_color, 255), false);
    p_brush.Outline(p_place);
    p_brush.Thumb(p_place, p_color.alphaF());
}

} // namespace

void ColorPickerPainter::MakeImages(DrawContext const& p_context) {
    float const ratio = Shapes::PixelRatio(p_context);
    if (ratio == _ratio)
        return;
    Agl agl(p_context.Graphics());
    Ogl::TextureSampling repeated = Library::Texture::Exact;
    repeated.wrapS = AGL_REPEAT;
    repeated.wrapT = AGL_REPEAT;
    if (!_checks)
        _checks.emplace(Checks(), agl, "checks", repeated);
    _ring.emplace(Ring(ratio), agl, "ring", Library::Texture::Exact);
    _ratio = ratio;
}

void ColorPickerPainter::Draw(
    DrawContext const& p_context, ColorPickerLayout const& p_layout, Content const& p_content) {
    MakeImages(p_context);
    Brush const brush(p_context, p_content.opacity);
    Types::Schema const& schema = brush.Schema();
    brush.Frame(p_layout.panel, schema.borderColor, schema.titleColor);
    DrawArea(brush, p_layout.area, p_content.hsv, *_ring);
    DrawHue(brush, p_layout.hue, p_content.hsv.hue);
    DrawAlpha(brush, p_layout.alpha, p_content.color, *_checks);
    brush.Swatch(p_layout.former, p_content.former, *_checks);
    brush.Swatch(p_layout.present, p_content.color, *_checks);
    for (std::size_t i = 0; i < Layout::RecentCount; ++i) {
        if (i < p_content.recent.size())
            brush.Swatch(p_layout.recent.at(i), p_content.recent[i], *_checks);
        else
            brush.Frame(p_layout.recent.at(i), Shapes::WithAlpha(schema.borderColor, EmptyPlaceAlpha), QColor());
    }
}

void ColorPickerPainter::DrawMarks(
    DrawContext const& p_context, ColorPickerLayout const& p_layout, Content const& p_content) const {
    Brush const brush(p_context, p_content.opacity);
    Types::Schema const& schema = brush.Schema();
    if (p_content.isTextRefused)
        brush.Frame(p_layout.text, Refusal, QColor(), FocusLine);
    if (!p_content.isEnabled)
        brush.Frame(p_layout.panel, QColor(), Shapes::WithAlpha(schema.titleColor, DisabledAlpha));
    if (!p_content.focused)
        return;
    Rectangle place = p_layout.PlaceOf(*p_content.focused);
    if (*p_content.focused == Layout::Part::Recent)
        place = p_layout.recent.at(std::min(p_content.focusedRecent, Layout::RecentCount - 1));
    if (!place.IsEmpty())
        brush.Frame(place.Grow(brush.Scaled(FocusDistance)), schema.selectionColor, QColor(), FocusLine);
}

} // namespace Qor::Chart::Render
