#pragma once

#include "framework/core/Reference.h"
#include "host/CameraNode.h"
#include "render/core/SelectsBelow.h"
#include "render/core/Vis.h"

namespace Qor::Chart::Host {

/// The visual node of a camera: it hands the camera down to the panes below it and draws nothing.
class CameraVis : public Render::Vis, public Render::SelectsBelow {
public:
    explicit CameraVis(Core::Ptr<Model::ModelNode> const& p_model);

    Core::WeakPtr<Model::ModelNode> SourceModel() const override;

protected:
    ~CameraVis() override = default;

private:
    void DoSetup(Render::DrawContext& p_context, Utility::Scoped<Ogl::Agl>& p_agl) override;

    Core::WeakRef<CameraNode> _model;
};

} // namespace Qor::Chart::Host
