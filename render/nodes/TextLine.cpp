#include "render/nodes/TextLine.h"

#include "render/nodes/TextBoundaries.h"
#include "framework/assets/TextLayout.h"
#include "framework/ogl/Text.h"

#include <algorithm>

namespace Qor::Chart::Render {

namespace {

/// No space is filled by fewer code points for each font size than this, unless they are hardly to be seen.
constexpr int CharactersPerSize = 8;
constexpr std::size_t ShortestStretch = 256;
constexpr std::size_t LongestStretch = std::size_t{1} << 15;
// What tells the direction of a stretch whose beginning is not that of its text.
constexpr char32_t LeftToRightMark = 0x200E;
constexpr char32_t RightToLeftMark = 0x200F;

int PixelSize(Ogl::Text const& p_font) {
    return std::max(1, static_cast<int>(p_font.Size() * p_font.PixelRatio()));
}

/// A part of what is shown.
std::u32string Slice(TextLine::Content const& p_content, std::size_t p_begin, std::size_t p_end) {
    if (!p_content.IsComposing())
        return p_content.text.substr(p_begin, p_end - p_begin);
    std::u32string slice;
    std::size_t const behind = p_content.begin + p_content.composition.size();
    for (std::size_t i = p_begin; i < p_end; ++i) {
        if (i < p_content.begin)
            slice.push_back(p_content.text[i]);
        else if (i < behind)
            slice.push_back(p_content.composition[i - p_content.begin]);
        else
            slice.push_back(p_content.text[i - behind + p_content.end]);
    }
    return slice;
}

} // namespace

TextLine::TextLine() = default;
TextLine::~TextLine() = default;
TextLine::TextLine(TextLine&&) noexcept = default;
TextLine& TextLine::operator=(TextLine&&) noexcept = default;

bool TextLine::IsSame(Ogl::Text const& p_font, Content const& p_content) const {
    bool const isSameText = _layout && _revision == p_content.revision && _composition == p_content.composition;
    bool const isSamePlace =
        !p_content.IsComposing() || (_hiddenBegin == p_content.begin && _hiddenEnd == p_content.end);
    return isSameText && isSamePlace && _size == p_font.Size() && _ratio == p_font.PixelRatio();
}

void TextLine::Remember(Ogl::Text const& p_font, Content const& p_content) {
    _revision = p_content.revision;
    _composition = p_content.composition;
    _hiddenBegin = p_content.begin;
    _hiddenEnd = p_content.end;
    _size = p_font.Size();
    _ratio = p_font.PixelRatio();
}

void TextLine::LayOut(Ogl::Text& p_font, Content const& p_content, std::optional<std::size_t> p_shown, int p_width,
    int p_caret, bool p_centered) {
    std::size_t const shown = p_shown.value_or(0);
    std::size_t const length = p_content.Length();
    std::size_t const wanted = static_cast<std::size_t>(std::max(0, p_width)) * CharactersPerSize /
        static_cast<std::size_t>(PixelSize(p_font));
    std::size_t const stretch =
        length <= WholeLength ? WholeLength : std::clamp(wanted, ShortestStretch, LongestStretch);
    std::size_t begin = std::min(_begin, length);
    std::size_t end = length - begin > stretch ? begin + stretch : length;
    std::size_t const margin = stretch / 4;
    bool const isAside = (begin > 0 && shown < begin + margin) || (end < length && shown + margin > end);
    bool const isMoved = length <= stretch ? begin > 0 : isAside;
    if (isMoved) {
        begin = shown > stretch / 2 ? shown - stretch / 2 : 0;
        begin = std::min(begin, length > stretch ? length - stretch : 0);
        if (!p_content.IsComposing())
            begin = TextBoundaries::Snap(p_content.text, begin);
        end = length - begin > stretch ? begin + stretch : length;
    }
    bool const isCurrent = IsSame(p_font, p_content) && begin == _begin && end == _end;
    if (!isCurrent) {
        _begin = begin;
        _end = end;
        _length = length;
        Shape(p_font, p_content);
        Remember(p_font, p_content);
    }
    if (isMoved) // the place stays where it was seen
        _scroll = Unscrolled(shown) - _shownX;
    Scroll(p_shown, p_width, p_caret, p_centered);
}

void TextLine::Shape(Ogl::Text& p_font, Content const& p_content) {
    Assets::TextLayout::Options options;
    options.breaksLines = false;
    options.hasClusters = true;
    std::u32string slice = Slice(p_content, _begin, _end);
    _isRightToLeft = TextBoundaries::IsRightToLeft(
        _begin == 0 || p_content.text.empty() ? std::u32string_view(slice) : std::u32string_view(p_content.text));
    std::size_t const skipped = _begin > 0 ? 1 : 0;
    std::u32string const marked =
        skipped > 0 ? std::u32string(1, _isRightToLeft ? RightToLeftMark : LeftToRightMark) + slice : std::u32string();
    _layout = std::make_unique<Assets::TextLayout>(p_font.LayOut(skipped > 0 ? marked : slice, options));
    _height = _layout->Metrics().LineHeight();
    _width = _layout->Width();
    MakeCells(slice, skipped);
}

/// A cluster of several characters is divided evenly among them, and what is drawn apart but is one character is
/// joined.
void TextLine::MakeCells(std::u32string const& p_slice, std::size_t p_skipped) {
    _cells.clear();
    if (_layout->Lines().empty())
        return;
    std::vector<Assets::TextLayout::Cluster> clusters = _layout->Lines().front().clusters;
    std::ranges::sort(clusters, {}, &Assets::TextLayout::Cluster::begin);
    std::vector<bool> const begins = TextBoundaries::All(p_slice);
    auto const next = [&](std::size_t p_place, std::size_t p_end) {
        do
            ++p_place;
        while (p_place < p_end && !begins[p_place]);
        return p_place;
    };
    for (Assets::TextLayout::Cluster const& cluster : clusters) {
        if (cluster.end <= p_skipped)
            continue;
        std::size_t const begin = std::max(cluster.begin, p_skipped) - p_skipped;
        std::size_t const end = cluster.end - p_skipped;
        int const right = cluster.x + cluster.width;
        if (!_cells.empty() && !begins[begin]) {
            Cell& last = _cells.back();
            last.end = _begin + end;
            last.left = std::min(last.left, cluster.x);
            last.right = std::max(last.right, right);
            continue;
        }
        int count = 0;
        for (std::size_t i = begin; i < end; i = next(i, end))
            ++count;
        std::size_t place = begin;
        for (int i = 0; i < count; ++i) {
            std::size_t const behind = next(place, end);
            int const from = cluster.width * i / count;
            int const to = cluster.width * (i + 1) / count;
            bool const isLeftward = cluster.isRightToLeft;
            _cells.push_back({_begin + place, _begin + behind, isLeftward ? right - to : cluster.x + from,
                isLeftward ? right - from : cluster.x + to, isLeftward});
            place = behind;
        }
    }
}

int TextLine::Unscrolled(std::size_t p_place) const {
    if (_cells.empty())
        return 0;
    auto const behind = std::ranges::upper_bound(_cells, p_place, {}, &Cell::begin);
    if (behind == _cells.begin())
        return _cells.front().Leading();
    Cell const& cell = *std::prev(behind);
    return p_place < cell.end ? cell.Leading() : cell.Trailing();
}

void TextLine::Scroll(std::optional<std::size_t> p_shown, int p_width, int p_caret, bool p_centered) {
    int const x = Unscrolled(p_shown.value_or(0));
    int const needed = _width + p_caret;
    bool const isWhole = _begin == 0 && _end == _length;
    if (isWhole && needed <= p_width) {
        _scroll = p_centered ? (_width - p_width) / 2 : _isRightToLeft ? needed - p_width : 0;
    } else if (!p_shown) {
        _scroll = _isRightToLeft ? needed - p_width : 0;
    } else {
        bool const endsRight = _isRightToLeft ? _begin == 0 : _end == _length;
        bool const endsLeft = _isRightToLeft ? _end == _length : _begin == 0;
        _scroll = std::clamp(_scroll, std::min(x, x + p_caret - p_width), x);
        if (endsRight)
            _scroll = std::min(_scroll, needed - p_width);
        if (endsLeft)
            _scroll = std::max(_scroll, 0);
    }
    _shownX = x - _scroll;
}

int TextLine::XOf(std::size_t p_place) const {
    return Unscrolled(p_place) - _scroll;
}

TextLine::Cell const* TextLine::CellAt(int p_x) const {
    auto const distance = [x = p_x + _scroll](Cell const& p_cell) {
        return std::max({p_cell.left - x, x - p_cell.right + 1, 0});
    };
    auto const nearest = std::ranges::min_element(_cells, {}, distance);
    return nearest == _cells.end() ? nullptr : &*nearest;
}

std::size_t TextLine::PlaceAt(int p_x) const {
    Cell const* const cell = CellAt(p_x);
    if (!cell)
        return _begin;
    bool const isLeftHalf = 2 * (p_x + _scroll) < cell->left + cell->right;
    return isLeftHalf != cell->isRightToLeft ? cell->begin : cell->end;
}

std::size_t TextLine::CharacterAt(int p_x) const {
    Cell const* const cell = CellAt(p_x);
    return cell ? cell->begin : _begin;
}

void TextLine::Draw(Ogl::Agl& p_agl, Ogl::Text& p_font, Types::Viewport<0> const& p_space) const {
    if (!_layout || _layout->Lines().empty())
        return;
    p_font.SetHorizontalAlignment(Ogl::HorizontalAlignment::Left);
    p_font.SetVerticalAlignment(Ogl::VerticalAlignment::Center);
    Types::Viewport<0> const place(
        p_space.x - static_cast<float>(_scroll), p_space.y, static_cast<float>(std::max(_width, 1)), p_space.height);
    p_font.Draw(p_agl, *_layout, place, p_space);
}

} // namespace Qor::Chart::Render
