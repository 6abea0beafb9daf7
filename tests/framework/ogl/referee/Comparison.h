#pragma once

#include <QImage>

namespace Qor::Chart::Ogl::Referee {

/// How two pictures of the same size compare in the pixels that either of them shows something in.
struct Comparison {
    int pixels = 0; ///< in each picture
    int drawn = 0; ///< pixels that differ from the background in either picture
    int agreeing = 0; ///< drawn pixels whose four channels differ by at most 2 of 255

    bool IsDrawnEnough() const { return 5 * drawn >= pixels; }
    double Agreement() const { return drawn == 0 ? 1 : static_cast<double>(agreeing) / drawn; }
};

/// p_background is the colour that counts as nothing.
Comparison Compare(QImage const& p_a, QImage const& p_b, QRgb p_background);

} // namespace Qor::Chart::Ogl::Referee
