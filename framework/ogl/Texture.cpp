#include "framework/ogl/Texture.h"

namespace Qor::Chart::Ogl {

Texture::Texture(QImage const& p_image, TextureSampling const& p_sampling)
    : _image(p_image.convertToFormat(QImage::Format_RGBA8888).mirrored()), _sampling(p_sampling) {}

} // namespace Qor::Chart::Ogl
