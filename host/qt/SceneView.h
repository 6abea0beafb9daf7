#pragma once

#include "framework/core/Ptr.h"
#include "framework/model/ModelNode.h"
#include "framework/types/Size.h"
#include "host/Camera.h"
#include "host/ChangeListener.h"
#include "host/FrameDriver.h"
#include "host/InputDispatcher.h"
#include "host/Navigator.h"
#include "host/Scene.h"
#include "host/WindowPixels.h"
#include "host/qt/Callback.h"
#include "host/qt/Export.h"
#include "host/qt/PopOutWindows.h"
#include "host/qt/TextInput.h"

#include <QPointF>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

class QDropEvent;
class QEvent;
class QInputMethodEvent;
class QKeyEvent;
class QMouseEvent;
class QTouchEvent;
class QWheelEvent;

namespace Qor::Chart::Ogl {
class OpenGlBackend;
}

namespace Qor::Chart::Host {

/// What the widget and the window have in common: a scene with its camera, the way from the toolkit's events to the scene's
/// dispatcher, and the frames. It schedules a frame when the model or the tree changed or something asked for one, and none
/// otherwise: an idle view costs nothing.
class QOR_HOSTQT_API SceneView {
public:
    /// @param p_schedule  makes the toolkit call for a frame soon
    /// @param p_takeText  called when an input method is to compose text for the surface from now on, or no longer
    explicit SceneView(std::function<void()> p_schedule, std::function<void(bool)> p_takeText = {});
    /// What the scene holds on the device is freed if its context is current.
    ~SceneView();
    SceneView(SceneView const&) = delete;
    SceneView& operator=(SceneView const&) = delete;

    Scene& GetScene() noexcept { return _scene; }
    Camera& GetCamera() noexcept { return _camera; }
    FrameDriver& Driver() noexcept { return _driver; }
    InputDispatcher& Input() noexcept { return _input; }
    Navigator& GetNavigator() noexcept { return _navigator; }
    WindowPixels const& Pixels() const noexcept { return _pixels; }

    /// Shows another model and fits the cameras to it with the next frame.
    /// @throws HostError as `Scene::SetModel` does
    void SetModel(Core::Ptr<Model::ModelNode> p_root);
    /// Fits all cameras with the next frame that has a size.
    void FitAll();
    /// Draws again after the program changed the camera, the schema or the capabilities.
    void Refresh();
    /// The pane that the pointer was in last, or that in the middle.
    PaneView ActiveView() const;

    /// The windows that content of panes has been taken into.
    PopOutWindows const& PopOuts() const noexcept { return _popOuts; }
    /// Closes them all; what they show goes back to its panes.
    void ClosePopOuts() { _popOuts.Close(); }

    /// Called with the paths of files that are dropped on the view where no node takes them; empty refuses files.
    void SetFilesCallback(std::function<void(std::vector<std::string> const&)> p_callback) {
        _filesCallback = std::move(p_callback);
    }
    /// Called with each key that neither a node nor the navigator wants; true takes it.
    void SetKeyCallback(std::function<bool(InputEvent const&)> p_callback) { _keyCallback = std::move(p_callback); }
    /// Called after each frame; free to change the model.
    void SetFrameCallback(std::function<void()> p_callback) { _frameCallback = std::move(p_callback); }
    /// Called with one sentence when frames cannot be drawn, or another callback throws; without it, or when it throws
    /// itself, the sentence goes to the log.
    void SetErrorCallback(std::function<void(std::string const&)> p_callback) {
        _errorCallback = std::move(p_callback);
    }
    /// Called with each window for content of a pane before it shows. It has the content by then, this view's schema,
    /// and the camera of the pane.
    void SetPopOutCallback(std::function<void(SceneView&)> p_callback) { _popOutCallback = std::move(p_callback); }

    /// \name Called by the surface
    /// @{
    /// @param p_size   of the surface in logical pixels
    /// @param p_ratio  framebuffer pixels per logical pixel
    void Resize(Types::Size const& p_size, double p_ratio);
    /// Draws a frame into the framebuffer that is bound. An empty surface draws nothing.
    void Paint();
    /// Takes an event of the surface; true when there is nothing left to do about it.
    bool Handle(QEvent& p_event);
    /// What an input method asks of the surface; invalid for what only the surface knows.
    QVariant Query(::Qt::InputMethodQuery p_query) const { return _textInput.Query(p_query); }
    /// Frees what the scene holds on the device, whose context is current and about to end. The next frame sends
    /// everything again.
    void ReleaseDevice();
    /// Something cannot be done: one sentence, told once until there is another or a frame went well.
    void Failed(std::string const& p_sentence);
    /// @}

private:
    SceneView(std::function<void()> p_schedule, std::function<void(bool)> p_takeText,
        std::unique_ptr<Ogl::OpenGlBackend> p_backend);

    void Mouse(QMouseEvent& p_event);
    bool Touch(QTouchEvent& p_event);
    void Wheel(QWheelEvent& p_event);
    bool Key(QKeyEvent& p_event);
    /// A key that may be a shortcut of the program's: the node that has the focus goes first.
    bool OverrideShortcut(QKeyEvent& p_event);
    void Compose(QInputMethodEvent& p_event);
    void DragOver(QDropEvent& p_event);
    void Drop(QDropEvent& p_event);
    bool TakesFiles(QDropEvent const& p_event) const;
    void Pinch(Types::Pos const& p_position, double p_factor);
    Types::Pos ToPixel(QPointF const& p_position) const;
    /// Reports what fails; false when it does.
    /// @{
    bool DrawGuarded();
    bool Guarded(std::string const& p_task, std::function<void()> const& p_callback);
    /// @}
    void UpdateAndDraw();
    void ScheduleFrameIn(int p_milliseconds);
    PaneView PaneToPopOut() const;
    void SetUpPopOut(SceneView& p_view);

    std::function<void()> _schedule;
    Ogl::OpenGlBackend* _backend; ///< of the scene
    Scene _scene;
    Camera _camera;
    FrameDriver _driver;
    WindowPixels _pixels;
    TextInput _textInput; ///< outlives the dispatcher, which tells who has the focus that it ends
    InputDispatcher _input;
    Navigator _navigator;
    PopOutWindows _popOuts;
    QTimer _frameTimer;
    QTimer _inputTimer;
    Core::Ptr<ChangeListener> _listener;
    bool _isFitWanted = true;
    bool _isInFrame = false;
    bool _isKeyTaken = false;
    std::map<std::pair<std::uint32_t, int>, int> _pressedKeys; ///< by their places, as their presses were understood
    std::optional<int> _overriddenKey; ///< has been used already when its press comes
    double _fingerDistance = 0; ///< between two fingers, in logical pixels; 0 while there are fewer
    Types::Pos _pointer{-1, -1}; ///< where it was last; outside at first
    std::string _lastFailure;
    Callback<void(std::vector<std::string> const&)> _filesCallback;
    Callback<bool(InputEvent const&)> _keyCallback;
    Callback<void()> _frameCallback;
    Callback<void(std::string const&)> _errorCallback;
    Callback<void(SceneView&)> _popOutCallback;
};

} // namespace Qor::Chart::Host
