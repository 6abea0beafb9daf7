#pragma once

#include "framework/Export.h"
#include "framework/assets/FontFile.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace Qor::Chart::Assets {

/// How far a line of text reaches above and below its baseline, in pixels.
struct FontMetrics {
    int ascent = 0;
    int descent = 0;

    int LineHeight() const { return ascent + descent; }
};

/// A glyph of a shaped run. All lengths are whole pixels, y upwards.
struct ShapedGlyph {
    std::uint32_t glyph = 0; ///< 0 where the font has none
    std::uint32_t cluster = 0; ///< the first of the code points that it stands for
    int advance = 0; ///< from its origin to that of the next glyph on its right
    int xOffset = 0;
    int yOffset = 0;
};

/// The picture of a glyph: how much of each pixel it covers, 0 to 255, top row first.
struct GlyphBitmap {
    int left = 0; ///< from the origin of the glyph to the left side of the picture, in pixels
    int top = 0; ///< from the baseline up to the upper side of the picture, in pixels
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> coverage;
};

/// One open font: says which characters it has, shapes runs of text and rasterises glyphs, all at sizes in whole pixels.
/// For one thread.
class QOR_FRAMEWORK_API FontFace {
public:
    static constexpr int MaxPixelSize = 512;

    /// The font of that file, the same one as long as somebody in this thread uses it. Empty, and reported to the log, when
    /// the file is not a font with outlines that can be read.
    static std::shared_ptr<FontFace const> Open(FontFile const& p_file);
    ~FontFace();
    FontFace(FontFace const&) = delete;
    FontFace& operator=(FontFace const&) = delete;

    /// A number that no other face of this process ever has; greater than 0.
    std::uint64_t Id() const;
    /// The glyph of a character by itself, 0 when the font has none.
    std::uint32_t GlyphOf(char32_t p_character) const;
    FontMetrics Metrics(int p_pixelSize) const;
    /// The glyphs of the code points from p_begin to p_end, from left to right, appended to p_glyphs. The text around
    /// the run lets letters join across its ends. p_script is a four-letter tag of ISO 15924.
    void Shape(std::u32string_view p_text, std::size_t p_begin, std::size_t p_end, bool p_isRightToLeft,
        std::uint32_t p_script, int p_pixelSize, std::vector<ShapedGlyph>& p_glyphs) const;
    /// Without pixels when the glyph is blank or broken.
    GlyphBitmap Rasterise(std::uint32_t p_glyph, int p_pixelSize) const;

private:
    struct Impl;
    explicit FontFace(std::unique_ptr<Impl> p_impl);
    static std::shared_ptr<FontFace const> Load(FontFile const& p_file);

    std::unique_ptr<Impl> _impl;
};

} // namespace Qor::Chart::Assets
