#pragma once

#include "framework/library/Texture.h"
#include "framework/types/Viewport.h"
#include "render/Export.h"
#include "render/nodes/ColorPickerLayout.h"
#include "render/nodes/HsvColor.h"

#include <QColor>

#include <cstddef>
#include <optional>
#include <span>

namespace Qor::Chart::Ogl {
class Agl;
}

namespace Qor::Chart::Render {

class DrawContext;

/// Draws a colour picker, all but what stands in its field, in pixels as after `Agl::Ortho2D` and in the colours of the
/// context's schema. It keeps the little images that it needs. All graphics state is brought back.
class QOR_VIS_API ColorPickerPainter {
public:
    /// What is to be seen.
    struct Content {
        HsvColor hsv;
        QColor color;
        QColor former;
        std::span<QColor const> recent; ///< no more than there are places
        std::optional<ColorPickerLayout::Part> focused; ///< which part has a ring around
        std::size_t focusedRecent = 0;
        bool isTextRefused = false;
        bool isEnabled = true;
        float opacity = 1;
    };

    /// The panel, and everything on it that lies behind the text.
    void Draw(DrawContext const& p_context, ColorPickerLayout const& p_layout, Content const& p_content);
    /// What lies before the text.
    void DrawMarks(DrawContext const& p_context, ColorPickerLayout const& p_layout, Content const& p_content) const;

private:
    void MakeImages(DrawContext const& p_context);

    float _ratio = 0; ///< for which the images are
    std::optional<Library::Texture> _checks;
    std::optional<Library::Texture> _ring;
};

} // namespace Qor::Chart::Render
