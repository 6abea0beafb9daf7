#include "framework/assets/FontFace.h"

#include "framework/utility/Logger.h"

#include <hb-ft.h>
#include <hb.h>

#include <ft2build.h>
#include FT_FREETYPE_H

#include <algorithm>
#include <atomic>
#include <map>
#include <string>
#include <utility>

namespace Qor::Chart::Assets {

namespace {

constexpr FT_Int32 LoadFlags = FT_LOAD_TARGET_LIGHT | FT_LOAD_NO_BITMAP;

struct LibraryDeleter {
    void operator()(FT_Library p_library) const { FT_Done_FreeType(p_library); }
};
struct FaceDeleter {
    void operator()(FT_Face p_face) const { FT_Done_Face(p_face); }
};
struct FontDeleter {
    void operator()(hb_font_t* p_font) const { hb_font_destroy(p_font); }
};
struct BufferDeleter {
    void operator()(hb_buffer_t* p_buffer) const { hb_buffer_destroy(p_buffer); }
};

int RoundFrom26Dot6(FT_Pos p_value) {
    return static_cast<int>((p_value + 32) >> 6);
}
int CeilFrom26Dot6(FT_Pos p_value) {
    return static_cast<int>((p_value + 63) >> 6);
}

std::uint64_t NextId() {
    static std::atomic<std::uint64_t> last{0};
    return ++last;
}

GlyphBitmap CopyBitmap(FT_GlyphSlot p_slot) {
    FT_Bitmap const& source = p_slot->bitmap;
    GlyphBitmap result;
    if (source.pixel_mode != FT_PIXEL_MODE_GRAY || source.buffer == nullptr) {
        return result;
    }
    result.left = p_slot->bitmap_left;
    result.top = p_slot->bitmap_top;
    result.width = static_cast<int>(source.width);
    result.height = static_cast<int>(source.rows);
    result.coverage.reserve(static_cast<std::size_t>(source.width) * source.rows);
    for (unsigned row = 0; row < source.rows; ++row) {
        unsigned char const* const begin = source.buffer + static_cast<std::ptrdiff_t>(row) * source.pitch;
        result.coverage.insert(result.coverage.end(), begin, begin + source.width);
    }
    return result;
}

} // namespace

struct FontFace::Impl {
    std::uint64_t id = NextId();
    std::unique_ptr<std::remove_pointer_t<FT_Library>, LibraryDeleter> library;
    std::unique_ptr<std::remove_pointer_t<FT_Face>, FaceDeleter> face;
    std::unique_ptr<hb_font_t, FontDeleter> font;
    std::unique_ptr<hb_buffer_t, BufferDeleter> buffer{hb_buffer_create()};
    int pixelSize = 0;

