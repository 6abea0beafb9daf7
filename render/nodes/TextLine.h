#pragma once

#include "framework/types/Viewport.h"
#include "render/Export.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Qor::Chart::Assets {
class TextLayout;
}

namespace Qor::Chart::Ogl {
class Agl;
class Text;
} // namespace Qor::Chart::Ogl

namespace Qor::Chart::Render {

/// One line of text that may be longer than there is space, scrolled so that a place in it shows. Of a very long text a
/// stretch around that place is laid out, wide enough for the space; it is then as if the text was cut there. Places
/// are counted in code points, x in pixels from the left end of the space.
class QOR_VIS_API TextLine {
public:
    /// Texts up to this length are laid out whole.
    static constexpr std::size_t WholeLength = 1024;

    TextLine();
    ~TextLine();
    TextLine(TextLine&&) noexcept;
    TextLine& operator=(TextLine&&) noexcept;

    /// What is to be seen.
    struct Content {
        std::u32string const& text;
        std::uint64_t revision; ///< of the text: the same number means the same text
        std::size_t begin; ///< from here
        std::size_t end; ///< to here this is shown instead:
        std::u32string const& composition; ///< empty for the text as it is

        bool IsComposing() const noexcept { return !composition.empty(); }
        std::size_t Length() const noexcept {
            return IsComposing() ? text.size() - (end - begin) + composition.size() : text.size();
        }
    };
    /// Brings the layout up to date, and scrolls. When nothing has changed it costs nothing.
    /// @param p_shown    a place of what is shown that is to be seen; nothing shows the beginning
    /// @param p_width    of the space
    /// @param p_caret    how much space there must be behind the text
    /// @param p_centered  whether a short text stands in the middle
    void LayOut(Ogl::Text& p_font, Content const& p_content, std::optional<std::size_t> p_shown, int p_width,
        int p_caret, bool p_centered);

    /// Where the character at a place begins, and where the text ends.
    int XOf(std::size_t p_place) const;
    /// The place whose x is nearest.
    std::size_t PlaceAt(int p_x) const;
    /// Where the nearest character begins.
    std::size_t CharacterAt(int p_x) const;
    /// Calls with the left and the right end of each stretch that a part of the text covers, in no order.
    template <class Call>
    void ForEachStretch(std::size_t p_begin, std::size_t p_end, Call const& p_call) const;
    /// Of a line of the font.
    int Height() const noexcept { return _height; }
    bool IsRightToLeft() const noexcept { return _isRightToLeft; }

    /// Draws it in a rectangle in the middle of its height.
    void Draw(Ogl::Agl& p_agl, Ogl::Text& p_font, Types::Viewport<0> const& p_space) const;

private:
    /// A character between its ends, without the scrolling.
    struct Cell {
        std::size_t begin;
        std::size_t end;
        int left;
        int right;
        bool isRightToLeft;

        int Leading() const noexcept { return isRightToLeft ? right : left; }
        int Trailing() const noexcept { return isRightToLeft ? left : right; }
    };

    bool IsSame(Ogl::Text const& p_font, Content const& p_content) const;
    void Remember(Ogl::Text const& p_font, Content const& p_content);
    void Shape(Ogl::Text& p_font, Content const& p_content);
    void MakeCells(std::u32string const& p_slice, std::size_t p_skipped);
    Cell const* CellAt(int p_x) const;
    int Unscrolled(std::size_t p_place) const;
    void Scroll(std::optional<std::size_t> p_shown, int p_width, int p_caret, bool p_centered);

    std::unique_ptr<Assets::TextLayout> _layout;
    std::vector<Cell> _cells; ///< in the order of the text
    std::size_t _begin = 0; ///< what of the shown text is laid out
    std::size_t _end = 0;
    std::size_t _length = 0; ///< of what is shown
    int _width = 0; ///< of the layout
    int _height = 0;
    int _scroll = 0; ///< the x of the layout that is at the left end of the space
    int _shownX = 0; ///< of the place that was to be seen
    bool _isRightToLeft = false;

    std::uint64_t _revision = 0; ///< what it is laid out for
    std::size_t _hiddenBegin = 0;
    std::size_t _hiddenEnd = 0;
    std::u32string _composition;
    float _size = 0;
    float _ratio = 0;
};

template <class Call>
void TextLine::ForEachStretch(std::size_t p_begin, std::size_t p_end, Call const& p_call) const {
    int left = 0;
    int right = 0;
    for (Cell const& cell : _cells) {
        if (cell.end <= p_begin || cell.begin >= p_end)
            continue;
        if (left < right && (cell.left == right || cell.right == left)) {
            left = left < cell.left ? left : cell.left;
            right = right > cell.right ? right : cell.right;
            continue;
        }
        if (left < right)
            p_call(left - _scroll, right - _scroll);
        left = cell.left;
        right = cell.right;
    }
    if (left < right)
        p_call(left - _scroll, right - _scroll);
}

} // namespace Qor::Chart::Render
