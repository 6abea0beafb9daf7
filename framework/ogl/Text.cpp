#include "framework/ogl/Text.h"

#include "framework/ogl/Agl.h"
#include "framework/ogl/Bind.h"
#include "framework/ogl/PushAttribScope.h"

#include "framework/assets/TextDecoder.h"
#include "framework/utility/Ensure.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Qor::Chart::Ogl {

using namespace Tokens;

namespace {

constexpr std::size_t MaxRememberedLength = 1U << 17;
constexpr int GlyphReach = 16; ///< no glyph is wider, in sizes of the font
constexpr float MaxCoordinate = 1 << 24; // whole numbers up to here are exact

std::u32string Decode(std::string_view p_text) {
    return Assets::TextDecoder::Utf8(p_text, Assets::TextLayout::MaxLength + 1);
}

std::u32string Decode(std::wstring_view p_text) {
    return Assets::TextDecoder::Wide(p_text, Assets::TextLayout::MaxLength + 1);
}

bool IsDrawable(Types::Viewport<0> const& p_rectangle) {
    auto const isSane = [](float p_value) { return std::abs(p_value) <= MaxCoordinate; };
    return !p_rectangle.IsEmpty() && isSane(p_rectangle.x) && isSane(p_rectangle.y) && isSane(p_rectangle.Right()) &&
        isSane(p_rectangle.Top());
}

int Round(float p_value) {
    return static_cast<int>(std::lround(p_value));
}

} // namespace

Text::Text(std::vector<Assets::FontFile> const& p_fontSet, float p_size, std::shared_ptr<GlyphAtlas> p_atlas)
    : _fonts(p_fontSet), _atlas(std::move(p_atlas)) {
    SetSize(p_size);
}

void Text::SetSize(float p_size) {
    if (!QOR_ENSURE_TEXT(std::isfinite(p_size) && p_size > 0, "the size of a text must be greater than 0")) {
        return;
    }
    _size = p_size;
}

void Text::SetPixelRatio(float p_ratio) {
    if (!QOR_ENSURE_TEXT(std::isfinite(p_ratio) && p_ratio > 0, "the pixel ratio of a text must be greater than 0")) {
        return;
    }
    _pixelRatio = p_ratio;
}

void Text::SetBreaksLines(bool p_breaksLines) {
    _breaksLines = p_breaksLines;
}

Types::Size Text::Extents(std::string_view p_text, int p_width) {
    return Measure(Decode(p_text), p_width);
}

Types::Size Text::Extents(std::wstring_view p_text, int p_width) {
    return Measure(Decode(p_text), p_width);
}

void Text::Draw(Agl& p_agl, std::string_view p_text, Types::Viewport<0> const& p_rectangle, double p_depth) {
    DrawDecoded(p_agl, Decode(p_text), p_rectangle, p_depth);
}

void Text::Draw(Agl& p_agl, std::wstring_view p_text, Types::Viewport<0> const& p_rectangle, double p_depth) {
    DrawDecoded(p_agl, Decode(p_text), p_rectangle, p_depth);
}

int Text::PixelSize() const {
    float const size = std::min(_size * _pixelRatio, static_cast<float>(Assets::FontFace::MaxPixelSize));
    return std::max(1, Round(size));
}

Assets::TextLayout const& Text::Layout(std::u32string const& p_text, int p_width, int p_height) {
    Assets::TextLayout::Options const options{PixelSize(), p_width, p_height, _breaksLines};
    std::u32string key = p_text;
    for (int const part : {options.pixelSize, p_width, p_height, _breaksLines ? 1 : 0}) {
        key.push_back(static_cast<char32_t>(part));
    }
    if (auto const found = _layouts.find(key); found != _layouts.end()) {
        return found->second;
    }
    _rememberedLength += key.size();
    if (_rememberedLength > MaxRememberedLength) {
        _layouts.clear();
        _rememberedLength = key.size();
    }
    return _layouts.emplace(std::move(key), Assets::TextLayout(_fonts, p_text, options)).first->second;
}

