#pragma once

#include "framework/types/Matrix4.h"
#include "framework/types/Viewport.h"
#include "host/Camera.h"
#include "render/context/DrawContext.h"

namespace Qor::Chart::Host {

class Scene;

/// How a scene is looked at in a window, as every traversal that draws or picks starts with it: viewport, camera,
/// projection, lights, and the state that a scene is drawn in at first. Nothing here needs an OpenGL context. The scene
/// must outlive it.
class View {
public:
    explicit View(Scene& p_scene) noexcept : _scene(p_scene) {}

    /// Writes the view to a root context and to the graphics. The caller restores the attributes of the graphics later.
    void Prepare(Camera const& p_camera, Types::Viewport<0> const& p_window, Render::DrawContext& p_context);

    /// Loads viewport and matrices of the context into the graphics, for one traversal.
    void Load(Render::DrawContext const& p_context) const;

    /// The matrix that took the scene to normalised device coordinates when the view was last prepared.
    Types::Matrix4 const& SceneToDevice() const noexcept { return _projection; }

private:
    void SetUpProjection(Camera const& p_camera, Types::Viewport<0> const& p_window, Render::DrawContext& p_context);
    void SetUpDefaults() const;
    void SetUpLights(Render::DrawContext& p_context);

    Scene& _scene;
    Types::Matrix4 _projection;
    bool _hasReportedLights = false;
};

} // namespace Qor::Chart::Host
