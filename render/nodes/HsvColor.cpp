#include "render/nodes/HsvColor.h"

#include <algorithm>
#include <cmath>

namespace Qor::Chart::Render {

namespace {

constexpr double Sector = 60; ///< degrees from red to yellow, from yellow to green and so on
constexpr double Sectors = 6;
constexpr double Full = 255;

} // namespace

HsvColor HsvColor::Of(QColor const& p_color, HsvColor const& p_former) {
    QColor const color = QColor::fromRgba(p_color.rgba());
    double const red = color.red(), green = color.green(), blue = color.blue();
    double const most = std::max({red, green, blue});
    double const range = most - std::min({red, green, blue});
    HsvColor result = p_former;
    result.value = most / Full;
    if (most == 0)
        return result;
    result.saturation = range / most;
    if (range == 0)
        return result;
    double sectors = 0;
    if (most == red)
        sectors = (green - blue) / range;
    else if (most == green)
        sectors = (blue - red) / range + 2;
    else
        sectors = (red - green) / range + 4;
    result.hue = (sectors < 0 ? sectors + Sectors : sectors) * Sector;
    return result;
}

QColor HsvColor::Rgb(int p_alpha) const {
    // A channel is full within one sector of its own colour, falls over the next, and is least for the rest.
    auto const channel = [&](double p_center) {
        double const away = std::abs(std::remainder(hue / Sector - p_center, Sectors));
        double const part = std::clamp(2 - away, 0.0, 1.0);
        return static_cast<int>(std::lround(value * (1 - saturation * (1 - part)) * Full));
    };
    return {channel(0), channel(2), channel(4), p_alpha};
}

} // namespace Qor::Chart::Render
