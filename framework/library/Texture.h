#pragma once

#include "framework/Export.h"
#include "framework/ogl/Agl.h"
#include "framework/ogl/Texture.h"
#include "framework/utility/Scoped.h"

#include <QImage>

#include <memory>
#include <string>

namespace Qor::Chart::Library {

/// An image ready to be drawn: a texture of the size that the device takes, under a name for messages. Copies share the
/// pixels. The device's copy is made on the first draw and freed after the last owner is gone; no context is needed for
/// either.
///
///     Library::Texture const sign(*imageCache.Image(resource.ImageFile("PopOut")), scope, "PopOut");
///     Library::TexturedQuad(16, 16)(context.AglHandle(), sign);
class QOR_FRAMEWORK_API Texture {
public:
    /// Sampling for images that are drawn at any size: smooth when larger, averaged when smaller, not more than needed.
    static constexpr Ogl::TextureSampling Smooth{
        .minification = Ogl::Tokens::AGL_LINEAR_MIPMAP_LINEAR, .lodBias = -0.5F};
    /// Every pixel as it is, whatever the size.
    static constexpr Ogl::TextureSampling Exact{Ogl::Tokens::AGL_NEAREST, Ogl::Tokens::AGL_NEAREST};

    /// Any size and format will do. An image larger than the device takes is scaled down, sides in proportion, with a
    /// warning; an image without pixels is reported and gives a texture that draws nothing. p_name stands in these
    /// messages: give the file.
    Texture(QImage const& p_image, Utility::Scoped<Ogl::Agl>& p_agl, std::string const& p_name = {},
        Ogl::TextureSampling const& p_sampling = Smooth);

    /// False when there was no image.
    bool IsValid() const { return _texture->IsValid(); }
    /// In pixels, as the image was given, whatever it was scaled to.
    int Width() const { return _width; }
    int Height() const { return _height; }
    /// Never empty.
    std::shared_ptr<Ogl::Texture const> const& Handle() const { return _texture; }

    /// Binds the texture to the active unit and enables the unit; disables it when the texture is not valid. To be undone
    /// by `Unbind` or with the attribute groups AGL_TEXTURE_BIT and AGL_ENABLE_BIT.
    void Bind(Ogl::Agl& p_agl) const;
    /// Leaves the active unit without a texture and disabled.
    static void Unbind(Ogl::Agl& p_agl);

private:
    std::shared_ptr<Ogl::Texture const> _texture;
    int _width;
    int _height;
};

} // namespace Qor::Chart::Library
