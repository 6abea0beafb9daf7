#pragma once

#include "framework/Export.h"
#include "framework/core/IModifiable.h"
#include "framework/core/Verbosity.h"

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

namespace Qor::Chart::Core {

/// The face that every node shows to the world: it can be changed, asked for its time and name, and printed.
class QOR_FRAMEWORK_API ModifiableNode : public IModifiable {
public:
    /// Appends the nodes that this one holds as children, in order.
    virtual void CollectChildren(std::vector<Node*>& p_children) const = 0;

    TimeStamp Time() const override = 0;

    virtual std::string const& Name() const = 0;

    /// Prints the node, and what is below it when the verbosity asks for that.
    /// @param p_depth  levels of indentation
    virtual void Dump(std::ostream& p_stream, Verbosity p_verbosity, std::uint64_t p_depth) const = 0;
};

} // namespace Qor::Chart::Core
