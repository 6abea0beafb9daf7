#include "framework/assets/FontStack.h"

#include "framework/utility/Logger.h"

#include <algorithm>
#include <cstdio>
#include <string>

namespace Qor::Chart::Assets {

namespace {

constexpr std::size_t MaxRemembered = 1U << 16;

std::string CodePointName(char32_t p_character) {
    char name[16];
    std::snprintf(name, sizeof name, "U+%04X", static_cast<unsigned>(p_character));
    return name;
}

} // namespace

FontStack::FontStack(std::vector<FontFile> const& p_fontSet) {
    for (FontFile const& file : p_fontSet) {
        _entries.push_back({file, false, nullptr});
    }
}

std::shared_ptr<FontFace const> const& FontStack::Face(Entry& p_entry) {
    if (!p_entry.isTried) {
        p_entry.isTried = true;
        p_entry.face = FontFace::Open(p_entry.file);
    }
    return p_entry.face;
}

std::shared_ptr<FontFace const> FontStack::FaceFor(char32_t p_character) {
    if (auto const found = _found.find(p_character); found != _found.end()) {
        return found->second;
    }
    if (_found.size() >= MaxRemembered) {
        _found.clear();
    }
    for (Entry& entry : _entries) {
        if (auto const& face = Face(entry); face && face->GlyphOf(p_character) != 0) {
            return _found[p_character] = face;
        }
    }
    return _found[p_character] = nullptr;
}

FontMetrics FontStack::Metrics(int p_pixelSize) {
    for (Entry& entry : _entries) {
        if (auto const& face = Face(entry)) {
            return face->Metrics(p_pixelSize);
        }
    }
    return {p_pixelSize, (p_pixelSize + 3) / 4};
}

void FontStack::ReportMissing(char32_t p_character) {
    if (_hasReported) {
        return;
    }
    _hasReported = true;
    Utility::GetLogger().warning("No font of the set has the character " + CodePointName(p_character) +
        ", so a box is drawn for it and others like it; install a font that has it.");
}

int FontStack::MissingGlyphAdvance(int p_pixelSize) {
    return std::max(4, (p_pixelSize * 3 + 2) / 5);
}

GlyphBitmap FontStack::MissingGlyph(int p_pixelSize) {
    int const stroke = std::max(1, p_pixelSize / 14);
    GlyphBitmap box;
    box.left = stroke;
    box.width = std::max(2, MissingGlyphAdvance(p_pixelSize) - 2 * stroke);
    box.height = std::max(3, (p_pixelSize * 7 + 5) / 10);
    box.top = box.height;
    auto const width = static_cast<std::size_t>(box.width);
    box.coverage.assign(width * static_cast<std::size_t>(box.height), 0);
    for (int y = 0; y < box.height; ++y) {
        for (int x = 0; x < box.width; ++x) {
            bool const isEdge = x < stroke || y < stroke || x >= box.width - stroke || y >= box.height - stroke;
            box.coverage[static_cast<std::size_t>(y) * width + static_cast<std::size_t>(x)] = isEdge ? 255 : 0;
        }
    }
    return box;
}

} // namespace Qor::Chart::Assets
