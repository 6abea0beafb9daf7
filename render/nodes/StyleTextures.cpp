#include "render/nodes/StyleTextures.h"

#include "render/core/SharedUnique.h"
#include "render/context/UpdateContext.h"
#include "framework/assets/ImageError.h"
#include "framework/library/SymbolRegistry.h"
#include "framework/ogl/Agl.h"
#include "framework/utility/Scoped.h"

#include <QImage>

#include <algorithm>
#include <utility>

namespace Qor::Chart::Render {

namespace {

/// The image is RGBA with 8 bits a channel.
bool IsTranslucent(QImage const& p_image) {
    for (int y = 0; y < p_image.height(); ++y) {
        uchar const* const line = p_image.constScanLine(y);
        for (int x = 0; x < p_image.width(); ++x) {
            if (line[4 * x + 3] != 0xFF)
                return true;
        }
    }
    return false;
}

} // namespace

std::shared_ptr<StyleTextures> StyleTextures::Of(Registrar& p_registrar) {
    return SharedUnique<StyleTextures>::Get(p_registrar);
}

StyleTextures::StyleTextures(Registrar::Handle p_registration) : _registration(std::move(p_registration)) {}

std::shared_ptr<StyleTexture const> StyleTextures::Load(UpdateContext const& p_context, std::string const& p_name) {
    std::shared_ptr<QImage const> image = p_context.SymbolRegistry().LoadImage(p_name, p_context.ImageCache());
    if (!image || image->isNull())
        throw Assets::ImageError(
            "The image \"" + p_name + "\" has no pixels; check that its file is a complete image.");
    if (std::shared_ptr<StyleTexture const> known = _textures[p_name].lock(); known && known->image == image)
        return known;
    DropUnused();
    Utility::Scoped<Ogl::Agl> agl(p_context.Graphics());
    Library::Texture texture(*image, agl, p_name);
    bool const isTranslucent = IsTranslucent(texture.Handle()->Image());
    auto made = std::make_shared<StyleTexture const>(StyleTexture{std::move(image), std::move(texture), isTranslucent});
    _textures[p_name] = made;
    _failed.erase(p_name);
    return made;
}

void StyleTextures::DropUnused() {
    if (_textures.size() < _dropAt)
        return;
    std::erase_if(_textures, [](auto const& p_entry) { return p_entry.second.expired(); });
    _dropAt = std::max<std::size_t>(64, 2 * _textures.size());
}

} // namespace Qor::Chart::Render
