#pragma once

#include "framework/types/Viewport.h"
#include "render/Export.h"
#include "render/nodes/PaneLayout.h"

#include <QColor>

#include <optional>
#include <string>

namespace Qor::Chart::Ogl {
class Text;
}

namespace Qor::Chart::Render {

class DrawContext;

/// Draws what is a pane's own: the background behind its scene, and over it the frame, the title bar, the grips and the
/// rubber band. It is made for the hook that draws, and works in the pane on top of the context's viewports, in pixels from
/// that pane's lower left corner. All graphics state is brought back.
class QOR_VIS_API PaneDecoration {
public:
    using Rectangle = Types::Viewport<0>;

    /// The context must outlive it.
    explicit PaneDecoration(DrawContext const& p_context);

    /// Fills the pane behind everything, fading from the lower to the upper colour where there is one. The depths of the
    /// scene stay. A lower colour of alpha 0 draws nothing. For the base layer, whatever its matrices are.
    void DrawBackground(QColor const& p_lower, std::optional<QColor> const& p_upper) const;

    // The rest is for the overlay layer, whose matrices take the pane's pixels.

    /// A line along the inside of the pane's edges.
    void DrawBorder(QColor const& p_color) const;
    void DrawTitleBar(Rectangle const& p_bar, QColor const& p_color) const;
    /// In black, placed by the font's own alignment in the title bar or, where it would run below them, beside the buttons.
    /// @param p_buttonsBegin  where the buttons on the right begin; the end of the bar when there are none
    void DrawTitle(Rectangle const& p_bar, std::wstring const& p_title, Ogl::Text& p_font, float p_buttonsBegin) const;
    /// All four grips, the one under the pointer highlighted.
    void DrawGrips(std::optional<PaneLayout::Grip> p_hovered) const;
    /// @param p_band      in pixels of the window; drawn in any direction, upwards when its height is positive
    /// @param p_isInset   keeps clear of the border
    void DrawRubberBand(Rectangle const& p_band, bool p_isInset) const;

private:
    DrawContext const& _context;
    Rectangle _pane;
};

} // namespace Qor::Chart::Render
