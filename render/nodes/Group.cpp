#include "render/nodes/Group.h"

namespace Qor::Chart::Render {

Group::Group() : _model(*this, "model") {}

Group::~Group() = default;

void Group::Attach(Core::Ptr<Model::ModelNode> const& p_model) {
    _model.Attach(p_model);
}

Core::WeakPtr<Model::ModelNode> Group::SourceModel() const {
    return _model.Get();
}

} // namespace Qor::Chart::Render
