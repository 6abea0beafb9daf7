#pragma once

#include "framework/core/Reference.h"
#include "framework/model/SceneGraph.h"
#include "render/Export.h"
#include "render/core/SelectsBelow.h"
#include "render/core/Vis.h"

namespace Qor::Chart::Render {

/// The visual node of a scene graph. It draws nothing and handles no hook: it stands in the tree so that what is below the
/// scene graph gets visual nodes, and gathers their box and passes.
class QOR_VIS_API SceneVis : public Vis, public SelectsBelow {
public:
    SceneVis();
    ~SceneVis() override;

    /// Mirrors a model node from now on. One that is no scene graph is reported and refused.
    void Attach(Core::Ptr<Model::ModelNode> const& p_model);

    Core::WeakPtr<Model::ModelNode> SourceModel() const override;

private:
    Core::WeakRef<Model::SceneGraph> _model;
};

} // namespace Qor::Chart::Render
