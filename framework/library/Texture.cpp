#include "framework/library/Texture.h"

#include "framework/utility/Logger.h"

#include <QSize>

#include <algorithm>
#include <cmath>

namespace Qor::Chart::Library {

using namespace Ogl::Tokens;

namespace {

std::string Text(QSize const& p_size) {
    return std::to_string(p_size.width()) + " by " + std::to_string(p_size.height());
}

QSize FitInto(QSize const& p_size, int p_limit) {
    double const factor = static_cast<double>(p_limit) / std::max(p_size.width(), p_size.height());
    auto const side = [&](int p_side) {
        return std::clamp(static_cast<int>(std::lround(p_side * factor)), 1, p_limit);
    };
    return {side(p_size.width()), side(p_size.height())};
}

/// Gives pixels that cannot be seen the colours of those around them, since filters mix them in along the edges.
QImage SpreadColors(QImage const& p_image) {
    if (!p_image.hasAlphaChannel() || std::max(p_image.width(), p_image.height()) <= 1) {
        return p_image;
    }
    QImage image = p_image.convertToFormat(QImage::Format_ARGB32);
    QImage coarse;
    for (int y = 0; y < image.height(); ++y) {
        auto* const line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(line[x]) != 0) {
                continue;
            }
            if (coarse.isNull()) {
                QSize const half((image.width() + 1) / 2, (image.height() + 1) / 2);
                coarse = SpreadColors(p_image.scaled(half, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
            }
            line[x] = coarse.pixel(x / 2, y / 2) & 0xFFFFFFU;
        }
    }
    return image;
}

/// The image as it is to be filtered, in a size that the device takes.
QImage Prepare(QImage const& p_image, int p_limit, std::string const& p_name) {
    std::string const name = p_name.empty() ? "An image" : "The image \"" + p_name + '"';
    if (p_image.isNull()) {
        Utility::GetLogger().error(name + " has no pixels and is not drawn; check that its file is a complete image.");
        return p_image;
    }
    if (std::max(p_image.width(), p_image.height()) <= p_limit) {
        return SpreadColors(p_image);
    }
    QSize const size = FitInto(p_image.size(), p_limit);
    Utility::GetLogger().warning(name + " of " + Text(p_image.size()) + " pixels is larger than the " +
        std::to_string(p_limit) + " by " + std::to_string(p_limit) + " that the device takes; it is scaled down to " +
        Text(size) + '.');
    return SpreadColors(p_image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

} // namespace

Texture::Texture(QImage const& p_image, Utility::Scoped<Ogl::Agl>& p_agl, std::string const& p_name,
    Ogl::TextureSampling const& p_sampling)
    : _texture(std::make_shared<Ogl::Texture const>(
          Prepare(p_image, static_cast<int>(p_agl->Features().maxTextureSize), p_name), p_sampling))
    , _width(p_image.width())
    , _height(p_image.height()) {}

void Texture::Bind(Ogl::Agl& p_agl) const {
    p_agl.BindTexture(_texture);
    IsValid() ? p_agl.Enable(AGL_TEXTURE_2D) : p_agl.Disable(AGL_TEXTURE_2D);
}

void Texture::Unbind(Ogl::Agl& p_agl) {
    p_agl.BindTexture(nullptr);
    p_agl.Disable(AGL_TEXTURE_2D);
}

} // namespace Qor::Chart::Library
