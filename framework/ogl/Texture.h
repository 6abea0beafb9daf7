#pragma once

#include "framework/Export.h"
#include "framework/ogl/DeviceResource.h"
#include "framework/ogl/TextureSampling.h"

#include <QImage>

namespace Qor::Chart::Ogl {

/// An image that texture units read. Texture coordinate (0, 0) is the lower left corner of the image as it is seen,
/// (1, 1) the upper right. Never changes after construction; shared by handle. The device's copy is made on the first draw
/// in a context and freed there after the last owner is gone.
class QOR_FRAMEWORK_API Texture : public DeviceResource {
public:
    /// Keeps a copy of the image with 8 bits a channel. An image without pixels gives an invalid texture, which is drawn
    /// as if the unit were off.
    explicit Texture(QImage const& p_image, TextureSampling const& p_sampling = {});

    bool IsValid() const { return !_image.isNull(); }
    int Width() const { return _image.width(); }
    int Height() const { return _image.height(); }
    /// RGBA with 8 bits a channel, not premultiplied, lowest row first.
    QImage const& Image() const { return _image; }
    TextureSampling const& Sampling() const { return _sampling; }

private:
    QImage _image;
    TextureSampling _sampling;
};

} // namespace Qor::Chart::Ogl
