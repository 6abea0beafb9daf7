#include "framework/assets/TextLayout.h"

#include <fribidi.h>
#include <hb.h>

#include <algorithm>
#include <utility>

namespace Qor::Chart::Assets {

namespace {

constexpr char32_t Ellipsis = 0x2026;
constexpr int MaxMarksInARow = 32; // no letter of any language has more, and shaping takes the square of them

bool IsLineFeed(char32_t p_character) {
    return (p_character >= 0x0A && p_character <= 0x0D) || p_character == 0x85 || p_character == 0x2028 ||
        p_character == 0x2029;
}

bool IsControl(char32_t p_character) {
    return p_character < 0x20 || (p_character >= 0x7F && p_character < 0xA0);
}

bool IsSpace(char32_t p_character) {
    return p_character == 0x20 || p_character == 0x1680 || (p_character >= 0x2000 && p_character <= 0x200B) ||
        p_character == 0x3000;
}

/// Whether a line may end between any two such characters: scripts that are written without spaces.
bool IsIdeographic(char32_t p_character) {
    return (p_character >= 0x2E80 && p_character < 0xA4D0) || (p_character >= 0xF900 && p_character < 0xFB00) ||
        (p_character >= 0x20000 && p_character < 0x40000);
}

bool MayBreakBefore(std::u32string const& p_text, std::size_t p_at) {
    char32_t const before = p_text[p_at - 1];
    char32_t const after = p_text[p_at];
    if (IsSpace(after)) {
        return false;
    }
    return IsSpace(before) || before == U'-' || before == 0xAD || before == 0x2010 || before == 0x2013 ||
        (IsIdeographic(before) && IsIdeographic(after));
}

/// Whether the character only changes those around it, so that it needs no glyph of its own.
bool IsFormat(char32_t p_character) {
    return hb_unicode_general_category(hb_unicode_funcs_get_default(), p_character) ==
        HB_UNICODE_GENERAL_CATEGORY_FORMAT;
}

bool IsMark(char32_t p_character) {
    switch (hb_unicode_general_category(hb_unicode_funcs_get_default(), p_character)) {
    case HB_UNICODE_GENERAL_CATEGORY_NON_SPACING_MARK:
    case HB_UNICODE_GENERAL_CATEGORY_ENCLOSING_MARK:
    case HB_UNICODE_GENERAL_CATEGORY_SPACING_MARK:
        return true;
    default:
        return false;
    }
}

/// A part of the text, and where in it each character stands, and the end; empty when nobody wants to know.
struct Source {
    std::u32string text;
    std::vector<std::size_t> places;
};

/// The paragraphs without the characters that cannot be seen and marks beyond all measure; "\r\n" counts as one line feed.
std::vector<Source> SplitParagraphs(std::u32string const& p_text, std::size_t p_length, bool p_withPlaces) {
    std::vector<Source> paragraphs(1);
    auto const append = [&](char32_t p_character, std::size_t p_place) {
        paragraphs.back().text.push_back(p_character);
        if (p_withPlaces) {
            paragraphs.back().places.push_back(p_place);
        }
    };
    auto const end = [&](std::size_t p_place) {
        if (p_withPlaces) {
            paragraphs.back().places.push_back(p_place);
        }
    };
    int marks = 0;
    for (std::size_t i = 0; i < p_length; ++i) {
        char32_t const character = p_text[i];
        marks = IsMark(character) ? marks + 1 : 0;
        if (marks > MaxMarksInARow) {
            continue;
        }
        if (character == U'\t') {
            append(U' ', i);
        } else if (character == U'\n' && i > 0 && p_text[i - 1] == U'\r') {
            continue;
        } else if (IsLineFeed(character)) {
            end(i);
            paragraphs.emplace_back();
        } else if (!IsControl(character)) {
            append(character, i);
        }
    }
    end(p_length);
    return paragraphs;
}

/// A stretch of text in one font, script and direction.
struct Run {
    std::size_t begin = 0;
    std::size_t end = 0;
    FriBidiLevel level = 0;
    hb_script_t script = HB_SCRIPT_COMMON;
    FontFace const* face = nullptr;

    bool IsRightToLeft() const { return (level & 1) != 0; }
};

/// A paragraph, cut into runs in logical order, with the width of every character as far as it begins a cluster.
struct Paragraph {
    std::u32string text;
    std::vector<std::size_t> places; ///< of its characters in the whole text, and of its end; empty when not wanted
    bool isRightToLeft = false;
    std::vector<Run> runs;
    std::vector<int> advances;
    std::vector<bool> beginsCluster;

