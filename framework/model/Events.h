#pragma once

#include "framework/Export.h"
#include "framework/core/NodePath.h"
#include "framework/core/WeakPtr.h"
#include "framework/types/BoundingBox.h"
#include "framework/types/Pos.h"
#include "framework/types/Vector3.h"

#include <optional>

namespace Qor::Chart::Model {

class ModelNode;

namespace Events {

/// Something that happened to a model node, told to who subscribed at the node's `EventDelegate`.
class QOR_FRAMEWORK_API Event {
public:
    virtual ~Event();

    /// The node that the event is about; it may be gone.
    Core::WeakPtr<ModelNode> const& Node() const noexcept { return _node; }

protected:
    explicit Event(Core::WeakPtr<ModelNode> p_node) noexcept;
    Event(Event const&) = default;
    Event& operator=(Event const&) = default;

private:
    Core::WeakPtr<ModelNode> _node;
};

/// The user clicked on a node.
class QOR_FRAMEWORK_API PickedArgs : public Event {
public:
    explicit PickedArgs(Core::WeakPtr<ModelNode> p_node) noexcept;
    /// @param p_position        where the node was hit, in scene coordinates
    /// @param p_screenPosition  the pointer, in pixels of the window, origin bottom left
    /// @param p_path            which use of the node was hit; may be undefined
    PickedArgs(Core::WeakPtr<ModelNode> p_node, Types::Vector3_Base<double> const& p_position,
        Types::Pos const& p_screenPosition, Core::NodePath p_path) noexcept;
    ~PickedArgs() override;

    std::optional<Types::Vector3_Base<double>> const& Position() const noexcept { return _position; }
    std::optional<Types::Pos> const& ScreenPosition() const noexcept { return _screenPosition; }
    Core::NodePath const& Path() const noexcept { return _path; }

private:
    std::optional<Types::Vector3_Base<double>> _position;
    std::optional<Types::Pos> _screenPosition;
    Core::NodePath _path;
};

/// The visual node of a model node was waiting for something and has now been brought up to date.
class QOR_FRAMEWORK_API PendingUpdateCompletedArgs : public Event {
public:
    PendingUpdateCompletedArgs(
        Core::WeakPtr<ModelNode> p_node, Types::BoundingBox_Base<double> const& p_boundingBox) noexcept;
    ~PendingUpdateCompletedArgs() override;

    /// The box around what the node shows now; undefined when it shows nothing.
    Types::BoundingBox_Base<double> const& BoundingBox() const noexcept { return _boundingBox; }

private:
    Types::BoundingBox_Base<double> _boundingBox;
};

} // namespace Events

} // namespace Qor::Chart::Model
