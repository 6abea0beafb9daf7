#include "render/nodes/SceneVis.h"

namespace Qor::Chart::Render {

SceneVis::SceneVis() : _model(*this, "model") {}

SceneVis::~SceneVis() = default;

void SceneVis::Attach(Core::Ptr<Model::ModelNode> const& p_model) {
    _model.Attach(p_model);
}

Core::WeakPtr<Model::ModelNode> SceneVis::SourceModel() const {
    return _model.Get();
}

} // namespace Qor::Chart::Render
