#include "framework/core/Exceptions.h"

namespace Qor::Chart::Core {

CyclicDependencyFoundExcept::CyclicDependencyFoundExcept(std::string const& p_where)
    : std::runtime_error("Cyclic dependency found " + p_where) {}

CyclicDependencyFoundExcept::~CyclicDependencyFoundExcept() = default;

TreeTooDeepExcept::TreeTooDeepExcept(std::string const& p_what, std::size_t p_depth)
    : std::runtime_error("The tree is too deep for " + p_what + ": the stack of this thread is used up after " +
          std::to_string(p_depth) + " levels. Flatten the tree, or run on a thread with a larger stack.") {}

TreeTooDeepExcept::~TreeTooDeepExcept() = default;

} // namespace Qor::Chart::Core
