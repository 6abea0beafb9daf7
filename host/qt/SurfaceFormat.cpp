#include "host/qt/SurfaceFormat.h"

#include <QGuiApplication>
#include <QOffscreenSurface>
#include <QOpenGLContext>

namespace Qor::Chart::Host {

namespace {

std::string TryOpenGl() {
    QString const platform = QGuiApplication::platformName();
    std::string const windows = "windows on the platform \"" + platform.toStdString() + "\"";
    if (platform == "offscreen" || platform == "minimal") // whether or not there is OpenGL for anything else
        return windows + " show nothing";
    QOpenGLContext context;
    context.setFormat(SceneSurfaceFormat());
    if (!context.create())
        return windows + " have no OpenGL 3.3";
    QOffscreenSurface surface;
    surface.setFormat(context.format());
    surface.create();
    if (!context.makeCurrent(&surface))
        return windows + " cannot use OpenGL";
    QSurfaceFormat const format = context.format();
    context.doneCurrent();
    if (context.isOpenGLES() || format.version() < qMakePair(3, 3))
        return windows + " have OpenGL " + (context.isOpenGLES() ? "ES " : "") + std::to_string(format.majorVersion()) +
            "." + std::to_string(format.minorVersion()) + ", and scenes take OpenGL 3.3";
    return {};
}

} // namespace

QSurfaceFormat SceneSurfaceFormat() {
    constexpr int DepthBits = 24;
    constexpr int StencilBits = 8;
    constexpr int Samples = 4;
    QSurfaceFormat format;
    format.setVersion(3, 3);
    format.setProfile(QSurfaceFormat::CoreProfile);
    format.setDepthBufferSize(DepthBits);
    format.setStencilBufferSize(StencilBits);
    format.setSamples(Samples);
    return format;
}

std::string const& WhyNoOpenGl() {
    static std::string const why = TryOpenGl();
    return why;
}

} // namespace Qor::Chart::Host
