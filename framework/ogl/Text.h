#pragma once

#include "framework/Export.h"
#include "framework/assets/FontFile.h"
#include "framework/assets/FontStack.h"
#include "framework/assets/TextLayout.h"
#include "framework/ogl/GlyphAtlas.h"
#include "framework/ogl/TextAlignment.h"
#include "framework/types/Color4f.h"
#include "framework/types/Size.h"
#include "framework/types/Viewport.h"

#include <QColor>

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Qor::Chart::Ogl {

class Agl;

/// Draws texts in one set of fonts, in any script, made by `Agl::GenFont`. What doesn't fit its rectangle is broken into
/// lines as far as there is height for them, then cut with an ellipsis, and nothing is ever drawn outside. Glyphs lie on
/// whole pixels. Keep one for each style: what it has drawn lately is remembered and costs little to draw again.
///
///     auto const text = agl->GenFont(resource.FontSet(""), 10);
///     text->SetHorizontalAlignment(Ogl::HorizontalAlignment::Center);
///     text->Draw(*agl, L"Title", rectangle);
class QOR_FRAMEWORK_API Text {
public:
    /// p_atlas must be set. Without fonts every character is a box.
    Text(std::vector<Assets::FontFile> const& p_fontSet, float p_size, std::shared_ptr<GlyphAtlas> p_atlas);

    /// The size of the font in logical pixels (a line is about 1.2 times as high). Sizes that are not finite or not greater
    /// than 0 are reported and change nothing; on the device the size is between 1 and 512 whole pixels.
    void SetSize(float p_size);
    float Size() const { return _size; }
    /// How many pixels of the device a logical pixel is wide; 1 at first. Anything but a positive number is reported and
    /// changes nothing.
    void SetPixelRatio(float p_ratio);
    float PixelRatio() const { return _pixelRatio; }
    void SetHorizontalAlignment(HorizontalAlignment p_alignment) { _horizontal = p_alignment; }
    HorizontalAlignment GetHorizontalAlignment() const { return _horizontal; }
    void SetVerticalAlignment(VerticalAlignment p_alignment) { _vertical = p_alignment; }
    VerticalAlignment GetVerticalAlignment() const { return _vertical; }
    /// Opaque black at first.
    void SetColor(Types::Color4f const& p_color) { _color = p_color; }
    void SetColor(QColor const& p_color) { _color = Types::Color4f(p_color); }
    Types::Color4f const& Color() const { return _color; }
    /// Whether lines end at words where the rectangle does; otherwise only at line feeds. True at first.
    void SetBreaksLines(bool p_breaksLines);
    bool BreaksLines() const { return _breaksLines; }

    /// How much space the text needs in pixels of the device: without a width, in lines as its line feeds make them; with
    /// one, broken into lines of at most that width.
    Types::Size Extents(std::string_view p_text, int p_width = Assets::TextLayout::Unlimited);
    Types::Size Extents(std::wstring_view p_text, int p_width = Assets::TextLayout::Unlimited);

    /// Draws a text inside a rectangle, both in pixels of the device as after `Agl::Ortho2D`, at a depth between -1 (far) and
    /// 1 (near). Depth test, stencil test, scissor box and clip planes are the caller's; all other state
    /// is set and brought back. Not allowed between `Begin` and `End`. A rectangle that is empty or not finite draws nothing.
    void Draw(Agl& p_agl, std::string_view p_text, Types::Viewport<0> const& p_rectangle, double p_depth = 0);
    void Draw(Agl& p_agl, std::wstring_view p_text, Types::Viewport<0> const& p_rectangle, double p_depth = 0);

    /// Lays a text out in this font, for somebody who keeps the layout; the pixel size of the options is not read.
    Assets::TextLayout LayOut(std::u32string const& p_text, Assets::TextLayout::Options p_options);
    /// Draws such a layout, aligned in a rectangle, as far as it lies in p_clip.
    void Draw(Agl& p_agl, Assets::TextLayout const& p_layout, Types::Viewport<0> const& p_rectangle,
        Types::Viewport<0> const& p_clip, double p_depth = 0);

private:
    friend class TextBlock;

    /// A rectangle between whole pixels.
    struct Bounds {
        int left = 0;
        int bottom = 0;
        int right = 0;
        int top = 0;
    };
    /// A visible piece of a glyph: where it goes and where it comes from on its page of the atlas.
    struct Quad {
        std::size_t page = 0;
        Bounds target;
        int x = 0;
        int y = 0;
    };

    int PixelSize() const;
    Assets::TextLayout const& Layout(std::u32string const& p_text, int p_width, int p_height);
    Types::Size Measure(std::u32string const& p_text, int p_width);
    /// Lays a text out in a rectangle: its pieces are in the list afterwards, ordered by pages.
    void Place(std::u32string const& p_text, Types::Viewport<0> const& p_rectangle);
    void DrawDecoded(Agl& p_agl, std::u32string const& p_text, Types::Viewport<0> const& p_rectangle, double p_depth);
    /// What glyphs are drawn in, apart from their page and colour; the texture matrix is pushed.
    static void SetState(Agl& p_agl);
    static Bounds BoundsOf(Types::Viewport<0> const& p_rectangle);
    void Collect(Assets::TextLayout const& p_layout, Bounds const& p_bounds, Bounds const& p_clip);
    void CollectLine(
        Assets::TextLayout::Line const& p_line, int p_pixelSize, int p_x, int p_baseline, Bounds const& p_clip);
    int LineStart(Assets::TextLayout::Line const& p_line, Bounds const& p_bounds) const;
    int BlockTop(Assets::TextLayout const& p_layout, Bounds const& p_bounds) const;
    void DrawQuads(Agl& p_agl, double p_depth);

    Assets::FontStack _fonts;
    std::shared_ptr<GlyphAtlas> _atlas;
    float _size = 10;
    float _pixelRatio = 1;
    HorizontalAlignment _horizontal = HorizontalAlignment::Start;
    VerticalAlignment _vertical = VerticalAlignment::Top;
    Types::Color4f _color;
    bool _breaksLines = true;
    std::unordered_map<std::u32string, Assets::TextLayout> _layouts;
    std::size_t _rememberedLength = 0;
    std::vector<Quad> _quads;
};

} // namespace Qor::Chart::Ogl
