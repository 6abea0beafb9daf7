#pragma once

#include "framework/Export.h"
#include "framework/core/Ptr.h"

#include <span>
#include <string>
#include <string_view>

namespace Qor::Chart::Model {

class ModelNode;
class PropertyList;

/// A class of model nodes as scene files and tools see it.
struct NodeType {
    std::string_view name; ///< the class name, as `Core::Node::TypeName` gives it
    std::string_view documentation;
    Core::Ptr<ModelNode> (*make)();
    PropertyList const& (*properties)();
};

/// All classes of model nodes that this library offers, by name.
QOR_FRAMEWORK_API std::span<NodeType const> NodeTypes() noexcept;

/// The class of that name, or null.
QOR_FRAMEWORK_API NodeType const* FindNodeType(std::string_view p_name) noexcept;

} // namespace Qor::Chart::Model