    int Width(std::size_t p_begin, std::size_t p_end) const {
        int width = 0;
        for (std::size_t i = p_begin; i < p_end; ++i) {
            width += advances[i];
        }
        return width;
    }
};

std::vector<FriBidiLevel> FindLevels(std::u32string const& p_text, bool& p_isRightToLeft) {
    auto const length = static_cast<FriBidiStrIndex>(p_text.size());
    auto const* const characters = reinterpret_cast<FriBidiChar const*>(p_text.data());
    std::vector<FriBidiCharType> types(p_text.size());
    std::vector<FriBidiBracketType> brackets(p_text.size());
    std::vector<FriBidiLevel> levels(p_text.size());
    FriBidiParType direction = FRIBIDI_PAR_ON;
    fribidi_get_bidi_types(characters, length, types.data());
    fribidi_get_bracket_types(characters, length, types.data(), brackets.data());
    if (fribidi_get_par_embedding_levels_ex(types.data(), brackets.data(), length, &direction, levels.data()) == 0) {
        std::fill(levels.begin(), levels.end(), FriBidiLevel(0));
    }
    p_isRightToLeft = FRIBIDI_IS_RTL(direction);
    return levels;
}

/// One script for every character: those that are common to many take that of their neighbours.
std::vector<hb_script_t> FindScripts(std::u32string const& p_text) {
    std::vector<hb_script_t> scripts(p_text.size());
    auto const isReal = [](hb_script_t p_script) {
        return p_script != HB_SCRIPT_COMMON && p_script != HB_SCRIPT_INHERITED && p_script != HB_SCRIPT_UNKNOWN;
    };
    hb_script_t current = HB_SCRIPT_LATIN;
    for (char32_t const character : p_text) {
        hb_script_t const script = hb_unicode_script(hb_unicode_funcs_get_default(), character);
        if (isReal(script)) {
            current = script;
            break;
        }
    }
    for (std::size_t i = 0; i < p_text.size(); ++i) {
        hb_script_t const script = hb_unicode_script(hb_unicode_funcs_get_default(), p_text[i]);
        current = isReal(script) ? script : current;
        scripts[i] = current;
    }
    return scripts;
}

/// Puts runs of one line from logical into visual order: what is nested deepest is turned around first.
void ReorderVisually(std::vector<Run>& p_runs) {
    FriBidiLevel highest = 0;
    for (Run const& run : p_runs) {
        highest = std::max(highest, run.level);
    }
    for (FriBidiLevel level = highest; level > 0; --level) {
        for (auto run = p_runs.begin(); run != p_runs.end();) {
            auto const isDeep = [level](Run const& p_run) { return p_run.level >= level; };
            auto const begin = std::find_if(run, p_runs.end(), isDeep);
            auto const end = std::find_if_not(begin, p_runs.end(), isDeep);
            std::reverse(begin, end);
            run = end;
        }
    }
}

} // namespace

class TextLayout::Builder {
public:
    Builder(TextLayout& p_layout, FontStack& p_fonts, Options const& p_options)
        : _layout(p_layout), _fonts(p_fonts), _options(p_options) {
        int const lineHeight = std::max(1, p_layout._metrics.LineHeight());
        _maxLines = static_cast<std::size_t>(std::max(1, p_options.height / lineHeight));
        _ellipsis = MakeParagraph({FontsHaveEllipsis() ? std::u32string(1, Ellipsis) : std::u32string(U"..."), {}});
    }

    void Add(std::u32string const& p_text) {
        std::size_t const length = std::min(p_text.size(), MaxLength);
        std::vector<Source> paragraphs = SplitParagraphs(p_text, length, _options.hasClusters);
        for (std::size_t i = 0; i < paragraphs.size() && !IsFull(); ++i) {
            bool const isLast = i + 1 == paragraphs.size();
            AddParagraph(MakeParagraph(std::move(paragraphs[i])), !isLast, isLast && length < p_text.size());
        }
    }

private:
    bool FontsHaveEllipsis() const { return _fonts.FaceFor(Ellipsis) != nullptr; }
    bool IsFull() const { return _layout._lines.size() >= _maxLines; }

    FontFace const* Keep(std::shared_ptr<FontFace const> const& p_face) {
        if (p_face && std::find(_layout._faces.begin(), _layout._faces.end(), p_face) == _layout._faces.end()) {
            _layout._faces.push_back(p_face);
        }
        return p_face.get();
    }

    /// The font of a character; p_previous is that of the one before it, which spaces and marks follow if they can.
    FontFace const* ChooseFace(char32_t p_character, FontFace const* p_previous) {
        bool const follows = IsSpace(p_character) || IsMark(p_character) || IsFormat(p_character);
        if (follows && p_previous != nullptr && p_previous->GlyphOf(p_character) != 0) {
            return p_previous;
        }
        FontFace const* const face = Keep(_fonts.FaceFor(p_character));
        return face == nullptr && follows ? p_previous : face;
    }

