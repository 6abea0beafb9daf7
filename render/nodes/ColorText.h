#pragma once

#include "render/Export.h"

#include <QColor>

#include <optional>
#include <string>
#include <string_view>

namespace Qor::Chart::Render {

/// Colours as hexadecimal text, in the form that scene files and properties have: #rgb, #rrggbb, or #aarrggbb with the
/// alpha in front. Digits are upper or lower case, the # may be left out, blanks around are passed over.
struct QOR_VIS_API ColorText {
    /// #rrggbb, or #aarrggbb for a colour that is not opaque.
    static std::wstring Write(QColor const& p_color);
    /// Nothing when the text is none of the forms. A text without alpha gives an opaque colour.
    static std::optional<QColor> Read(std::wstring_view p_text);
};

} // namespace Qor::Chart::Render
