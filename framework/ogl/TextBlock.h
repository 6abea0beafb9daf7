#pragma once

#include "framework/Export.h"
#include "framework/ogl/PrimitiveBuffer.h"
#include "framework/ogl/Text.h"
#include "framework/ogl/Texture.h"
#include "framework/ogl/VertexBuffer.h"
#include "framework/types/Viewport.h"

#include <memory>
#include <string_view>
#include <vector>

namespace Qor::Chart::Ogl {

class Agl;

/// Texts that stay as they are for a while: each is laid out once, when it is added, and all of them together are drawn
/// as one shape for each page of glyphs, as often as one likes. Drawing allocates nothing.
///
///     block.Add(*text, "Title", rectangle);
///     block.Draw(*agl);
class QOR_FRAMEWORK_API TextBlock {
public:
    /// Adds a text as `Text::Draw` would draw it into a rectangle, in the size, the colour and the alignment that
    /// p_text has now.
    void Add(Text& p_text, std::string_view p_string, Types::Viewport<0> const& p_rectangle);
    void Add(Text& p_text, std::wstring_view p_string, Types::Viewport<0> const& p_rectangle);
    /// Forgets all texts.
    void Clear() { _pages.clear(); }
    bool IsEmpty() const { return _pages.empty(); }

    /// Draws all texts in pixels of the device as after `Agl::Ortho2D`. Depth test, stencil test, scissor box and clip
    /// planes are the caller's; all other state is set and brought back.
    void Draw(Agl& p_agl);

private:
    /// What is drawn with one texture.
    struct Page {
        std::shared_ptr<GlyphAtlas const> atlas; ///< where the glyphs are found, with the next two
        std::size_t generation = 0;
        std::size_t number = 0;
        std::shared_ptr<Texture const> texture; ///< with all glyphs that were needed so far
        VertexData vertices; ///< until they are in the shape
        std::shared_ptr<PrimitiveBuffer const> shape; ///< null until it is drawn
    };

    void Take(Text& p_text);
    void Append(Text const& p_text, Text::Quad const& p_quad);

    std::vector<Page> _pages;
};

} // namespace Qor::Chart::Ogl
