#pragma once

#include "framework/Export.h"
#include "framework/core/NodeList.h"
#include "framework/model/EventDelegate.h"
#include "framework/model/Property.h"
#include "framework/model/PropertyList.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Qor::Chart::Model {

/// Base of everything that a host puts into a scene: a node with properties, children and events. Whatever shows the
/// scene follows the changes that the nodes report.
///
/// A property has the value that was set or else the default of its class. Setting and resetting report a change of kind
/// `ModifiableTypeProperty` under the property's name. A node may have several parents, but no ancestor of itself may
/// become its child; who walks a tree with such a cycle refuses it.
class QOR_FRAMEWORK_API ModelNode : public Core::NodeList<ModelNode> {
public:
    /// What a clone does about the children of its original.
    enum class Children {
        Leave, ///< the clone has none
        Clone, ///< they are cloned too, down to the leaves
    };

    static std::string const EnabledPropertyName;
    static Property<ModelNode, bool> const EnabledProperty;
    static PropertyList const& ClassProperties();

    ModelNode() = default;

    /// Whether the node takes part in the scene, with all that is below it.
    bool IsEnabled() const noexcept { return _enabled; }
    void SetEnabled(bool p_enabled) { EnabledProperty.Set(*this, p_enabled); }

    /// Whether the node shows: its enabled property, under the name that fits panes and their like.
    bool IsVisible() const noexcept { return IsEnabled(); }
    void SetVisible(bool p_visible) { SetEnabled(p_visible); }

    /// All properties of the node's class.
    virtual PropertyList const& Properties() const { return ClassProperties(); }
    /// Whether a property has a value of the node's own.
    bool IsSet(PropertyInfo const& p_property) const noexcept { return (_set & p_property.Mask()) != 0; }
    /// Makes a property fall back to its default.
    void Reset(PropertyInfo const& p_property) { p_property.Reset(*this); }

    /// Appends a child, as the list does. The node itself is refused with a message to the logger.
    bool Add(Core::Ptr<ModelNode> const& p_child);

    /// Makes a node a child of this one alone: takes it out of all other parents' lists and appends it here, unless it is
    /// here already. False for an empty handle and for the node itself.
    bool Adopt(Core::Ptr<ModelNode> p_child);

    /// The model nodes that have this one as a child.
    std::vector<ModelNode*> Parents() const;

    /// Where subscribers connect and events of this node are raised.
    EventDelegate& Delegate() noexcept { return _delegate; }
    EventDelegate const& Delegate() const noexcept { return _delegate; }

    /// A new node of the same class with the same name, properties and references. References lead to the same nodes as
    /// the original's; a node that stands several times below the original is cloned once and stands as often below the
    /// clone. Subscribers stay with the original.
    Core::Ptr<ModelNode> Clone(Children p_children = Children::Clone) const;

protected:
    ~ModelNode() override = default;

    /// A fresh node of the same class; every class that can be cloned overrides this.
    virtual Core::Ptr<ModelNode> NewOfSameClass() const;
    /// Copies what the node has beside name, properties, children and subscribers to a node of the same class.
    virtual void CopyTo(ModelNode& p_clone) const;

private:
    friend class PropertyInfo;

    Core::Ptr<ModelNode> CloneAlone() const;

    EventDelegate _delegate;
    std::uint32_t _set = 0; ///< one bit per property, see `PropertyInfo::Bit`
    bool _enabled = true;
};

/// A clone as a handle of the original's class.
template <class T>
[[nodiscard]] Core::Ptr<T> CloneOf(T const& p_node, ModelNode::Children p_children = ModelNode::Children::Clone) {
    return Core::DynamicCast<T>(p_node.Clone(p_children));
}

inline bool PropertyInfo::IsSet(ModelNode const& p_node) const noexcept {
    return p_node.IsSet(*this);
}

} // namespace Qor::Chart::Model