    Paragraph MakeParagraph(Source p_source) {
        Paragraph result;
        result.text = std::move(p_source.text);
        result.places = std::move(p_source.places);
        std::vector<FriBidiLevel> const levels = FindLevels(result.text, result.isRightToLeft);
        std::vector<hb_script_t> const scripts = FindScripts(result.text);
        FontFace const* face = nullptr;
        for (std::size_t i = 0; i < result.text.size(); ++i) {
            face = ChooseFace(result.text[i], face);
            if (!result.runs.empty()) {
                Run& last = result.runs.back();
                if (last.level == levels[i] && last.script == scripts[i] && last.face == face) {
                    last.end = i + 1;
                    continue;
                }
            }
            result.runs.push_back({i, i + 1, levels[i], scripts[i], face});
        }
        Measure(result);
        return result;
    }

    void Measure(Paragraph& p_paragraph) {
        p_paragraph.advances.assign(p_paragraph.text.size(), 0);
        p_paragraph.beginsCluster.assign(p_paragraph.text.size(), false);
        std::vector<ShapedGlyph> glyphs;
        for (Run const& run : p_paragraph.runs) {
            glyphs.clear();
            Shape(p_paragraph.text, run, glyphs);
            for (ShapedGlyph const& glyph : glyphs) {
                p_paragraph.advances[glyph.cluster] += glyph.advance;
                p_paragraph.beginsCluster[glyph.cluster] = true;
            }
        }
    }

    /// The glyphs of a run from left to right; those that are missing have the width of the box.
    void Shape(std::u32string_view p_text, Run const& p_run, std::vector<ShapedGlyph>& p_glyphs) {
        int const boxAdvance = FontStack::MissingGlyphAdvance(_layout._pixelSize);
        if (p_run.face != nullptr) {
            p_run.face->Shape(p_text, p_run.begin, p_run.end, p_run.IsRightToLeft(),
                static_cast<std::uint32_t>(hb_script_to_iso15924_tag(p_run.script)), _layout._pixelSize, p_glyphs);
        } else {
            for (std::size_t i = p_run.begin; i < p_run.end; ++i) {
                std::size_t const at = p_run.IsRightToLeft() ? p_run.begin + p_run.end - 1 - i : i;
                p_glyphs.push_back({0, static_cast<std::uint32_t>(at), boxAdvance, 0, 0});
            }
        }
        std::erase_if(p_glyphs,
            [&p_text](ShapedGlyph const& p_glyph) { return p_glyph.glyph == 0 && IsFormat(p_text[p_glyph.cluster]); });
        for (ShapedGlyph& glyph : p_glyphs) {
            if (glyph.glyph == 0) {
                glyph.advance = boxAdvance;
                _fonts.ReportMissing(p_text[glyph.cluster]);
            }
        }
    }

    /// Adds the lines of a paragraph. p_isFollowed tells that more text comes after it, p_isCut that some of it is
    /// missing and its end is to show that.
    void AddParagraph(Paragraph const& p_paragraph, bool p_isFollowed, bool p_isCut) {
        std::size_t const size = p_paragraph.text.size();
        std::size_t begin = 0;
        do {
            bool const isLastLine = _layout._lines.size() + 1 >= _maxLines;
            std::size_t const end = isLastLine || !_options.breaksLines ? size : FindLineEnd(p_paragraph, begin);
            std::size_t const visibleEnd = _options.hasClusters ? end : TrimSpaces(p_paragraph, begin, end);
            bool const mustShowMore = (isLastLine && p_isFollowed) || (p_isCut && end == size);
            if (mustShowMore || p_paragraph.Width(begin, visibleEnd) > _options.width) {
                AddElidedLine(p_paragraph, begin, visibleEnd);
            } else {
                AddLine(p_paragraph, begin, visibleEnd, false);
            }
            begin = end;
        } while (begin < size && !IsFull());
    }

    static std::size_t TrimSpaces(Paragraph const& p_paragraph, std::size_t p_begin, std::size_t p_end) {
        while (p_end > p_begin && IsSpace(p_paragraph.text[p_end - 1])) {
            --p_end;
        }
        return p_end;
    }

    /// Where the line that starts at p_begin ends: after the last word that fits, or inside a word that is too long for
    /// any line. Always behind p_begin.
    std::size_t FindLineEnd(Paragraph const& p_paragraph, std::size_t p_begin) const {
        std::int64_t width = 0;
        std::size_t lastBreak = p_begin;
        std::size_t lastCluster = p_begin;
        for (std::size_t i = p_begin; i < p_paragraph.text.size(); ++i) {
            if (i > p_begin && p_paragraph.beginsCluster[i]) {
                lastBreak = MayBreakBefore(p_paragraph.text, i) ? i : lastBreak;
                lastCluster = i;
            }
            width += p_paragraph.advances[i];
            if (width > _options.width && !IsSpace(p_paragraph.text[i]) && lastCluster > p_begin) {
                return lastBreak > p_begin ? lastBreak : lastCluster;
            }
        }
        return p_paragraph.text.size();
    }

