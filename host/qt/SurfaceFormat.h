#pragma once

#include "host/qt/Export.h"

#include <QSurfaceFormat>

#include <string>

namespace Qor::Chart::Host {

/// The format that scenes are drawn in: OpenGL 3.3 core, depth and stencil, four samples a pixel.
QOR_HOSTQT_API QSurfaceFormat SceneSurfaceFormat();

/// Why windows cannot show scenes here, to be put after "because"; empty when they can. The first call tries it and needs
/// a `QGuiApplication`; later ones know.
QOR_HOSTQT_API std::string const& WhyNoOpenGl();

} // namespace Qor::Chart::Host
