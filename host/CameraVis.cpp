#include "host/CameraVis.h"

#include "render/context/DrawContext.h"
#include "render/core/PaneMarker.h"

namespace Qor::Chart::Host {

namespace {

/// The box that the panes below make their projection for; they do not make one for a single point.
Camera::Box BoxOfPanes(Render::Vis const& p_node) {
    Camera::Box box;
    for (Render::ActiveIterator child = p_node.ActiveBegin(); child != p_node.ActiveEnd(); ++child) {
        if ((*child)->BoundingBox().IsDefined())
            box.Add((*child)->BoundingBox());
    }
    if (box.IsDefined() && box.Min() == box.Max())
        box.Grow(1);
    return box;
}

} // namespace

CameraVis::CameraVis(Core::Ptr<Model::ModelNode> const& p_model) : _model(*this, "model") {
    _model.Attach(p_model);
    SetLayer(Render::PaneMarker::PaneLayer);
    RegisterCB(Render::HandledSetup);
}

Core::WeakPtr<Model::ModelNode> CameraVis::SourceModel() const {
    return _model.Get();
}

void CameraVis::DoSetup(Render::DrawContext& p_context, Utility::Scoped<Ogl::Agl>&) {
    if (CameraNode const* const model = _model.Peek())
        p_context.Camera().Set(model->GetCamera().Matrix(BoxOfPanes(*this)));
}

} // namespace Qor::Chart::Host
