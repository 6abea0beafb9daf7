#pragma once

#include "framework/model/ModelNode.h"
#include "host/Camera.h"
#include "host/Export.h"

namespace Qor::Chart::Host {

/// The camera of a pane. Panes make their projection with the camera of whoever draws them; put one of these above each
/// pane that is to have a view of its own:
///
///     auto const view = Core::MakeNode<Host::CameraNode>();
///     view->Add(pane);
///     scene.Add(view);
///     driver.Update();
///     Host::Camera camera;
///     camera.Look(Host::Camera::View::Top);
///     camera.Fit(boxOfThePane, viewportOfThePane);
///     view->SetCamera(camera);
///
/// It serves that one pane: it is fitted to what the pane shows. Panes further down are seen with it too, and have to do
/// with where it looks.
///
/// Whether the picture is a perspective is the pane's own property; give the camera the same mode before it is fitted.
/// Every `Scene` shows such nodes.
class QOR_HOST_API CameraNode : public Model::ModelNode {
public:
    CameraNode() = default;

    Camera const& GetCamera() const noexcept { return _camera; }
    /// Shows what is below from there with the next frame.
    void SetCamera(Camera const& p_camera) {
        _camera = p_camera;
        Touch();
    }

protected:
    ~CameraNode() override;

    Core::Ptr<ModelNode> NewOfSameClass() const override;
    void CopyTo(ModelNode& p_clone) const override;

private:
    Camera _camera;
};

} // namespace Qor::Chart::Host
