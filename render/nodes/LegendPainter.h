#pragma once

#include "framework/library/Texture.h"
#include "framework/ogl/TextBlock.h"
#include "framework/types/NumberFormat.h"
#include "framework/types/Schema.h"
#include "framework/types/Viewport.h"
#include "render/nodes/LegendLayout.h"
#include "render/nodes/LegendRow.h"
#include "render/nodes/SchemaFont.h"

#include <QColor>

#include <memory>
#include <string>
#include <vector>

namespace Qor::Chart::Ogl {
class Agl;
}

namespace Qor::Chart::Utility {
template <class T>
class Scoped;
}

namespace Qor::Chart::Render {

class DrawContext;

/// Measures and draws a legend in an overlay pass, in pixels from the lower left corner of its pane and in the colours
/// and sizes of the context's schema. What takes time, texts and bars, is made by `Prepare` and kept. All graphics
/// state is brought back.
class LegendPainter {
public:
    using Rectangle = Types::Viewport<0>;

    /// One row that is to be seen.
    struct Item {
        LegendRow const* row;
        Rectangle place;
        bool isDimmed = false;
    };
    struct Page {
        LegendLayout layout;
        std::wstring title;
        std::vector<Item> items;
    };
    struct Ground {
        QColor fill;
        QColor border;
    };

    /// Takes font, sizes and number format of the context; true when any differs from before.
    bool TakeStyle(DrawContext const& p_context);
    float PixelRatio() const noexcept { return _ratio; }
    float LineHeight() const noexcept { return _lineHeight; }
    /// How wide a row would like to be.
    float WidthOf(LegendRow const& p_row);
    float WidthOf(std::wstring const& p_title);

    /// Lays out the texts and makes the bars of a page. Needs a style.
    void Prepare(DrawContext const& p_context, Page const& p_page);
    /// Draws what was prepared; the rows must still be there.
    /// @param p_lit  an area that is lit, such as the row under the pointer; may be empty
    void Draw(DrawContext const& p_context, Page const& p_page, Ground const& p_ground, Rectangle const& p_lit);

private:
    /// The bar of a colour map with its ticks.
    struct Bar {
        Rectangle place;
        std::shared_ptr<Library::Texture const> texture; ///< null for a map without colours
        bool isDimmed = false;
        std::vector<Rectangle> ticks;
    };

    void AddText(std::wstring const& p_text, Rectangle const& p_place, QColor const& p_color);
    void AddBar(DrawContext const& p_context, Item const& p_item, LegendLayout::Parts const& p_parts);
    void AddTicks(LegendScale const& p_scale, LegendLayout::Parts const& p_parts, QColor const& p_color, Bar& p_bar);
    void AddCounts(LegendLayout const& p_layout);

    void DrawSwatch(DrawContext const& p_context, Item const& p_item, Rectangle const& p_place) const;
    void DrawPoint(DrawContext const& p_context, Rectangle const& p_place, QColor const& p_color) const;
    void DrawSymbols(DrawContext const& p_context, Page const& p_page) const;
    void DrawBars(DrawContext const& p_context) const;
    void DrawButtons(DrawContext const& p_context, LegendLayout const& p_layout) const;

    SchemaFont _font;
    Types::Schema _schema;
    Types::NiceIntervals::NumberFormat _format;
    float _ratio = 1;
    float _lineHeight = 0;
    Ogl::TextBlock _block;
    std::vector<Bar> _bars;
};

} // namespace Qor::Chart::Render
