#pragma once

#include "framework/types/Matrix4.h"
#include "framework/types/Viewport.h"
#include "host/Camera.h"
#include "host/Export.h"
#include "host/FrameRate.h"
#include "host/View.h"
#include "render/context/DrawContext.h"
#include "render/context/FrameStatistics.h"
#include "render/loops/RenderLoop.h"

#include <array>

namespace Qor::Chart::Host {

class Scene;

/// Runs the frames of a scene: it updates the visual tree, gives new nodes their paths, delivers the events that were
/// raised meanwhile, and draws base draw, base highlight, overlay draw and overlay highlight. It counts and measures
/// each stage, and hands the figures of its last frame to the nodes with the draw context. Nothing that a node does
/// stops a frame; it is reported to the scene's dispatcher.
///
///     Host::FrameDriver driver(scene);
///     driver.Update();
///     camera.Fit(scene.Bounds(), viewport);
///     driver.Draw(camera, viewport);
///
/// The OpenGL context and the target to draw into must be current for `Draw`. The scene must outlive the driver.
class QOR_HOST_API FrameDriver {
public:
    explicit FrameDriver(Scene& p_scene);

    /// Brings the visual tree up to date, with what is selected in it. Events are delivered afterwards; what their
    /// listeners change in the model is taken up by the next update.
    /// @throws HostError when the visual tree contains itself or is too deep
    void Update();

    /// Clears the target with the schema's clear colour and draws all passes. An empty viewport draws nothing.
    /// @param p_viewport  the rectangle to draw into, in pixels of the target, origin in the lower left corner
    /// @throws HostError when the visual tree is too deep
    void Draw(Camera const& p_camera, Types::Viewport<0> const& p_viewport);

    /// Both.
    void Frame(Camera const& p_camera, Types::Viewport<0> const& p_viewport) {
        Update();
        Draw(p_camera, p_viewport);
    }

    /// Outlines the bounding box of every node from now on.
    void SetShowBounds(bool p_show) noexcept { _showBounds = p_show; }

    /// What the last update and the last draw did.
    Render::FrameStatistics const& Statistics() const noexcept { return _statistics; }

    /// The matrix that took the scene to normalised device coordinates in the last draw.
    Types::Matrix4 const& SceneToDevice() const noexcept { return _view.SceneToDevice(); }

private:
    void UpdateTree();
    void DrawPasses(Camera const& p_camera, Types::Viewport<0> const& p_viewport);
    void ClearTarget();
    void RunPass(Render::FrameStatistics::PassName p_pass, Render::DrawContext& p_context);

    Scene& _scene;
    View _view;
    std::array<Render::RenderLoop, Render::FrameStatistics::PassCount> _loops;
    Render::FrameStatistics _statistics;
    Render::FrameStatistics _lastFrame; ///< as the nodes see it
    FrameRate _rate;
    bool _showBounds = false;
};

} // namespace Qor::Chart::Host
