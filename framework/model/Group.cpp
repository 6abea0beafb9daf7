#include "framework/model/Group.h"

namespace Qor::Chart::Model {

Group::~Group() = default;

Core::Ptr<ModelNode> Group::NewOfSameClass() const {
    return Core::MakeNode<Group>();
}

} // namespace Qor::Chart::Model
