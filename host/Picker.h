#pragma once

#include "framework/types/Viewport.h"
#include "host/Camera.h"
#include "host/Export.h"
#include "host/View.h"
#include "render/context/PickPoint.h"
#include "render/loops/Layer.h"
#include "render/pick/BoxSelection.h"
#include "render/pick/HitRecord.h"

#include <vector>

namespace Qor::Chart::Host {

class Scene;

/// Says what of a scene lies under a point or in a rectangle of the picture. It looks at the visual tree as the last
/// update left it, through the same view as the frame driver, and draws nothing: no frame need be in progress, and no
/// OpenGL context current. `WindowPixels` makes its points from what a window toolkit gives.
///
///     Host::Picker picker(scene);
///     for (Render::HitRecord const& hit : picker.Pick(camera, window, {{200, 150}, {2, 2}}))
///         std::cout << hit << '\n';
///
/// The scene must outlive the picker.
class QOR_HOST_API Picker {
public:
    explicit Picker(Scene& p_scene);

    /// The hits at a point, best first; none when the window is empty or the point lies outside it.
    /// @param p_window  the rectangle that the scene is drawn into, in framebuffer pixels, origin in the lower left corner
    /// @param p_point   in the same pixels
    /// @param p_layers  the layers to look at
    /// @throws HostError when the visual tree is too deep
    std::vector<Render::HitRecord> Pick(Camera const& p_camera, Types::Viewport<0> const& p_window,
        Render::PickPoint const& p_point, Render::Layer p_layers = Render::LayerBoth);

    /// The hits in a rectangle, best first, hidden ones included.
    /// @throws HostError when the visual tree is too deep
    std::vector<Render::HitRecord> Pick(
        Camera const& p_camera, Types::Viewport<0> const& p_window, Render::BoxSelection const& p_box);

    /// Nodes that the last pick entered, and those of them that were asked whether they are hit.
    unsigned Visited() const noexcept { return _visited; }
    unsigned Tested() const noexcept { return _tested; }

private:
    template <class Loop>
    std::vector<Render::HitRecord> Run(Camera const& p_camera, Types::Viewport<0> const& p_window, Loop const& p_loop);

    Scene& _scene;
    View _view;
    unsigned _visited = 0;
    unsigned _tested = 0;
};

} // namespace Qor::Chart::Host
