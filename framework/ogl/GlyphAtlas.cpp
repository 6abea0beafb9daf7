#include "framework/ogl/GlyphAtlas.h"

#include "framework/assets/FontStack.h"

#include <QColor>

#include <algorithm>
#include <functional>
#include <utility>

namespace Qor::Chart::Ogl {

namespace {

constexpr int Gap = 1; // between glyphs, so that none shows in its neighbour
constexpr int MaxSizeOfAscii = 24;

} // namespace

std::size_t GlyphAtlas::KeyHash::operator()(Key const& p_key) const {
    std::uint64_t const mixed =
        (p_key.face * 1024 + static_cast<std::uint64_t>(p_key.pixelSize)) * 0x9E3779B97F4A7C15U + p_key.glyph;
    return std::hash<std::uint64_t>()(mixed * 0xBF58476D1CE4E5B9U);
}

void GlyphAtlas::Trim() {
    if (_pages.size() > MaxPages) {
        _entries.clear();
        _pages.clear();
        ++_generation;
    }
}

GlyphAtlas::Entry const& GlyphAtlas::Find(Assets::FontFace const* p_face, std::uint32_t p_glyph, int p_pixelSize) {
    Key const key{p_face != nullptr ? p_face->Id() : 0, p_glyph, p_pixelSize};
    if (auto const found = _entries.find(key); found != _entries.end()) {
        return found->second;
    }
    if (p_face == nullptr) {
        return Add(key, Assets::FontStack::MissingGlyph(p_pixelSize));
    }
    Key const first{key.face, p_face->GlyphOf(U'0'), p_pixelSize};
    if (p_pixelSize <= MaxSizeOfAscii && !_entries.contains(first)) {
        AddAscii(*p_face, p_pixelSize);
        if (auto const found = _entries.find(key); found != _entries.end()) {
            return found->second;
        }
    }
    return Add(key, p_face->Rasterise(p_glyph, p_pixelSize));
}

/// Most texts are made of these; all at once, so that the page reaches the device but once.
void GlyphAtlas::AddAscii(Assets::FontFace const& p_face, int p_pixelSize) {
    for (char32_t character = 0x20; character < 0x7F; ++character) {
        Key const key{p_face.Id(), p_face.GlyphOf(character), p_pixelSize};
        if (!_entries.contains(key)) {
            Add(key, p_face.Rasterise(key.glyph, p_pixelSize));
        }
    }
}

GlyphAtlas::Entry& GlyphAtlas::Add(Key const& p_key, Assets::GlyphBitmap p_bitmap) {
    Entry& entry = _entries[p_key];
    entry.placement = std::move(p_bitmap);
    if (!entry.placement.coverage.empty()) {
        Place(entry);
        std::vector<std::uint8_t>().swap(entry.placement.coverage);
    }
    return entry;
}

void GlyphAtlas::Place(Entry& p_entry) {
    if (_pages.empty() || !TryPlace(_pages.back(), p_entry)) {
        PageData page;
        page.image = QImage(std::max(PageSize, p_entry.placement.width + 2 * Gap),
            std::max(PageSize, p_entry.placement.height + 2 * Gap), QImage::Format_RGBA8888);
        page.image.fill(QColor(255, 255, 255, 0));
        page.x = page.y = Gap;
        _pages.push_back(std::move(page));
        TryPlace(_pages.back(), p_entry);
    }
    p_entry.page = _pages.size() - 1;
}

bool GlyphAtlas::TryPlace(PageData& p_page, Entry& p_entry) const {
    Assets::GlyphBitmap const& bitmap = p_entry.placement;
    if (p_page.x + bitmap.width + Gap > p_page.image.width()) {
        p_page.x = Gap;
        p_page.y += p_page.rowHeight + Gap;
        p_page.rowHeight = 0;
    }
    if (p_page.x + bitmap.width + Gap > p_page.image.width() ||
        p_page.y + bitmap.height + Gap > p_page.image.height()) {
        return false;
    }
    p_entry.x = p_page.x;
    p_entry.y = p_page.y;
    for (int row = 0; row < bitmap.height; ++row) {
        auto const* const source = bitmap.coverage.data() + static_cast<std::ptrdiff_t>(row) * bitmap.width;
        uchar* const target = p_page.image.scanLine(p_entry.y + row) + static_cast<std::ptrdiff_t>(p_entry.x) * 4;
        for (int column = 0; column < bitmap.width; ++column) {
            target[column * 4 + 3] = source[column];
        }
    }
    p_page.x += bitmap.width + Gap;
    p_page.rowHeight = std::max(p_page.rowHeight, bitmap.height);
    p_page.texture.reset();
    return true;
}

std::shared_ptr<Texture const> const& GlyphAtlas::Page(std::size_t p_page) {
    PageData& page = _pages[p_page];
    if (!page.texture) {
        page.texture = std::make_shared<Texture const>(page.image);
    }
    return page.texture;
}

} // namespace Qor::Chart::Ogl
