#include "tests/framework/ogl/referee/Comparison.h"

#include <cstdlib>

namespace Qor::Chart::Ogl::Referee {

Comparison Compare(QImage const& p_a, QImage const& p_b, QRgb p_background) {
    constexpr int tolerance = 2;
    auto const isNear = [](int p_x, int p_y) { return std::abs(p_x - p_y) <= tolerance; };
    Comparison result;
    result.pixels = p_a.width() * p_a.height();
    for (int y = 0; y < p_a.height(); ++y) {
        for (int x = 0; x < p_a.width(); ++x) {
            QRgb const a = p_a.pixel(x, y);
            QRgb const b = p_b.pixel(x, y);
            if (a == p_background && b == p_background)
                continue;
            ++result.drawn;
            result.agreeing += isNear(qRed(a), qRed(b)) && isNear(qGreen(a), qGreen(b)) && isNear(qBlue(a), qBlue(b)) &&
                    isNear(qAlpha(a), qAlpha(b))
                ? 1
                : 0;
        }
    }
    return result;
}

} // namespace Qor::Chart::Ogl::Referee
