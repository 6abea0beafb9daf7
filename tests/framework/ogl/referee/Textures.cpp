#include "tests/framework/ogl/referee/Textures.h"

#include <array>

namespace Qor::Chart::Ogl::Referee {

namespace {

using namespace Tokens;

/// A pattern without symmetry, so that a wrong orientation shows.
QImage Pattern(int p_size, bool p_isTranslucent) {
    QImage image(p_size, p_size, QImage::Format_RGBA8888);
    for (int y = 0; y < p_size; ++y) {
        for (int x = 0; x < p_size; ++x) {
            int const check = (x / 2 + y / 3) % 2;
            int const alpha = p_isTranslucent ? 60 + 190 * ((x + 2 * y) % p_size) / p_size : 255;
            image.setPixelColor(x, y, QColor(255 * x / p_size, 80 + 140 * check, 255 - 200 * y / p_size, alpha));
        }
    }
    return image;
}

} // namespace

std::vector<std::shared_ptr<Texture const>> TestTextures() {
    static std::array<TextureSampling, TestTextureCount> const samplings = {{
        {AGL_LINEAR, AGL_LINEAR, AGL_CLAMP_TO_EDGE, AGL_CLAMP_TO_EDGE},
        {AGL_NEAREST, AGL_NEAREST, AGL_REPEAT, AGL_REPEAT},
        {AGL_LINEAR, AGL_LINEAR, AGL_MIRRORED_REPEAT, AGL_REPEAT},
        {AGL_LINEAR_MIPMAP_LINEAR, AGL_LINEAR, AGL_REPEAT, AGL_MIRRORED_REPEAT},
        {AGL_LINEAR, AGL_NEAREST, AGL_REPEAT, AGL_CLAMP_TO_EDGE},
    }};
    std::vector<std::shared_ptr<Texture const>> textures;
    for (std::size_t i = 0; i < TestTextureCount; ++i)
        textures.push_back(
            std::make_shared<Texture>(Pattern(std::array{8, 16, 12, 32, 7}[i], i % 2 == 1), samplings[i]));
    return textures;
}

} // namespace Qor::Chart::Ogl::Referee
