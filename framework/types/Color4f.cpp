#include "framework/types/Color4f.h"

#include "framework/types/Math.h"

#include <QColor>

#include <ostream>

namespace Qor::Chart::Types {

Color4f::Color4f(QColor const& p_color) {
    if (!p_color.isValid()) {
        return;
    }
    QColor const rgb = p_color.toRgb();
    red = static_cast<float>(rgb.redF());
    green = static_cast<float>(rgb.greenF());
    blue = static_cast<float>(rgb.blueF());
    alpha = static_cast<float>(rgb.alphaF());
}

QColor Color4f::ToQColor() const {
    auto const channel = [](float p_value) { return Math::Clamp(p_value, 0.0F, 1.0F); };
    return QColor::fromRgbF(channel(red), channel(green), channel(blue), channel(alpha));
}

std::ostream& operator<<(std::ostream& p_stream, Color4f const& p_color) {
    return p_stream << '(' << p_color.red << ", " << p_color.green << ", " << p_color.blue << ", " << p_color.alpha
                    << ')';
}

} // namespace Qor::Chart::Types
