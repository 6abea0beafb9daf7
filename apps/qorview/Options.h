#pragma once

#include "framework/types/Pos.h"
#include "framework/types/Size.h"
#include "host/Camera.h"
#include "host/Offscreen.h"
#include "render/context/ProjectionMode.h"

#include <QColor>

#include <optional>
#include <string>
#include <vector>

namespace Qor::Chart::QorView {

/// What the program was asked to do.
struct Options {
    std::vector<std::string> files;
    std::string png; ///< empty: no picture is written
    Types::Size size{1280, 800};
    int samples = Host::Offscreen::DefaultSamples;
    Host::Offscreen::Device device = Host::Offscreen::Device::OpenGl;
    Render::ProjectionMode projection = Render::ProjectionMode::Perspective;
    Host::Camera::UpAxis up = Host::Camera::UpAxis::Y;
    double azimuth = Host::Camera::DefaultAzimuth;
    double elevation = Host::Camera::DefaultElevation;
    QColor background{238, 242, 247};
    unsigned frames = 1;
    bool listFrames = false; ///< a number of frames was asked for
    bool spin = false;
    bool tree = false;
    bool bounds = false;
    bool statistics = false;
    bool json = false;
    std::optional<Types::Size> panes; ///< columns and rows
    /// Pixels of the picture, counted from its upper left corner as image viewers do.
    std::optional<Types::Pos> pick;
    std::optional<Types::Pos> hover;

    /// Whether nothing was asked for that is written or printed.
    bool OpensWindow() const noexcept {
        bool const prints = tree || json || listFrames || pick || hover;
        return png.empty() && !prints && device == Host::Offscreen::Device::OpenGl;
    }

    /// Reads the command line. Nothing when all was said already: help and version are written to standard output.
    /// @throws UsageError
    static std::optional<Options> Parse(int p_argc, char const* const* p_argv);
};

} // namespace Qor::Chart::QorView
