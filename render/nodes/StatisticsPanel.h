#pragma once

#include "framework/ogl/PrimitiveBuffer.h"
#include "framework/ogl/TextBlock.h"
#include "framework/types/Schema.h"
#include "framework/types/Size.h"
#include "framework/types/Viewport.h"
#include "framework/types/XPosition.h"
#include "framework/types/YPosition.h"
#include "render/Export.h"
#include "render/nodes/CompactNumber.h"
#include "render/nodes/SchemaFont.h"

#include <QColor>

#include <memory>
#include <string>
#include <vector>

namespace Qor::Chart::Render {

class DrawContext;

/// Rows of a name, a figure and a unit over a ground of their own, which makes them readable over any scene. Figures
/// stand on the right of their column, digit below digit. The panel is laid out, and put into shapes, when something
/// about it is new; otherwise drawing it costs two draws and no memory. Its width does not depend on the figures, so it
/// stands still.
class QOR_VIS_API StatisticsPanel {
public:
    using Rectangle = Types::Viewport<0>;

    struct Row {
        char const* name = ""; ///< text with static storage
        CompactNumber figure;
        bool isFirst = false; ///< begins a group of rows, apart from those before it

        bool operator==(Row const&) const = default;
    };
    using Rows = std::vector<Row>;

    /// Where it lies; it stays inside the pane whatever that says.
    struct Place {
        Types::Size pane;
        Types::XPosition x;
        Types::YPosition y;
        float pixelRatio = 1;

        bool operator==(Place const&) const = default;
    };

    /// Puts the panel into this place, in colours and font of the context's schema, if it is not there already.
    void SetPlace(DrawContext const& p_context, Place const& p_place);
    /// Shows these rows from now on.
    void SetRows(Rows p_rows);

    /// Draws the panel in pixels of its pane. Nothing without rows, and in an empty pane.
    void Draw(DrawContext const& p_context);

    /// The whole, in pixels from the lower left corner of the pane, as of the last draw.
    Rectangle const& Bounds() const noexcept { return _bounds; }

private:
    /// Widths of the columns and heights of the parts, in pixels.
    struct Measures {
        float padding = 0;
        float gap = 0; ///< between columns
        float rowHeight = 0;
        float groupGap = 0;
        float names = 0;
        float digit = 0;
        float figures = 0;
        float units = 0;
    };

    void LayOut(DrawContext const& p_context);
    Measures Measure();
    float WidthOf(char const* p_text);
    void AddRow(Row const& p_row, Measures const& p_measures, float p_left, float p_bottom);
    void AddFigure(CompactNumber const& p_figure, Measures const& p_measures, Rectangle p_cell);
    void AddText(std::string_view p_text, Rectangle const& p_cell, QColor const& p_color, bool p_isRight);
    void MakeGround(std::vector<float> const& p_lines, float p_pixel);

    Place _place;
    Types::Schema _schema;
    Rows _rows;
    bool _isLaidOut = false;
    SchemaFont _font;
    Rectangle _bounds;
    std::shared_ptr<Ogl::PrimitiveBuffer const> _ground;
    Ogl::TextBlock _block;
};

} // namespace Qor::Chart::Render