Types::Size Text::Measure(std::u32string const& p_text, int p_width) {
    Assets::TextLayout const& layout = Layout(p_text, std::max(0, p_width), Assets::TextLayout::Unlimited);
    return {layout.Width(), layout.Height()};
}

void Text::Place(std::u32string const& p_text, Types::Viewport<0> const& p_rectangle) {
    _quads.clear();
    if (p_text.empty() || !IsDrawable(p_rectangle)) {
        return;
    }
    Bounds const bounds = BoundsOf(p_rectangle);
    _atlas->Trim();
    Collect(Layout(p_text, bounds.right - bounds.left, bounds.top - bounds.bottom), bounds, bounds);
}

Text::Bounds Text::BoundsOf(Types::Viewport<0> const& p_rectangle) {
    return {Round(p_rectangle.x), Round(p_rectangle.y), Round(p_rectangle.Right()), Round(p_rectangle.Top())};
}

Assets::TextLayout Text::LayOut(std::u32string const& p_text, Assets::TextLayout::Options p_options) {
    p_options.pixelSize = PixelSize();
    return {_fonts, p_text, p_options};
}

void Text::Draw(Agl& p_agl, Assets::TextLayout const& p_layout, Types::Viewport<0> const& p_rectangle,
    Types::Viewport<0> const& p_clip, double p_depth) {
    _quads.clear();
    if (!IsDrawable(p_rectangle) || !IsDrawable(p_clip) || !std::isfinite(p_depth)) {
        return;
    }
    _atlas->Trim();
    Collect(p_layout, BoundsOf(p_rectangle), BoundsOf(p_clip));
    if (!_quads.empty()) {
        DrawQuads(p_agl, p_depth);
    }
}

void Text::DrawDecoded(
    Agl& p_agl, std::u32string const& p_text, Types::Viewport<0> const& p_rectangle, double p_depth) {
    if (!std::isfinite(p_depth)) {
        return;
    }
    Place(p_text, p_rectangle);
    if (!_quads.empty()) {
        DrawQuads(p_agl, p_depth);
    }
}

void Text::Collect(Assets::TextLayout const& p_layout, Bounds const& p_bounds, Bounds const& p_clip) {
    int baseline = BlockTop(p_layout, p_bounds) - p_layout.Metrics().ascent;
    for (Assets::TextLayout::Line const& line : p_layout.Lines()) {
        CollectLine(line, p_layout.PixelSize(), LineStart(line, p_bounds), baseline, p_clip);
        baseline -= p_layout.Metrics().LineHeight();
    }
    auto const isBefore = [](Quad const& p_a, Quad const& p_b) { return p_a.page < p_b.page; };
    if (!std::is_sorted(_quads.begin(), _quads.end(), isBefore)) { // sorting allocates
        std::stable_sort(_quads.begin(), _quads.end(), isBefore);
    }
}

void Text::CollectLine(
    Assets::TextLayout::Line const& p_line, int p_pixelSize, int p_x, int p_baseline, Bounds const& p_clip) {
    int const reach = GlyphReach * p_pixelSize;
    for (Assets::TextLayout::Glyph const& glyph : p_line.glyphs) {
        if (p_x + glyph.x > p_clip.right + reach || p_x + glyph.x < p_clip.left - reach) {
            continue; // it need not be in the atlas
        }
        GlyphAtlas::Entry const& entry = _atlas->Find(glyph.face, glyph.glyph, p_pixelSize);
        Assets::GlyphBitmap const& placement = entry.placement;
        int const left = p_x + glyph.x + placement.left;
        int const top = p_baseline + glyph.y + placement.top;
        Bounds const target{std::max(left, p_clip.left), std::max(top - placement.height, p_clip.bottom),
            std::min(left + placement.width, p_clip.right), std::min(top, p_clip.top)};
        if (target.left < target.right && target.bottom < target.top) {
            _quads.push_back({entry.page, target, entry.x + target.left - left, entry.y + top - target.top});
        }
    }
}

