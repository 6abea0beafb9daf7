#pragma once

#include "framework/core/WeakPtr.h"

#include <cstdint>
#include <optional>

namespace Qor::Chart::Model {

class ModelNode;

/// One thing that is selected: a node, or the one of the things in it that the index names. It does not keep the node
/// alive, and still compares equal to entries of the same node when that is gone.
struct SelectionEntry {
    Core::WeakPtr<ModelNode> node;
    std::optional<std::uint64_t> index; ///< such as the name of a hit; nothing for the node as a whole

    bool operator==(SelectionEntry const&) const = default;
};

} // namespace Qor::Chart::Model
