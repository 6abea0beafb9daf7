#include "host/Navigator.h"

#include "framework/core/Ptr.h"
#include "framework/model/Pane.h"
#include "host/Scene.h"
#include "render/events/EventInformation.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace Qor::Chart::Host {

namespace {

using Vector = Types::Vector3_Base<double>;

constexpr std::uint32_t SecondaryButton = 1;
constexpr std::uint32_t MiddleButton = 2;
/// A drag along the whole height of a pane zooms by this factor.
constexpr double ZoomPerHeight = 16.0;

constexpr int KeyFit = 'F';

constexpr std::array Directions{Camera::View::Front, Camera::View::Back, Camera::View::Left, Camera::View::Right,
    Camera::View::Top, Camera::View::Bottom, Camera::View::Isometric};

/// The middle of a pixel.
Camera::Pixel Middle(Types::Pos const& p_pixel) {
    return {p_pixel.x + 0.5, p_pixel.y + 0.5};
}

/// How a pane projects; nothing for the window itself.
std::optional<Render::ProjectionMode> ModeOf(PaneView const& p_view) {
    Core::Ptr<Render::Vis> const vis = p_view.pane.Lock();
    auto const pane = vis ? Core::DynamicCast<Model::Pane>(vis->SourceModel().Lock()) : nullptr;
    if (!pane)
        return std::nullopt;
    bool const isPerspective = pane->GetProjectionMode() == Model::Pane::ProjectionMode::Perspective;
    return isPerspective ? Render::ProjectionMode::Perspective : Render::ProjectionMode::Orthographic;
}

/// A callback that a navigator has set.
template <auto Member>
struct Call {
    Navigator* navigator;

    template <class... Arguments>
    void operator()(Arguments const&... p_arguments) const {
        (navigator->*Member)(p_arguments...);
    }
};

/// Leaves alone what the program or another navigator has put there since.
template <auto Member, class Callback>
void Clear(Callback& p_callback, Navigator const* p_navigator) {
    auto const* const own = p_callback.template target<Call<Member>>();
    if (own && own->navigator == p_navigator)
        p_callback = {};
}

} // namespace

Navigator::Navigator(Scene& p_scene, InputDispatcher& p_input, Camera& p_camera)
    : _scene(p_scene), _input(p_input), _camera(p_camera) {
    InputCallbacks& callbacks = p_input.Callbacks();
    callbacks.drag = Call<&Navigator::Drag>{this};
    callbacks.scroll = Call<&Navigator::Scroll>{this};
    callbacks.keyPress = Call<&Navigator::PressKey>{this};
}

Navigator::~Navigator() {
    InputCallbacks& callbacks = _input.Callbacks();
    Clear<&Navigator::Drag>(callbacks.drag, this);
    Clear<&Navigator::Scroll>(callbacks.scroll, this);
    Clear<&Navigator::PressKey>(callbacks.keyPress, this);
}

void Navigator::SetWindow(Types::Viewport<0> const& p_window) {
    _window = p_window;
    _input.SetView(_camera, _window);
}

PaneView Navigator::ViewAt(Types::Pos const& p_pixel) const {
    return PaneFinder::At(_scene.Visual(), _window, p_pixel);
}

Camera Navigator::CameraOf(PaneView const& p_view) const {
    Core::Ptr<CameraNode> const node = p_view.camera.Lock();
    Camera camera = node ? node->GetCamera() : _camera;
    if (std::optional<Render::ProjectionMode> const mode = ModeOf(p_view))
        camera.SetProjectionMode(*mode);
    return camera;
}

void Navigator::Show(PaneView const& p_view, Camera const& p_camera) {
    if (Core::Ptr<CameraNode> const node = p_view.camera.Lock()) {
        node->SetCamera(p_camera);
    } else {
        Render::ProjectionMode const ofWindow = _camera.GetProjectionMode();
        _camera = p_camera;
        _camera.SetProjectionMode(ofWindow);
    }
    _input.SetView(_camera, _window);
    _input.RequestUpdate();
}

