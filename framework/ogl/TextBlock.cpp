#include "framework/ogl/TextBlock.h"

#include "framework/ogl/Agl.h"
#include "framework/ogl/Bind.h"
#include "framework/ogl/PushAttribScope.h"

#include "framework/assets/TextDecoder.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace Qor::Chart::Ogl {

using namespace Tokens;

namespace {

constexpr std::uint32_t CornersPerQuad = 4;

std::shared_ptr<PrimitiveBuffer const> ShapeOf(VertexData p_vertices) {
    auto const corners = static_cast<std::uint32_t>(p_vertices.positions.size());
    std::vector<std::uint32_t> indices;
    for (std::uint32_t first = 0; first < corners; first += CornersPerQuad) {
        for (std::uint32_t const corner : {0U, 1U, 2U, 0U, 2U, 3U}) {
            indices.push_back(first + corner);
        }
    }
    return std::make_shared<PrimitiveBuffer const>(
        std::make_shared<IndexBuffer const>(AGL_TRIANGLES, std::move(indices)),
        std::make_shared<VertexBuffer const>(std::move(p_vertices)));
}

} // namespace

void TextBlock::Add(Text& p_text, std::string_view p_string, Types::Viewport<0> const& p_rectangle) {
    p_text.Place(Assets::TextDecoder::Utf8(p_string, Assets::TextLayout::MaxLength + 1), p_rectangle);
    Take(p_text);
}

void TextBlock::Add(Text& p_text, std::wstring_view p_string, Types::Viewport<0> const& p_rectangle) {
    p_text.Place(Assets::TextDecoder::Wide(p_string, Assets::TextLayout::MaxLength + 1), p_rectangle);
    Take(p_text);
}

void TextBlock::Take(Text& p_text) {
    for (Text::Quad const& quad : p_text._quads) {
        Append(p_text, quad);
    }
}

/// A page that has gained glyphs has another texture, with the old ones where they were. What has been put into a shape
/// stays there.
void TextBlock::Append(Text const& p_text, Text::Quad const& p_quad) {
    GlyphAtlas& atlas = *p_text._atlas;
    auto page = std::find_if(_pages.begin(), _pages.end(), [&](Page const& p_page) {
        return p_page.atlas == p_text._atlas && p_page.generation == atlas.Generation() &&
            p_page.number == p_quad.page && p_page.shape == nullptr;
    });
    if (page == _pages.end()) {
        page = _pages.insert(_pages.end(), Page{p_text._atlas, atlas.Generation(), p_quad.page, {}, {}, {}});
    }
    page->texture = atlas.Page(p_quad.page);
    std::shared_ptr<Texture const> const& texture = page->texture;
    auto const width = static_cast<float>(texture->Width());
    auto const height = static_cast<float>(texture->Height());
    Text::Bounds const& target = p_quad.target;
    auto const left = static_cast<float>(p_quad.x) / width;
    auto const right = static_cast<float>(p_quad.x + target.right - target.left) / width;
    auto const top = 1 - static_cast<float>(p_quad.y) / height;
    auto const bottom = 1 - static_cast<float>(p_quad.y + target.top - target.bottom) / height;
    auto const add = [&](int p_x, int p_y, float p_s, float p_t) {
        page->vertices.positions.emplace_back(static_cast<float>(p_x), static_cast<float>(p_y), 0.0F);
        page->vertices.colors.push_back(p_text._color);
        page->vertices.texCoords.front().emplace_back(p_s, p_t, 0.0F, 1.0F);
    };
    add(target.left, target.bottom, left, bottom);
    add(target.right, target.bottom, right, bottom);
    add(target.right, target.top, right, top);
    add(target.left, target.top, left, top);
}

void TextBlock::Draw(Agl& p_agl) {
    if (_pages.empty()) {
        return;
    }
    PushAttribScope const saved(p_agl, AGL_ALL_ATTRIB_BITS);
    Bind<Shader> const shader(p_agl, std::shared_ptr<Shader const>());
    Text::SetState(p_agl);
    p_agl.Color(1, 1, 1);
    for (Page& page : _pages) {
        if (page.shape == nullptr) {
            page.shape = ShapeOf(std::exchange(page.vertices, {}));
        }
        p_agl.BindTexture(page.texture);
        p_agl.Draw(page.shape);
    }
    p_agl.PopMatrix();
}

} // namespace Qor::Chart::Ogl
