#pragma once

#include "framework/types/Size.h"
#include "framework/types/Viewport.h"
#include "host/Camera.h"
#include "host/Export.h"
#include "host/FrameDriver.h"
#include "host/Scene.h"

#include <QImage>

#include <memory>
#include <string>

namespace Qor::Chart::Ogl {
class Context;
class OffscreenTarget;
} // namespace Qor::Chart::Ogl

namespace Qor::Chart::Host {

/// Draws a scene into a picture in memory, with no display and no window system.
///
///     Host::Offscreen picture({1280, 800});
///     picture.GetScene().Add(model);
///     picture.Render().save("out.png");
///
/// The camera fits the scene when the first picture is rendered; choose its direction before. The OpenGL context is the
/// picture's own; it is made current by every operation that needs it and stays current.
class QOR_HOST_API Offscreen {
public:
    static constexpr int DefaultSamples = 4;
    /// The longest side of a picture, in pixels, and the most pixels that it may have.
    static constexpr int MaxSide = 16384;
    static constexpr long MaxPixels = 64L * 1024 * 1024;

    /// What carries out the drawing.
    enum class Device {
        OpenGl, ///< OpenGL through EGL
        Recorder, ///< nothing: what would be drawn is only counted, and pictures are null; needs no OpenGL
    };

    /// @param p_size     in pixels
    /// @param p_samples  samples a pixel to smooth edges with, 0 for none; fewer on a device that has fewer, and where
    ///                   a large picture would take too much memory
    /// @throws HostError for a size that is empty or beyond the limits
    /// @throws Ogl::ContextError when the machine has no OpenGL 3.3 through EGL, or the device has no such target
    explicit Offscreen(Types::Size const& p_size, int p_samples = DefaultSamples, Device p_device = Device::OpenGl);
    ~Offscreen();
    Offscreen(Offscreen const&) = delete;
    Offscreen& operator=(Offscreen const&) = delete;

    Scene& GetScene() noexcept { return *_scene; }
    Camera& GetCamera() noexcept { return _camera; }
    FrameDriver& Driver() noexcept { return *_driver; }
    Types::Size const& Size() const noexcept { return _size; }
    /// The whole picture, in pixels.
    Types::Viewport<0> Viewport() const noexcept;

    /// Updates the scene until no listener asks for more, and fits the camera to it.
    void Fit();

    /// Updates the scene, draws it and gives the picture, top row first.
    /// @throws HostError as the frame driver does
    QImage Render() {
        Frame();
        return Read();
    }
    /// Updates and draws alone.
    void Frame();
    /// The picture as it was drawn last.
    QImage Read();

    /// Driver and device, for messages.
    std::string DeviceName() const;

private:
    void MakeCurrent();
    void UpdateAll();

    Types::Size _size;
    std::unique_ptr<Ogl::Context> _context; ///< null for the recorder, as the target
    std::unique_ptr<Ogl::OffscreenTarget> _target;
    std::unique_ptr<Scene> _scene;
    std::unique_ptr<FrameDriver> _driver;
    Camera _camera;
    bool _fitted = false;
};

} // namespace Qor::Chart::Host
