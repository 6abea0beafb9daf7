#pragma once

#include "framework/types/Pos.h"
#include "framework/types/Size.h"
#include "framework/types/Viewport.h"
#include "render/Export.h"

#include <array>
#include <cstddef>
#include <optional>

namespace Qor::Chart::Render {

/// Where the parts of a colour picker lie, in whole pixels, and which values lie where in them: arithmetic alone. All
/// parts are inside the panel; in one that is too small for them some are cut or empty.
struct QOR_VIS_API ColorPickerLayout {
    using Rectangle = Types::Viewport<0>;

    /// In the order in which the Tab key goes through them.
    enum class Part {
        Area, ///< saturation to the right, value upwards
        Hue,
        Alpha,
        Text, ///< the hexadecimal field
        Former, ///< the colour that was there before
        Recent,
    };
    static constexpr std::size_t RecentCount = 10;

    /// All empty.
    ColorPickerLayout() = default;
    /// @param p_pixelRatio  what margins, gaps and the heights of the small parts are multiplied with
    ColorPickerLayout(Rectangle const& p_panel, float p_pixelRatio, bool p_hasAlpha);

    /// The size of a panel in which all parts have room.
    static Types::Size PreferredSize(float p_pixelRatio, bool p_hasAlpha);

    /// The part at a place; nothing between them.
    std::optional<Part> PartAt(Types::Pos const& p_pos) const;
    /// The rectangle of a part; all places for recent colours together.
    Rectangle const& PlaceOf(Part p_part) const;
    /// The number of the recent colour at a place, whether or not there is one.
    std::optional<std::size_t> RecentAt(Types::Pos const& p_pos) const;

    /// How far right, and how far up, a place is in a part, from 0 at the first pixel to 1 at the last, also for places
    /// outside.
    static double RightOf(Rectangle const& p_part, Types::Pos const& p_pos);
    static double UpOf(Rectangle const& p_part, Types::Pos const& p_pos);
    /// Where a mark goes that stands at such a value: the middle of a pixel.
    static float XOf(Rectangle const& p_part, double p_right);
    static float YOf(Rectangle const& p_part, double p_up);

    Rectangle panel;
    Rectangle area;
    Rectangle hue;
    Rectangle alpha; ///< empty when it is not shown
    Rectangle former;
    Rectangle present;
    Rectangle text;
    Rectangle recents;
    std::array<Rectangle, RecentCount> recent;
};

} // namespace Qor::Chart::Render