    void AddElidedLine(Paragraph const& p_paragraph, std::size_t p_begin, std::size_t p_end) {
        std::int64_t const space = std::int64_t(_options.width) - _ellipsis.Width(0, _ellipsis.text.size());
        std::int64_t width = 0;
        std::size_t end = p_begin;
        for (std::size_t i = p_begin; i < p_end; ++i) {
            width += p_paragraph.advances[i];
            if (width > space) {
                break;
            }
            if (i + 1 == p_end || p_paragraph.beginsCluster[i + 1]) {
                end = i + 1;
            }
        }
        _layout._isElided = true;
        AddLine(p_paragraph, p_begin, TrimSpaces(p_paragraph, p_begin, end), true);
    }

    void AddLine(Paragraph const& p_paragraph, std::size_t p_begin, std::size_t p_end, bool p_isElided) {
        Line line;
        line.isRightToLeft = p_paragraph.isRightToLeft;
        if (p_isElided && line.isRightToLeft) {
            AppendRuns(_ellipsis, 0, _ellipsis.text.size(), line);
        }
        AppendRuns(p_paragraph, p_begin, p_end, line);
        if (p_isElided && !line.isRightToLeft) {
            AppendRuns(_ellipsis, 0, _ellipsis.text.size(), line);
        }
        _layout._width = std::max(_layout._width, line.width);
        _layout._lines.push_back(std::move(line));
    }

    void AppendRuns(Paragraph const& p_paragraph, std::size_t p_begin, std::size_t p_end, Line& p_line) {
        std::vector<Run> runs;
        for (Run run : p_paragraph.runs) {
            run.begin = std::max(run.begin, p_begin);
            run.end = std::min(run.end, p_end);
            if (run.begin < run.end) {
                run.begin -= p_begin;
                run.end -= p_begin;
                runs.push_back(run);
            }
        }
        ReorderVisually(runs);
        std::u32string_view const text = std::u32string_view(p_paragraph.text).substr(p_begin, p_end - p_begin);
        std::vector<ShapedGlyph> glyphs;
        for (Run const& run : runs) {
            glyphs.clear();
            Shape(text, run, glyphs);
            if (!p_paragraph.places.empty()) {
                AppendClusters(p_paragraph, p_begin, run, glyphs, p_line);
            }
            for (ShapedGlyph const& glyph : glyphs) {
                FontFace const* const face = glyph.glyph == 0 ? nullptr : run.face;
                p_line.glyphs.push_back({face, glyph.glyph, p_line.width + glyph.xOffset, glyph.yOffset});
                p_line.width += glyph.advance;
            }
        }
    }

    /// The glyphs of one cluster stand beside each other. A cluster reaches to the beginning of the next one in the
    /// text.
    static void AppendClusters(Paragraph const& p_paragraph, std::size_t p_begin, Run const& p_run,
        std::vector<ShapedGlyph> const& p_glyphs, Line& p_line) {
        std::size_t const first = p_line.clusters.size();
        std::vector<std::size_t> begins{p_run.end};
        int x = p_line.width;
        for (std::size_t i = 0; i < p_glyphs.size(); ++i) {
            if (i == 0 || p_glyphs[i].cluster != p_glyphs[i - 1].cluster) {
                p_line.clusters.push_back({p_glyphs[i].cluster, 0, x, 0, p_run.IsRightToLeft()});
                begins.push_back(p_glyphs[i].cluster);
            }
            p_line.clusters.back().width += p_glyphs[i].advance;
            x += p_glyphs[i].advance;
        }
        std::sort(begins.begin(), begins.end());
        for (std::size_t i = first; i < p_line.clusters.size(); ++i) {
            Cluster& cluster = p_line.clusters[i];
            std::size_t const end = *std::upper_bound(begins.begin(), begins.end(), cluster.begin);
            cluster.begin = p_paragraph.places[p_begin + cluster.begin];
            cluster.end = p_paragraph.places[p_begin + end];
        }
    }

    TextLayout& _layout;
    FontStack& _fonts;
    Options _options;
    std::size_t _maxLines = 1;
    Paragraph _ellipsis;
};

TextLayout::TextLayout(FontStack& p_fonts, std::u32string const& p_text, Options const& p_options)
    : _pixelSize(std::clamp(p_options.pixelSize, 1, FontFace::MaxPixelSize)) {
    _metrics = p_fonts.Metrics(_pixelSize);
    if (!p_text.empty()) {
        Builder(*this, p_fonts, p_options).Add(p_text);
    }
}

} // namespace Qor::Chart::Assets
