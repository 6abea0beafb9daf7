#pragma once

#include "framework/types/Pos.h"
#include "framework/types/Size.h"
#include "framework/types/Viewport.h"
#include "framework/types/XPosition.h"
#include "framework/types/YPosition.h"
#include "render/Export.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace Qor::Chart::Render {

/// Where the parts of a legend lie, in whole pixels from the lower left corner of its pane. The rows stand in columns,
/// filled line by line; lines that do not fit are scrolled to, whole ones at a time. Nothing lies outside of the pane:
/// where there is too little space the title is left out, then the buttons, then all.
///
/// It costs what is visible, however many rows there are.
struct QOR_VIS_API LegendLayout {
    using Rectangle = Types::Viewport<0>;

    /// What decides about the places. Lengths are in pixels of the device.
    struct Request {
        Types::Size pane;
        /// At the upper and at the right side of the pane, for its title bar and other legends; for automatic placement
        /// alone.
        float reservedAbove = 0;
        float reservedRight = 0;
        bool isAutomatic = true;
        Types::XPosition x;
        Types::YPosition y;
        int columns = 0; ///< 0 for as many as needed, as far as half the pane is wide enough
        float pixelRatio = 1; ///< what margins and gaps are multiplied with
        float lineHeight = 12; ///< of a text
        float titleWidth = 0; ///< 0 without a title
        float rowWidth = 0; ///< that of the widest row
        std::span<std::uint8_t const> tall; ///< for each row, whether it has a bar
        std::size_t first = 0; ///< the row to be seen on top
    };
    struct Cell {
        std::size_t row;
        Rectangle place;
    };
    /// What a row is made of; a part for which there is no space is empty.
    struct Parts {
        Rectangle swatch;
        Rectangle text;
        Rectangle bar;
        Rectangle labels; ///< of the bar, below it
    };

    LegendLayout() = default;
    /// Empty when there is nothing to show or no space for it.
    explicit LegendLayout(Request const& p_request);

    bool IsEmpty() const { return ground.IsEmpty(); }
    bool IsScrolled() const { return !up.IsEmpty(); }
    /// The cell at a place, null for none.
    Cell const* CellAt(Types::Pos const& p_pos) const;

    /// How the place of a row is divided.
    Parts PartsOf(Rectangle const& p_place, bool p_isTall, bool p_hasSwatch) const;
    /// The width of a row that has a swatch and a text of that width; without a swatch the text's own.
    static float WidthOf(float p_textWidth, bool p_hasSwatch, float p_lineHeight, float p_pixelRatio);
    /// The least width of a row with a bar.
    static float BarWidth(float p_lineHeight);

    Rectangle ground; ///< the whole
    Rectangle title;
    Rectangle rule; ///< the line below the title
    std::vector<Cell> cells; ///< those that are to be seen
    Rectangle up; ///< the button that scrolls back; empty when all is to be seen
    Rectangle upCount; ///< where the number of rows above stands
    Rectangle down;
    Rectangle downCount;

    std::size_t columns = 1;
    std::size_t first = 0; ///< the first row to be seen
    std::size_t hiddenAfter = 0; ///< how many rows come after those to be seen
    std::size_t previousPage = 0; ///< the first row of the page before
    std::size_t nextPage = 0;

private:
    struct Space;

    std::size_t Lines() const { return (_rows + columns - 1) / columns; }
    float HeightOf(std::size_t p_line) const;
    /// Whether the lines from one on take no more than a height.
    bool FitFrom(std::size_t p_line, float p_height) const;
    /// The first of the lines before one that fit into a height together; one at least.
    std::size_t FirstBefore(std::size_t p_line, float p_height) const;
    void ChooseColumns(Request const& p_request, Space& p_space);
    void ChooseHeights(Request const& p_request, Space& p_space);
    void Place(Request const& p_request, Space const& p_space);
    void PlaceCells(Space const& p_space);
    void PlaceButtons(Space const& p_space);

    std::span<std::uint8_t const> _tall; ///< of the request; empty once all is placed
    std::size_t _rows = 0;
    float _ratio = 1;
    float _lineHeight = 12;
};

} // namespace Qor::Chart::Render
