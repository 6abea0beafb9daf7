#pragma once

#include "host/qt/Export.h"
#include "host/qt/SceneView.h"

#include <QOpenGLWidget>

#include <memory>

namespace Qor::Chart::Host {

/// A widget that shows a scene and lets the user work in it:
///
///     QApplication application(argc, argv);
///     Host::SceneWidget widget;
///     widget.View().SetModel(model);
///     widget.show();
///     return application.exec();
///
/// A derived class may paint over the scene in its `paintGL`, after that of this class.
///
/// Each widget has a scene and resources of its own. It may be hidden, given another parent and resized to nothing; when it
/// is destroyed its scene goes with it, and the model stays with whoever holds it. Where there is no OpenGL its window
/// stays empty, and the view's error callback or the log gets one sentence that says so.
class QOR_HOSTQT_API SceneWidget : public QOpenGLWidget {
public:
    explicit SceneWidget(QWidget* p_parent = nullptr);
    ~SceneWidget() override;

    SceneView& View() noexcept { return *_view; }

    QVariant inputMethodQuery(::Qt::InputMethodQuery p_query) const override;

protected:
    bool event(QEvent* p_event) override;
    void resizeEvent(QResizeEvent* p_event) override;
    void initializeGL() override;
    void resizeGL(int p_width, int p_height) override;
    void paintGL() override;

private:
    void SayThereIsNoOpenGl();

    QSurfaceFormat _wanted; ///< as it was before the context was made
    QMetaObject::Connection _contextEnds;
    std::unique_ptr<SceneView> _view;
};

} // namespace Qor::Chart::Host
