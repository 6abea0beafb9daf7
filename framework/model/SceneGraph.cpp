#include "framework/model/SceneGraph.h"

namespace Qor::Chart::Model {

SceneGraph::~SceneGraph() = default;

Core::Ptr<ModelNode> SceneGraph::NewOfSameClass() const {
    return Core::MakeNode<SceneGraph>();
}

} // namespace Qor::Chart::Model