void Navigator::Fit(PaneView const& p_view) {
    Core::Ptr<Render::Vis> const pane = p_view.pane.Lock();
    Render::Vis const& shown = pane ? *pane : *_scene.Visual();
    Camera camera = CameraOf(p_view);
    camera.Fit(shown.BoundingBox(), p_view.rectangle, Scene::PartsOf(shown));
    Show(p_view, camera);
}

void Navigator::FitAll() {
    Fit({{}, {}, _window});
    std::vector<Core::WeakPtr<CameraNode>> fitted; // to the outermost of the panes that they are for
    for (PaneView const& view : PaneFinder::All(_scene.Visual(), _window)) {
        if (view.camera.Expired() || std::ranges::find(fitted, view.camera) != fitted.end())
            continue;
        fitted.push_back(view.camera);
        Fit(view);
    }
}

void Navigator::Look(PaneView const& p_view, Camera::View p_direction) {
    Camera camera = CameraOf(p_view);
    camera.Look(p_direction);
    Show(p_view, camera);
}

std::optional<Vector> Navigator::HitIn(PaneView const& p_view) const {
    for (Render::HitRecord const& hit : _input.Hits()) {
        bool const isScene = hit.node != hit.hitRoot; // panes are hit themselves by their decoration
        if (isScene && hit.hitRoot == p_view.pane)
            return hit.global;
    }
    return {};
}

void Navigator::Drag(InputEvent const& p_event, InputCallbacks::DragPhase p_phase) {
    using Phase = InputCallbacks::DragPhase;
    switch (p_phase) {
    case Phase::Begin: {
        bool const isShifted = (p_event.modifiers & Render::EventInformation::ModifierShift) != 0;
        DragState drag;
        drag.view = ViewAt(p_event.pressed);
        drag.before = CameraOf(drag.view);
        drag.pressed = p_event.pressed;
        drag.last = p_event.pressed;
        drag.hit = HitIn(drag.view);
        if (p_event.button == MiddleButton || isShifted)
            drag.gesture = Gesture::Pan;
        else if (p_event.button == SecondaryButton)
            drag.gesture = Gesture::Zoom;
        _drag = drag;
        break;
    }
    case Phase::Move:
    case Phase::End:
        MoveTo(p_event.position);
        if (p_phase == Phase::End)
            _drag.reset();
        break;
    case Phase::Cancel:
        if (_drag)
            Show(_drag->view, _drag->before);
        _drag.reset();
        break;
    }
}

void Navigator::MoveTo(Types::Pos const& p_pixel) {
    if (!_drag || _drag->last == p_pixel)
        return;
    Types::Viewport<0> const& rectangle = _drag->view.rectangle;
    Camera camera = CameraOf(_drag->view);
    switch (_drag->gesture) {
    case Gesture::Orbit:
        camera.Orbit(Middle(_drag->last), Middle(p_pixel), rectangle);
        break;
    case Gesture::Pan:
        camera.Pan(Middle(_drag->last), Middle(p_pixel), rectangle, _drag->hit);
        break;
    case Gesture::Zoom: {
        double const part = (p_pixel.y - _drag->last.y) / std::max(1.0, static_cast<double>(rectangle.height));
        camera.ZoomAbout(std::pow(ZoomPerHeight, part), Middle(_drag->pressed), rectangle, _drag->hit);
        break;
    }
    }
    _drag->last = p_pixel;
    Show(_drag->view, camera);
}

void Navigator::Scroll(InputEvent const& p_event) {
    PaneView const view = ViewAt(p_event.position);
    Camera camera = CameraOf(view);
    camera.ZoomAbout(std::pow(ZoomPerNotch, p_event.scroll), Middle(p_event.position), view.rectangle, HitIn(view));
    Show(view, camera);
}

bool Navigator::PressKey(InputEvent const& p_event) {
    if (p_event.modifiers != 0)
        return false;
    if (p_event.key == KeyFit) {
        Fit(ViewAt(p_event.position));
        return true;
    }
    int const number = p_event.key - '1';
    if (number < 0 || number >= static_cast<int>(Directions.size()))
        return false;
    Look(ViewAt(p_event.position), Directions[static_cast<std::size_t>(number)]);
    return true;
}

} // namespace Qor::Chart::Host
