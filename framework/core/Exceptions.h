#pragma once

#include "framework/Export.h"

#include <stdexcept>
#include <string>

namespace Qor::Chart::Core {

/// A traversal met a node that is already on its path.
class QOR_FRAMEWORK_API CyclicDependencyFoundExcept : public std::runtime_error {
public:
    explicit CyclicDependencyFoundExcept(std::string const& p_where);
    ~CyclicDependencyFoundExcept() override;
};

/// A tree is deeper than the stack that is left can hold.
class QOR_FRAMEWORK_API TreeTooDeepExcept : public std::runtime_error {
public:
    /// @param p_what  what was being done, such as "updating the visual tree"
    TreeTooDeepExcept(std::string const& p_what, std::size_t p_depth);
    ~TreeTooDeepExcept() override;
};

} // namespace Qor::Chart::Core
