#pragma once

#include "framework/types/Size.h"
#include "framework/types/Viewport.h"
#include "render/Export.h"
#include "render/nodes/SchemaFont.h"
#include "render/nodes/ToolbarButton.h"
#include "render/nodes/ToolbarLayout.h"

#include <string>

namespace Qor::Chart::Render {

class DrawContext;

/// Draws a toolbar in an overlay pass, in pixels from the lower left corner of its pane and in the colours and sizes of the
/// context's schema, and says how much space it needs. All graphics state is brought back.
class QOR_VIS_API ToolbarPainter {
public:
    using Rectangle = Types::Viewport<0>;

    /// How the pointer treats a button.
    enum class Look {
        Idle,
        Hovered,
        Pressed,
    };

    /// Context and font must outlive it.
    ToolbarPainter(DrawContext const& p_context, SchemaFont& p_font);

    /// Pixels of the device for each logical one, a positive number.
    float PixelRatio() const noexcept { return _ratio; }
    /// The side of a button with an image.
    float Side() const;
    /// How wide a button must be.
    float WidthOf(ToolbarButton const& p_button) const;
    /// How large a tip is that fits into a pane, its frame included.
    Types::Size TipSize(std::wstring const& p_tip, Types::Size const& p_pane) const;

    /// The ground, the frame and the handle of the bar.
    void DrawBar(ToolbarLayout const& p_layout) const;
    void DrawButton(ToolbarButton const& p_button, Rectangle const& p_place, Look p_look) const;
    void DrawTip(std::wstring const& p_tip, Rectangle const& p_place) const;

private:
    void DrawText(std::wstring const& p_text, Rectangle const& p_place, QColor const& p_color) const;

    DrawContext const& _context;
    SchemaFont& _font;
    float _ratio;
};

} // namespace Qor::Chart::Render
