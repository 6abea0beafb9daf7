#pragma once

#include "framework/core/Reference.h"
#include "framework/model/Group.h"
#include "render/Export.h"
#include "render/core/SelectsBelow.h"
#include "render/core/Vis.h"

namespace Qor::Chart::Render {

/// The visual node of a group. Like that of a scene graph it has no look of its own: it holds the visual nodes of the
/// group's children together, with their box and passes.
class QOR_VIS_API Group : public Vis, public SelectsBelow {
public:
    Group();
    ~Group() override;

    /// Mirrors a model node from now on. One that is no group is reported and refused.
    void Attach(Core::Ptr<Model::ModelNode> const& p_model);

    Core::WeakPtr<Model::ModelNode> SourceModel() const override;

private:
    Core::WeakRef<Model::Group> _model;
};

} // namespace Qor::Chart::Render
