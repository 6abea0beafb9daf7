#pragma once

#include "framework/types/Pos.h"
#include "framework/types/Size.h"
#include "framework/types/Viewport.h"
#include "framework/types/XPosition.h"
#include "framework/types/YPosition.h"
#include "render/Export.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace Qor::Chart::Render {

/// Where the parts of a toolbar lie, in whole pixels from the lower left corner of its pane. A bar stays inside the pane
/// whatever its position says; one that is larger than the pane shows its beginning, which has the handle.
struct QOR_VIS_API ToolbarLayout {
    using Rectangle = Types::Viewport<0>;

    /// What decides about the places. Lengths are in pixels of the device.
    struct Request {
        Types::Size pane;
        Types::XPosition x;
        Types::YPosition y;
        bool isVertical = false;
        bool isMovable = false;
        float side = 16; ///< how high a button is, and how wide at least
        float pixelRatio = 1; ///< what margins and gaps are multiplied with
        std::vector<float> widths; ///< what the buttons need, in their order
    };

    ToolbarLayout() = default;
    /// Without buttons all is empty.
    explicit ToolbarLayout(Request const& p_request);

    /// The button at a place; the gaps between them belong to the bar alone.
    std::optional<std::size_t> ButtonAt(Types::Pos const& p_pos) const;

    /// The position that places a thing of that width at that x coordinate, meant in the same way as the present one.
    static Types::XPosition Following(Types::XPosition const& p_present, float p_x, float p_width, int p_paneWidth);
    static Types::YPosition Following(Types::YPosition const& p_present, float p_y, float p_height, int p_paneHeight);
    /// Moves a rectangle as little as needed to lie inside a pane. Of what is larger, the left and the upper side do.
    static Rectangle MovedInto(Types::Size const& p_pane, Rectangle p_rectangle);
    /// Where a text of some size goes that tells of a button: beside the bar, on the side where there is space.
    Rectangle TipPlace(Types::Size const& p_pane, std::size_t p_button, Types::Size const& p_tip) const;

    /// A length of the design in pixels of the device, at least 1.
    static float Scaled(float p_length, float p_pixelRatio);

    Rectangle bar; ///< the whole
    Rectangle handle; ///< a mark to drag the bar with; empty when it is not movable
    std::vector<Rectangle> buttons;
    bool isVertical = false;
    float gap = 2; ///< between the parts, and around them
};

} // namespace Qor::Chart::Render
