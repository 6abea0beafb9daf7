#include "host/qt/SceneWindow.h"

#include "host/qt/SurfaceFormat.h"

#include <QEvent>
#include <QInputMethodQueryEvent>

#include <utility>

namespace Qor::Chart::Host {

namespace {

/// The events at which the toolkit makes a context, and ends the program when there is none.
bool NeedsOpenGl(QEvent::Type p_type) {
    return p_type == QEvent::Expose || p_type == QEvent::Paint || p_type == QEvent::Resize ||
        p_type == QEvent::UpdateRequest;
}

} // namespace

SceneWindow::SceneWindow(QWindow* p_parent) : QOpenGLWindow(NoPartialUpdate, p_parent) {
    setFormat(SceneSurfaceFormat());
    _view = std::make_unique<SceneView>([this] { update(); });
}

// What the scene holds on the device is freed in its context. Other windows have contexts of their own, so they go first.
SceneWindow::~SceneWindow() {
    _view->ClosePopOuts();
    if (isValid())
        makeCurrent();
    _view.reset();
    if (isValid())
        doneCurrent();
    Closed();
}

void SceneWindow::Closed() {
    if (auto const callback = std::exchange(_closeCallback, {}))
        callback();
}

/// A window has no other way to be asked.
bool SceneWindow::Answer(QInputMethodQueryEvent& p_event) const {
    for (::Qt::InputMethodQuery const query : {::Qt::ImEnabled, ::Qt::ImCursorRectangle}) {
        if ((p_event.queries() & query) != 0)
            p_event.setValue(query, _view->Query(query));
    }
    p_event.accept();
    return true;
}

bool SceneWindow::event(QEvent* p_event) {
    if (_view && p_event->type() == QEvent::InputMethodQuery)
        return Answer(static_cast<QInputMethodQueryEvent&>(*p_event));
    if (p_event->type() == QEvent::Close)
        Closed();
    if (NeedsOpenGl(p_event->type()) && !WhyNoOpenGl().empty()) {
        if (_view)
            _view->Failed("The scene cannot be shown, because " + WhyNoOpenGl() + ".");
        return true;
    }
    return (_view && _view->Handle(*p_event)) || QOpenGLWindow::event(p_event);
}

void SceneWindow::resizeGL(int p_width, int p_height) {
    _view->Resize({p_width, p_height}, devicePixelRatio());
}

void SceneWindow::paintGL() {
    _view->Resize({width(), height()}, devicePixelRatio());
    _view->Paint();
}

} // namespace Qor::Chart::Host
