#include "framework/model/Events.h"

#include "framework/model/ModelNode.h"

#include <utility>

namespace Qor::Chart::Model::Events {

Event::Event(Core::WeakPtr<ModelNode> p_node) noexcept : _node(std::move(p_node)) {}

Event::~Event() = default;

PickedArgs::PickedArgs(Core::WeakPtr<ModelNode> p_node) noexcept : Event(std::move(p_node)) {}

PickedArgs::PickedArgs(Core::WeakPtr<ModelNode> p_node, Types::Vector3_Base<double> const& p_position,
    Types::Pos const& p_screenPosition, Core::NodePath p_path) noexcept
    : Event(std::move(p_node)), _position(p_position), _screenPosition(p_screenPosition), _path(std::move(p_path)) {}

PickedArgs::~PickedArgs() = default;

PendingUpdateCompletedArgs::PendingUpdateCompletedArgs(
    Core::WeakPtr<ModelNode> p_node, Types::BoundingBox_Base<double> const& p_boundingBox) noexcept
    : Event(std::move(p_node)), _boundingBox(p_boundingBox) {}

PendingUpdateCompletedArgs::~PendingUpdateCompletedArgs() = default;

} // namespace Qor::Chart::Model::Events
