#include "framework/ogl/Highlight.h"

#include <cmath>

namespace Qor::Chart::Ogl {

Highlight::Highlight(QColor const& p_color, float p_lineWidth) {
    SetColor(p_color);
    SetLineWidth(p_lineWidth);
}

void Highlight::SetColor(QColor const& p_color) {
    if (p_color.isValid()) {
        _color = p_color.toRgb();
    }
}

void Highlight::SetLineWidth(float p_pixels) {
    _lineWidth = p_pixels > 1 ? p_pixels : 1;
}

QColor Highlight::Blend(QColor const& p_object, float p_amount) const {
    float const clamped = p_amount > 0 ? std::fmin(p_amount, 1.0F) : 0.0F;
    float const weight = clamped * static_cast<float>(_color.alphaF());
    auto const mix = [weight](double p_from, double p_to) {
        return static_cast<float>(p_from + (p_to - p_from) * static_cast<double>(weight));
    };
    QColor const object = p_object.toRgb();
    return QColor::fromRgbF(mix(object.redF(), _color.redF()), mix(object.greenF(), _color.greenF()),
        mix(object.blueF(), _color.blueF()), static_cast<float>(object.alphaF()));
}

} // namespace Qor::Chart::Ogl
