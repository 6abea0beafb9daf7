#pragma once

#include "framework/types/Pos.h"
#include "framework/types/Viewport.h"
#include "render/Export.h"

#include <array>

namespace Qor::Chart::Render {

/// Where a pane and the parts of its decoration lie: arithmetic alone. Everything is in pixels with the origin in the lower
/// left corner; a place "in the pane" is relative to the pane's own corner.
struct QOR_VIS_API PaneLayout {
    using Rectangle = Types::Viewport<0>;

    /// In the order of their names in hit records.
    enum class Grip {
        TopLeft,
        TopRight,
        BottomLeft,
        BottomRight,
    };
    static constexpr std::array Grips{Grip::TopLeft, Grip::TopRight, Grip::BottomLeft, Grip::BottomRight};

    /// A pane that the user moves or resizes never becomes smaller.
    static constexpr float LeastWidth = 50;
    static constexpr float LeastHeight = 20;

    /// Where a relative rectangle lies inside its parent, each of its four numbers rounded to a whole one, halves upwards.
    static Rectangle Place(Types::Viewport<1> const& p_relative, Rectangle const& p_parent);
    /// The rectangle, widened to the least size where it is smaller.
    static Rectangle Widened(Rectangle p_rectangle);
    /// The rectangle, shifted into its parent and made no larger than it; an empty side becomes 1.
    static Rectangle FittedInto(Rectangle const& p_parent, Rectangle p_child);

    /// The title bar in the pane; one row above it and one column beside it are the border's.
    static Rectangle TitleBar(Rectangle const& p_pane, unsigned p_titleHeight);
    /// The buttons on a title bar, on the same origin as that. They are square and leave two pixels above and below.
    static Rectangle PopOutButton(Rectangle const& p_titleBar, unsigned p_titleHeight);
    static Rectangle DetachButton(Rectangle const& p_titleBar, unsigned p_titleHeight);

    /// The two rectangles in which the pointer finds a grip, on the same origin as the pane's rectangle.
    static std::array<Rectangle, 2> GripAreas(Grip p_grip, Rectangle const& p_pane);
    /// True when the place lies in either of these.
    static bool IsOnGrip(Grip p_grip, Rectangle const& p_pane, Types::Pos const& p_pos);

    /// The corner pixel of the pane from which a grip is drawn, in the pane, and the ends of the two lines.
    struct GripLines {
        Types::Pos corner;
        Types::Pos alongWidth;
        Types::Pos alongHeight;
    };
    static GripLines LinesOf(Grip p_grip, Rectangle const& p_pane);

    /// The rectangle after one of its grips was dragged to a place on the same origin: the two sides that meet there
    /// follow, the others stay, and neither side becomes shorter than the least size.
    static Rectangle Resized(Rectangle p_pane, Grip p_grip, Types::Pos const& p_pos);
};

} // namespace Qor::Chart::Render
