#pragma once

#include "framework/core/WeakPtr.h"
#include "framework/types/BoundingBox.h"
#include "framework/types/Vector3.h"
#include "framework/types/Viewport.h"
#include "host/Camera.h"
#include "host/Export.h"
#include "host/InputDispatcher.h"
#include "host/PaneFinder.h"

#include <optional>

namespace Qor::Chart::Host {

class Scene;

/// Lets the user look around: it turns drags, wheel turns and keys that no node wanted into movements of a camera, that of
/// the pane under the pointer where it has one of its own, else the host's.
///
/// | the user | the camera |
/// |---|---|
/// | drags with the primary button | orbits |
/// | drags with the middle button, or with Shift held | pans: what is under the pointer goes along |
/// | drags with the secondary button, up or down | zooms about the place of the press |
/// | turns the wheel | zooms about the pointer |
/// | presses F | fits what the pane shows |
/// | presses 1 to 7 | looks from the front, back, left, right, top, bottom, from a corner |
///
/// Escape takes a drag back. The scene, the dispatcher and the camera must outlive it.
class QOR_HOST_API Navigator {
public:
    /// The zoom of one notch of the wheel.
    static constexpr double ZoomPerNotch = 1.2;

    /// Takes the dispatcher's callbacks for drags, the wheel and keys, until its end or until they are set anew.
    Navigator(Scene& p_scene, InputDispatcher& p_input, Camera& p_camera);
    ~Navigator();
    Navigator(Navigator const&) = delete;
    Navigator& operator=(Navigator const&) = delete;

    /// The rectangle of the window that the scene is drawn into, in framebuffer pixels; tells the dispatcher as well.
    void SetWindow(Types::Viewport<0> const& p_window);

    /// Fits the camera of a pane to what the pane shows; of the window itself to the whole scene. The tree must be up to
    /// date.
    void Fit(PaneView const& p_view);
    /// Fits all cameras.
    void FitAll();
    void Look(PaneView const& p_view, Camera::View p_direction);

    /// What is seen at a pixel of the window.
    PaneView ViewAt(Types::Pos const& p_pixel) const;
    /// The pane's own camera, or the host's, with the projection of the pane.
    Camera CameraOf(PaneView const& p_view) const;

    /// \name What the dispatcher hands on
    /// For a program that sets callbacks of its own and calls these from there.
    /// @{
    void Drag(InputEvent const& p_event, InputCallbacks::DragPhase p_phase);
    void Scroll(InputEvent const& p_event);
    /// False for a key that means nothing here.
    bool PressKey(InputEvent const& p_event);
    /// @}

private:
    enum class Gesture { Orbit, Pan, Zoom };

    /// From the beginning of a drag to its end.
    struct DragState {
        PaneView view;
        Gesture gesture = Gesture::Orbit;
        Camera before;
        Types::Pos pressed;
        Types::Pos last;
        std::optional<Types::Vector3_Base<double>> hit; ///< what was under the place of the press
    };

    void Show(PaneView const& p_view, Camera const& p_camera);
    /// The place in the scene that is hit best at the pointer, if it lies in that pane.
    std::optional<Types::Vector3_Base<double>> HitIn(PaneView const& p_view) const;
    void MoveTo(Types::Pos const& p_pixel);

    Scene& _scene;
    InputDispatcher& _input;
    Camera& _camera;
    Types::Viewport<0> _window;
    std::optional<DragState> _drag;
};

} // namespace Qor::Chart::Host
