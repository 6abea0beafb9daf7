#include "host/qt/SceneWidget.h"

#include "host/qt/SurfaceFormat.h"

#include <QEvent>
#include <QOpenGLContext>
#include <QResizeEvent>

namespace Qor::Chart::Host {

SceneWidget::SceneWidget(QWidget* p_parent) : QOpenGLWidget(p_parent) {
    setFormat(SceneSurfaceFormat());
    setMouseTracking(true);
    setFocusPolicy(::Qt::StrongFocus);
    setAttribute(::Qt::WA_AcceptTouchEvents);
    setAcceptDrops(true);
    _view = std::make_unique<SceneView>(
        [this] { update(); }, [this](bool p_takes) { setAttribute(::Qt::WA_InputMethodEnabled, p_takes); });
}

// What the scene holds on the device is freed in its context. Other windows have contexts of their own, so they go first.
SceneWidget::~SceneWidget() {
    disconnect(_contextEnds);
    _view->ClosePopOuts();
    if (isValid())
        makeCurrent();
    _view.reset();
    if (isValid())
        doneCurrent();
}

// The toolkit forgets the number of samples when it makes a context, and makes the next one without.
bool SceneWidget::event(QEvent* p_event) {
    if (p_event->type() == QEvent::Show && !WhyNoOpenGl().empty())
        SayThereIsNoOpenGl();
    bool const wasValid = isValid();
    if (!wasValid)
        _wanted = format();
    bool const isDone = (_view && _view->Handle(*p_event)) || QOpenGLWidget::event(p_event);
    if (wasValid && !isValid())
        setFormat(_wanted);
    return isDone;
}

QVariant SceneWidget::inputMethodQuery(::Qt::InputMethodQuery p_query) const {
    QVariant const answer = _view ? _view->Query(p_query) : QVariant();
    return answer.isValid() ? answer : QOpenGLWidget::inputMethodQuery(p_query);
}

// The toolkit crashes when it paints a window with such a widget in it and has no OpenGL for that.
void SceneWidget::SayThereIsNoOpenGl() {
    window()->setUpdatesEnabled(false);
    _view->Failed("The scene cannot be shown, because " + WhyNoOpenGl() + ".");
}

void SceneWidget::resizeEvent(QResizeEvent* p_event) {
    if (WhyNoOpenGl().empty())
        QOpenGLWidget::resizeEvent(p_event);
}

// The context ends when the widget goes to another window.
void SceneWidget::initializeGL() {
    disconnect(_contextEnds);
    _contextEnds = connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, [this] {
        makeCurrent();
        _view->ReleaseDevice();
        doneCurrent();
    });
}

void SceneWidget::resizeGL(int p_width, int p_height) {
    _view->Resize({p_width, p_height}, devicePixelRatioF());
}

void SceneWidget::paintGL() {
    _view->Resize({width(), height()}, devicePixelRatioF());
    _view->Paint();
}

} // namespace Qor::Chart::Host
