#pragma once

#include "render/Export.h"

#include <QColor>

namespace Qor::Chart::Render {

/// A colour by hue, saturation and value, as people pick colours. Exact enough that each colour of eight bits a channel
/// comes back from here as it was.
struct QOR_VIS_API HsvColor {
    double hue = 0; ///< 0 to 360 degrees; both ends are red
    double saturation = 0; ///< 0 to 1
    double value = 0; ///< 0 to 1

    bool operator==(HsvColor const&) const = default;

    /// Red, green and blue of a colour. What cannot be told from these, the hue of greys and the saturation of black,
    /// is taken from p_former.
    static HsvColor Of(QColor const& p_color, HsvColor const& p_former);

    /// The nearest colour of eight bits a channel.
    QColor Rgb(int p_alpha = 255) const;
};

} // namespace Qor::Chart::Render
