#pragma once

#include "framework/Export.h"
#include "framework/assets/FontFace.h"
#include "framework/ogl/Texture.h"

#include <QImage>

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace Qor::Chart::Ogl {

/// The pictures of glyphs, side by side on pages that are textures, so that a whole text is drawn with one of them. All
/// texts of an `Agl` share one atlas. For one thread.
class QOR_FRAMEWORK_API GlyphAtlas {
public:
    static constexpr int PageSize = 256;
    static constexpr std::size_t MaxPages = 64;

    /// Where the picture of a glyph is, and how it lies about the origin of the glyph.
    struct Entry {
        std::size_t page = 0;
        int x = 0; ///< of its left side on the page, in pixels from the left
        int y = 0; ///< of its upper side on the page, in pixels from the top
        Assets::GlyphBitmap placement; ///< without pixels; the coverage is on the page
    };

    /// Forgets everything when there are too many pages. To be called before the glyphs of a text are looked up.
    void Trim();
    /// The glyph of a face, drawn onto a page if it isn't yet; a null face stands for the box of a missing character. The
    /// reference holds until the next `Trim`.
    Entry const& Find(Assets::FontFace const* p_face, std::uint32_t p_glyph, int p_pixelSize);
    /// The page with all glyphs found so far: white, as opaque as they cover it.
    std::shared_ptr<Texture const> const& Page(std::size_t p_page);
    std::size_t PageCount() const { return _pages.size(); }
    /// How often everything was forgotten. As long as that stays the same a page keeps its glyphs where they are.
    std::size_t Generation() const { return _generation; }

private:
    struct Key {
        std::uint64_t face = 0;
        std::uint32_t glyph = 0;
        int pixelSize = 0;
        bool operator==(Key const&) const = default;
    };
    struct KeyHash {
        std::size_t operator()(Key const& p_key) const;
    };
    /// Glyphs stand in rows, from the top; a row is as high as the highest in it.
    struct PageData {
        QImage image;
        std::shared_ptr<Texture const> texture;
        int x = 0;
        int y = 0;
        int rowHeight = 0;
    };

    Entry& Add(Key const& p_key, Assets::GlyphBitmap p_bitmap);
    void Place(Entry& p_entry);
    bool TryPlace(PageData& p_page, Entry& p_entry) const;
    void AddAscii(Assets::FontFace const& p_face, int p_pixelSize);

    std::unordered_map<Key, Entry, KeyHash> _entries;
    std::vector<PageData> _pages;
    std::size_t _generation = 0;
};

} // namespace Qor::Chart::Ogl
