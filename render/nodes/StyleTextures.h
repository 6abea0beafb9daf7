#pragma once

#include "framework/library/Texture.h"
#include "render/core/Registrar.h"

#include <memory>
#include <set>
#include <string>
#include <unordered_map>

class QImage;

namespace Qor::Chart::Render {

class UpdateContext;

/// A texture of a render style, ready to be drawn.
struct StyleTexture {
    std::shared_ptr<QImage const> image; ///< what the texture was made of
    Library::Texture texture;
    bool isTranslucent; ///< some of its pixels are not opaque
};

/// Knows the textures that are in use, so that each image is made into one once, for however many styles. It keeps none
/// alive.
class StyleTextures {
public:
    /// The one that all nodes of a registrar share.
    static std::shared_ptr<StyleTextures> Of(Registrar& p_registrar);

    explicit StyleTextures(Registrar::Handle p_registration);

    /// The texture of an image, in the words of `Library::SymbolRegistry::LoadImage`. Throws `Assets::ImageError`.
    std::shared_ptr<StyleTexture const> Load(UpdateContext const& p_context, std::string const& p_name);
    /// Whether it is the first time since it last worked that an image cannot be had.
    bool TakeFailure(std::string const& p_name) { return _failed.insert(p_name).second; }

private:
    void DropUnused();

    Registrar::Handle _registration;
    std::unordered_map<std::string, std::weak_ptr<StyleTexture const>> _textures;
    std::size_t _dropAt = 64;
    std::set<std::string> _failed;
};

} // namespace Qor::Chart::Render
