#include "render/nodes/OverlayShapes.h"

#include "render/context/DrawContext.h"
#include "render/context/SceneCapabilities.h"
#include "framework/library/Box.h"

#include <algorithm>
#include <cmath>

namespace Qor::Chart::Render {

namespace {

constexpr int CheckedAlpha = 90;
constexpr float HoveredAlpha = 60;
constexpr float PressedAlpha = 170;
constexpr double LeastContrast = 4.5; ///< of texts that are easy to read

/// Brightness as people see it, from 0 to 1.
double Luminance(QColor const& p_color) {
    auto const linear = [](double p_value) {
        return p_value <= 0.04045 ? p_value / 12.92 : std::pow((p_value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(p_color.redF()) + 0.7152 * linear(p_color.greenF()) + 0.0722 * linear(p_color.blueF());
}

double Contrast(QColor const& p_a, QColor const& p_b) {
    double const a = Luminance(p_a) + 0.05;
    double const b = Luminance(p_b) + 0.05;
    return std::max(a, b) / std::min(a, b);
}

} // namespace

void OverlayShapes::DrawFrame(DrawContext const& p_context, Rectangle const& p_place, QColor const& p_outline,
    QColor const& p_fill, float p_lineWidth) {
    if (p_place.IsEmpty())
        return;
    Library::Box box(p_outline, p_fill);
    box.SetLineWidth(p_lineWidth);
    box(p_context.Graphics(), Rectangle(p_place.x, p_place.y, p_place.width - 1, p_place.height - 1));
}

void OverlayShapes::DrawButtonGround(
    DrawContext const& p_context, Rectangle const& p_place, ButtonState const& p_state) {
    Types::Schema const& schema = p_context.Schema().Top();
    if (p_state.isChecked) {
        QColor const& color = p_state.isEnabled ? schema.selectionColor : schema.disabledColor;
        DrawFrame(
            p_context, p_place, Faded(color, p_state.opacity), Faded(WithAlpha(color, CheckedAlpha), p_state.opacity));
    }
    float const idleAlpha = p_state.isHovered ? HoveredAlpha : 0;
    float const alpha = idleAlpha + (PressedAlpha - idleAlpha) * p_state.pressed;
    if (!p_state.isEnabled || !(alpha > 0))
        return;
    DrawFrame(p_context, p_place, Faded(schema.highlightColor, p_state.opacity),
        Faded(WithAlpha(schema.highlightColor, static_cast<int>(std::lround(alpha))), p_state.opacity));
}

QColor OverlayShapes::ReadableGround(Types::Schema const& p_schema) {
    if (Contrast(p_schema.clearColor, p_schema.textColor) >= LeastContrast)
        return p_schema.clearColor;
    QColor const black(0, 0, 0);
    QColor const white(255, 255, 255);
    return Contrast(black, p_schema.textColor) > Contrast(white, p_schema.textColor) ? black : white;
}

QColor OverlayShapes::WithAlpha(QColor p_color, int p_alpha) {
    p_color.setAlpha(p_alpha);
    return p_color;
}

QColor OverlayShapes::Faded(QColor p_color, float p_opacity) {
    p_color.setAlphaF(p_color.alphaF() * p_opacity);
    return p_color;
}

OverlayShapes::Rectangle OverlayShapes::Inset(Rectangle const& p_place, float p_x, float p_y) {
    return {p_place.x + p_x, p_place.y + p_y, std::max(p_place.width - 2 * p_x, 0.0F),
        std::max(p_place.height - 2 * p_y, 0.0F)};
}

OverlayShapes::Rectangle OverlayShapes::Fitted(Library::Texture const& p_texture, Rectangle const& p_place) {
    auto const width = static_cast<float>(std::max(p_texture.Width(), 1));
    auto const height = static_cast<float>(std::max(p_texture.Height(), 1));
    float const scale = std::min(p_place.width / width, p_place.height / height);
    float const x = std::round((p_place.width - width * scale) / 2);
    float const y = std::round((p_place.height - height * scale) / 2);
    return Inset(p_place, x, y);
}

float OverlayShapes::PixelRatio(DrawContext const& p_context) {
    float const ratio = p_context.Capabilities().pixelRatio;
    return ratio > 0 && std::isfinite(ratio) ? ratio : 1;
}

} // namespace Qor::Chart::Render
