#pragma once

#include "framework/Export.h"

#include <QImage>

#include <memory>

namespace Qor::Chart::Ogl {

/// A picture in memory to draw into: colour with 8 bits a channel, depth with 24 and stencil with 8. Belongs to the context
/// that is current when it is made.
class QOR_FRAMEWORK_API OffscreenTarget {
public:
    /// p_width and p_height are pixels; p_samples greater than 1 smooths edges, as far as the device can. Throws ContextError
    /// when no context is current, or the size or the number of samples is more than the device takes.
    OffscreenTarget(int p_width, int p_height, int p_samples = 0);
    /// Frees the picture when its context is current; else it ends with its context.
    ~OffscreenTarget();
    OffscreenTarget(OffscreenTarget const&) = delete;
    OffscreenTarget& operator=(OffscreenTarget const&) = delete;

    int Width() const;
    int Height() const;
    /// Samples a pixel, 0 without multisampling.
    int Samples() const;

    /// Makes the picture what is drawn into and read from.
    void Bind();
    /// Gives back what was bound before the last `Bind`.
    void Release();
    /// The picture, top row first, RGBA with 8 bits a channel. Call `Agl::EndFrame` or `Agl::Flush` before.
    QImage Read();

private:
    struct Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace Qor::Chart::Ogl
