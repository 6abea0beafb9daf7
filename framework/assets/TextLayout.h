#pragma once

#include "framework/Export.h"
#include "framework/assets/FontFace.h"
#include "framework/assets/FontStack.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace Qor::Chart::Assets {

/// Text in lines of placed glyphs, ready to be drawn at whole pixels: characters are taken from the fonts of a stack, shaped,
/// put into the order in which they are read in their script (right-to-left text included), broken into lines and cut with
/// an ellipsis where they don't fit. Never changes after construction.
class QOR_FRAMEWORK_API TextLayout {
public:
    /// Of a longer text, what follows is left out, and an ellipsis says so.
    static constexpr std::size_t MaxLength = 1U << 16;
    static constexpr int Unlimited = std::numeric_limits<int>::max();

    struct Options {
        int pixelSize = 10; ///< of the em square, 1 to FontFace::MaxPixelSize
        int width = Unlimited; ///< of the space for the text, in pixels
        int height = Unlimited;
        bool breaksLines = true; ///< at words, when they don't fit; line feeds always break
        bool hasClusters = false; ///< lines know where their characters are, and keep the blanks at their ends
    };
    struct Glyph {
        FontFace const* face = nullptr; ///< null for the box of a missing character
        std::uint32_t glyph = 0;
        int x = 0; ///< from the left end of the line to the origin of the glyph, in pixels
        int y = 0; ///< from the baseline upwards
    };
    /// Characters that are drawn together: one letter with its marks, or several in a ligature.
    struct Cluster {
        std::size_t begin = 0; ///< in code points of the text
        std::size_t end = 0;
        int x = 0; ///< of the left side, from the left end of the line
        int width = 0;
        bool isRightToLeft = false;
    };
    struct Line {
        std::vector<Glyph> glyphs; ///< from left to right
        std::vector<Cluster> clusters; ///< the same, if they are wanted; without those of an ellipsis
        int width = 0; ///< in pixels
        bool isRightToLeft = false; ///< whether its paragraph begins on the right
    };

    /// There is always at least one line in the result, unless the text is empty.
    TextLayout(FontStack& p_fonts, std::u32string const& p_text, Options const& p_options);

    std::vector<Line> const& Lines() const { return _lines; }
    FontMetrics const& Metrics() const { return _metrics; }
    int PixelSize() const { return _pixelSize; }
    /// That of the widest line.
    int Width() const { return _width; }
    int Height() const { return static_cast<int>(_lines.size()) * _metrics.LineHeight(); }
    /// True when something was left out.
    bool IsElided() const { return _isElided; }

private:
    class Builder;

    std::vector<Line> _lines;
    std::vector<std::shared_ptr<FontFace const>> _faces; // keeps alive what the glyphs point to
    FontMetrics _metrics;
    int _pixelSize = 0;
    int _width = 0;
    bool _isElided = false;
};

} // namespace Qor::Chart::Assets
