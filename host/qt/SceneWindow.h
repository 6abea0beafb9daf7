#pragma once

#include "host/qt/Export.h"
#include "host/qt/SceneView.h"

#include <QOpenGLWindow>

#include <functional>
#include <memory>

class QInputMethodQueryEvent;

namespace Qor::Chart::Host {

/// A window of its own that shows a scene, for programs without widgets: `SceneWidget` with the frame of a window. It needs
/// a `QGuiApplication` only.
class QOR_HOSTQT_API SceneWindow : public QOpenGLWindow {
public:
    explicit SceneWindow(QWindow* p_parent = nullptr);
    ~SceneWindow() override;

    SceneView& View() noexcept { return *_view; }

    /// Called once, when the window is closed or destroyed.
    void SetCloseCallback(std::function<void()> p_callback) { _closeCallback = std::move(p_callback); }

protected:
    bool event(QEvent* p_event) override;
    void resizeGL(int p_width, int p_height) override;
    void paintGL() override;

private:
    void Closed();
    bool Answer(QInputMethodQueryEvent& p_event) const;

    std::unique_ptr<SceneView> _view;
    std::function<void()> _closeCallback;
};

} // namespace Qor::Chart::Host
