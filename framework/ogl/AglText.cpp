#include "framework/ogl/Agl.h"

#include "framework/ogl/GlyphAtlas.h"
#include "framework/ogl/Text.h"

namespace Qor::Chart::Ogl {

std::shared_ptr<Text> Agl::GenFont(std::vector<Assets::FontFile> const& p_fontSet, float p_size) {
    std::shared_ptr<GlyphAtlas> atlas = _glyphAtlas.lock();
    if (!atlas) {
        atlas = std::make_shared<GlyphAtlas>();
        _glyphAtlas = atlas;
    }
    return std::make_shared<Text>(p_fontSet, p_size, std::move(atlas));
}

} // namespace Qor::Chart::Ogl
