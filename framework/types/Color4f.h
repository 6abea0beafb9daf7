#pragma once

#include "framework/Export.h"

#include <iosfwd>

class QColor;

namespace Qor::Chart::Types {

/// A colour as the graphics take it: four channels from 0 to 1, not premultiplied. Default-constructed it is opaque
/// black.
struct QOR_FRAMEWORK_API Color4f {
    float red = 0;
    float green = 0;
    float blue = 0;
    float alpha = 1;

    constexpr Color4f() = default;
    constexpr Color4f(float p_red, float p_green, float p_blue, float p_alpha = 1)
        : red(p_red), green(p_green), blue(p_blue), alpha(p_alpha) {}
    /// An invalid QColor becomes opaque black.
    explicit Color4f(QColor const& p_color);

    constexpr bool operator==(Color4f const&) const = default;

    constexpr float const* Data() const { return &red; }
    /// Channels outside 0 to 1 are clamped, NaN becomes 0.
    QColor ToQColor() const;
};

/// Writes "(red, green, blue, alpha)".
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, Color4f const& p_color);

} // namespace Qor::Chart::Types