    bool Resize(int p_pixelSize) {
        int const size = std::clamp(p_pixelSize, 1, MaxPixelSize);
        if (size == pixelSize) {
            return true;
        }
        if (FT_Set_Pixel_Sizes(face.get(), 0, static_cast<FT_UInt>(size)) != 0) {
            return false;
        }
        pixelSize = size;
        hb_ft_font_changed(font.get());
        return true;
    }
};

FontFace::FontFace(std::unique_ptr<Impl> p_impl) : _impl(std::move(p_impl)) {}

FontFace::~FontFace() = default;

std::shared_ptr<FontFace const> FontFace::Load(FontFile const& p_file) {
    auto impl = std::make_unique<Impl>();
    FT_Library library = nullptr;
    if (FT_Init_FreeType(&library) != 0) {
        return nullptr;
    }
    impl->library.reset(library);
    FT_Face face = nullptr;
    if (FT_New_Face(library, p_file.file.string().c_str(), p_file.index, &face) != 0) {
        return nullptr;
    }
    impl->face.reset(face);
    if (!FT_IS_SCALABLE(face)) {
        return nullptr;
    }
    impl->font.reset(hb_ft_font_create(face, nullptr));
    hb_ft_font_set_load_flags(impl->font.get(), LoadFlags);
    return std::shared_ptr<FontFace const>(new FontFace(std::move(impl)));
}

std::shared_ptr<FontFace const> FontFace::Open(FontFile const& p_file) {
    thread_local std::map<std::pair<std::string, int>, std::weak_ptr<FontFace const>> faces;
    std::pair<std::string, int> key(p_file.file.string(), p_file.index);
    if (auto const found = faces.find(key); found != faces.end()) {
        if (auto face = found->second.lock()) {
            return face;
        }
    }
    auto face = Load(p_file);
    if (!face) {
        Utility::GetLogger().warning("The font file \"" + key.first +
            "\" cannot be read and is passed over; check that it is there and that it is a font with outlines.");
        return nullptr;
    }
    std::erase_if(faces, [](auto const& p_entry) { return p_entry.second.expired(); });
    faces[std::move(key)] = face;
    return face;
}

std::uint64_t FontFace::Id() const {
    return _impl->id;
}

std::uint32_t FontFace::GlyphOf(char32_t p_character) const {
    return FT_Get_Char_Index(_impl->face.get(), p_character);
}

FontMetrics FontFace::Metrics(int p_pixelSize) const {
    if (!_impl->Resize(p_pixelSize)) {
        return {p_pixelSize, 0};
    }
    FT_Size_Metrics const& metrics = _impl->face->size->metrics;
    FontMetrics result{CeilFrom26Dot6(metrics.ascender), CeilFrom26Dot6(-metrics.descender)};
    if (result.LineHeight() <= 0) {
        result = {p_pixelSize, 0};
    }
    return result;
}

void FontFace::Shape(std::u32string_view p_text, std::size_t p_begin, std::size_t p_end, bool p_isRightToLeft,
    std::uint32_t p_script, int p_pixelSize, std::vector<ShapedGlyph>& p_glyphs) const {
    if (p_begin >= p_end || p_end > p_text.size() || !_impl->Resize(p_pixelSize)) {
        return;
    }
    hb_buffer_t* const buffer = _impl->buffer.get();
    hb_buffer_clear_contents(buffer);
    hb_buffer_set_direction(buffer, p_isRightToLeft ? HB_DIRECTION_RTL : HB_DIRECTION_LTR);
    hb_buffer_set_script(buffer, hb_script_from_iso15924_tag(p_script));
    hb_buffer_set_language(buffer, hb_language_get_default());
    hb_buffer_add_codepoints(buffer, reinterpret_cast<hb_codepoint_t const*>(p_text.data()),
        static_cast<int>(p_text.size()), static_cast<unsigned>(p_begin), static_cast<int>(p_end - p_begin));
    hb_shape(_impl->font.get(), buffer, nullptr, 0);

    unsigned count = 0;
    hb_glyph_info_t const* const infos = hb_buffer_get_glyph_infos(buffer, &count);
    hb_glyph_position_t const* const positions = hb_buffer_get_glyph_positions(buffer, &count);
    p_glyphs.reserve(p_glyphs.size() + count);
    for (unsigned i = 0; i < count; ++i) {
        p_glyphs.push_back({infos[i].codepoint, infos[i].cluster, RoundFrom26Dot6(positions[i].x_advance),
            RoundFrom26Dot6(positions[i].x_offset), RoundFrom26Dot6(positions[i].y_offset)});
    }
}

GlyphBitmap FontFace::Rasterise(std::uint32_t p_glyph, int p_pixelSize) const {
    if (!_impl->Resize(p_pixelSize) || FT_Load_Glyph(_impl->face.get(), p_glyph, LoadFlags) != 0 ||
        FT_Render_Glyph(_impl->face->glyph, FT_RENDER_MODE_NORMAL) != 0) {
        return {};
    }
    return CopyBitmap(_impl->face->glyph);
}

} // namespace Qor::Chart::Assets
