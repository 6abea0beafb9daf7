#include "host/Offscreen.h"

#include "framework/ogl/Context.h"
#include "framework/ogl/OffscreenTarget.h"
#include "framework/ogl/OpenGlBackend.h"
#include "framework/ogl/RecorderBackend.h"
#include "framework/utility/Logger.h"
#include "host/HostError.h"

#include <algorithm>
#include <exception>
#include <string>
#include <utility>

namespace Qor::Chart::Host {

namespace {

/// How often the scene is updated before a picture, when listeners of its events go on changing it.
constexpr int MaxUpdates = 8;

void CheckSize(Types::Size const& p_size) {
    std::string const text = std::to_string(p_size.width) + "x" + std::to_string(p_size.height);
    if (p_size.IsEmpty())
        throw HostError("A picture of " + text + " pixels has nothing in it; give a width and a height of at least 1.");
    if (p_size.width > Offscreen::MaxSide || p_size.height > Offscreen::MaxSide)
        throw HostError("A picture of " + text + " pixels is too large; give at most " +
            std::to_string(Offscreen::MaxSide) + " pixels a side.");
    if (static_cast<long>(p_size.width) * p_size.height > Offscreen::MaxPixels)
        throw HostError("A picture of " + text + " pixels is too large; give at most " +
            std::to_string(Offscreen::MaxPixels / (1024L * 1024)) + " million pixels, such as 8192x8192.");
}

/// Samples cost as much memory as pixels: a large picture gets fewer, as many as fit into the memory of the largest one.
int AffordableSamples(Types::Size const& p_size, int p_samples) {
    long const affordable = Offscreen::MaxPixels / (static_cast<long>(p_size.width) * p_size.height);
    return static_cast<int>(std::min<long>(std::max(p_samples, 0), affordable));
}

} // namespace

Offscreen::Offscreen(Types::Size const& p_size, int p_samples, Device p_device) : _size(p_size) {
    CheckSize(p_size);
    std::unique_ptr<Ogl::Backend> backend;
    if (p_device == Device::OpenGl) {
        _context = std::make_unique<Ogl::Context>();
        _target =
            std::make_unique<Ogl::OffscreenTarget>(p_size.width, p_size.height, AffordableSamples(p_size, p_samples));
        backend = std::make_unique<Ogl::OpenGlBackend>();
    } else {
        backend = std::make_unique<Ogl::RecorderBackend>(Ogl::RecorderBackend::Keep::Counters);
    }
    _scene = std::make_unique<Scene>(std::move(backend));
    _scene->Capabilities().Suppress(Render::SceneCapabilities::SuppressionOffscreen);
    _driver = std::make_unique<FrameDriver>(*_scene);
}

// What the scene and the target hold on the device is freed in their context.
Offscreen::~Offscreen() {
    try {
        MakeCurrent();
    } catch (std::exception const& error) {
        Utility::GetLogger().warning(error.what());
    }
}

void Offscreen::MakeCurrent() {
    if (_context)
        _context->MakeCurrent();
}

Types::Viewport<0> Offscreen::Viewport() const noexcept {
    return {0, 0, static_cast<float>(_size.width), static_cast<float>(_size.height)};
}

void Offscreen::UpdateAll() {
    _driver->Update();
    for (int round = 1; round < MaxUpdates && _scene->Dispatcher().UpdateRequested(); ++round)
        _driver->Update();
    if (_scene->Dispatcher().UpdateRequested())
        Utility::GetLogger().warning(
            "The listeners of this scene ask for another update after each one; the picture shows the last of " +
            std::to_string(MaxUpdates) + ". See that they change the model only when something changed for them.");
}

void Offscreen::Fit() {
    MakeCurrent();
    UpdateAll();
    _camera.Fit(_scene->Bounds(), Viewport(), _scene->Parts());
    _fitted = true;
}

void Offscreen::Frame() {
    MakeCurrent();
    if (_fitted)
        UpdateAll();
    else
        Fit();
    if (!_target) {
        _driver->Draw(_camera, Viewport());
        return;
    }
    _target->Bind();
    try {
        _driver->Draw(_camera, Viewport());
    } catch (...) {
        _target->Release();
        throw;
    }
    _target->Release();
}

QImage Offscreen::Read() {
    MakeCurrent();
    return _target ? _target->Read() : QImage();
}

std::string Offscreen::DeviceName() const {
    return _context ? _context->Description() : "recorder (counts only)";
}

} // namespace Qor::Chart::Host