int Text::LineStart(Assets::TextLayout::Line const& p_line, Bounds const& p_bounds) const {
    int const space = p_bounds.right - p_bounds.left - p_line.width;
    switch (_horizontal) {
    case HorizontalAlignment::Start:
        return p_bounds.left + (p_line.isRightToLeft ? space : 0);
    case HorizontalAlignment::Right:
        return p_bounds.left + space;
    case HorizontalAlignment::Center:
        return p_bounds.left + space / 2;
    case HorizontalAlignment::Left:
        break;
    }
    return p_bounds.left;
}

int Text::BlockTop(Assets::TextLayout const& p_layout, Bounds const& p_bounds) const {
    int const space = p_bounds.top - p_bounds.bottom - p_layout.Height();
    switch (_vertical) {
    case VerticalAlignment::Bottom:
        return p_bounds.top - space;
    case VerticalAlignment::Center:
        return p_bounds.top - space / 2;
    case VerticalAlignment::Top:
        break;
    }
    return p_bounds.top;
}

void Text::SetState(Agl& p_agl) {
    for (Token const capability : {AGL_LIGHTING, AGL_CULL_FACE, AGL_POLYGON_STIPPLE, AGL_POLYGON_OFFSET_FILL}) {
        p_agl.Disable(capability);
    }
    for (Token unit = p_agl.GetMaxTextures() - 1; unit > 0; --unit) {
        p_agl.ActiveTexture(AGL_TEXTURE0 + unit);
        p_agl.Disable(AGL_TEXTURE_2D);
    }
    p_agl.ActiveTexture(AGL_TEXTURE0);
    p_agl.Enable(AGL_TEXTURE_2D);
    p_agl.TexEnv(AGL_TEXTURE_ENV_MODE, AGL_MODULATE);
    p_agl.TexSampling(std::nullopt);
    p_agl.MatrixMode(AGL_TEXTURE);
    p_agl.PushMatrix();
    p_agl.LoadIdentity();
    p_agl.Enable(AGL_BLEND);
    p_agl.BlendEquation(AGL_FUNC_ADD);
    p_agl.BlendFunc(AGL_SRC_ALPHA, AGL_ONE_MINUS_SRC_ALPHA);
    p_agl.PolygonMode(AGL_FRONT_AND_BACK, AGL_FILL);
    p_agl.DepthMask(false);
}

void Text::DrawQuads(Agl& p_agl, double p_depth) {
    PushAttribScope const saved(p_agl, AGL_ALL_ATTRIB_BITS);
    Bind<Shader> const shader(p_agl, std::shared_ptr<Shader const>());
    SetState(p_agl);
    p_agl.Color(_color);
    for (std::size_t i = 0; i < _quads.size();) {
        std::size_t const page = _quads[i].page;
        std::shared_ptr<Texture const> const& texture = _atlas->Page(page);
        double const width = texture->Width();
        double const height = texture->Height();
        p_agl.BindTexture(texture);
        p_agl.Begin(AGL_QUADS);
        for (; i < _quads.size() && _quads[i].page == page; ++i) {
            Quad const& quad = _quads[i];
            Bounds const& target = quad.target;
            double const left = quad.x / width;
            double const right = (quad.x + target.right - target.left) / width;
            double const top = 1 - quad.y / height;
            double const bottom = 1 - (quad.y + target.top - target.bottom) / height;
            p_agl.TexCoord(left, bottom);
            p_agl.Vertex(target.left, target.bottom, p_depth);
            p_agl.TexCoord(right, bottom);
            p_agl.Vertex(target.right, target.bottom, p_depth);
            p_agl.TexCoord(right, top);
            p_agl.Vertex(target.right, target.top, p_depth);
            p_agl.TexCoord(left, top);
            p_agl.Vertex(target.left, target.top, p_depth);
        }
        p_agl.End();
    }
    p_agl.PopMatrix();
}

} // namespace Qor::Chart::Ogl
