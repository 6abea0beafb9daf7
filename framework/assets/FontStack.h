#pragma once

#include "framework/Export.h"
#include "framework/assets/FontFace.h"
#include "framework/assets/FontFile.h"

#include <memory>
#include <unordered_map>
#include <vector>

namespace Qor::Chart::Assets {

/// The fonts of a set, the preferred one first: a character is taken from the first font that has it. Fonts are opened
/// when they are first needed. For one thread.
class QOR_FRAMEWORK_API FontStack {
public:
    explicit FontStack(std::vector<FontFile> const& p_fontSet);

    /// The first font that has the character; empty when none has.
    std::shared_ptr<FontFace const> FaceFor(char32_t p_character);
    /// Those of the first font that can be read.
    FontMetrics Metrics(int p_pixelSize);

    /// What stands for a character that no font has: a box. The first call is reported to the log.
    void ReportMissing(char32_t p_character);
    static int MissingGlyphAdvance(int p_pixelSize);
    static GlyphBitmap MissingGlyph(int p_pixelSize);

private:
    struct Entry {
        FontFile file;
        bool isTried = false;
        std::shared_ptr<FontFace const> face;
    };

    static std::shared_ptr<FontFace const> const& Face(Entry& p_entry);

    std::vector<Entry> _entries;
    std::unordered_map<char32_t, std::shared_ptr<FontFace const>> _found;
    bool _hasReported = false;
};

} // namespace Qor::Chart::Assets
