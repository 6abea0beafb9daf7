#include "host/CameraNode.h"

namespace Qor::Chart::Host {

CameraNode::~CameraNode() = default;

Core::Ptr<Model::ModelNode> CameraNode::NewOfSameClass() const {
    return Core::MakeNode<CameraNode>();
}

void CameraNode::CopyTo(ModelNode& p_clone) const {
    static_cast<CameraNode&>(p_clone)._camera = _camera;
}

} // namespace Qor::Chart::Host
