#pragma once

#include "framework/core/Exceptions.h"
#include "host/HostError.h"

#include <string>

namespace Qor::Chart::Host {

/// Runs a traversal; what only a broken tree can throw leaves as one sentence.
/// @throws HostError when the visual tree contains itself or is too deep
template <class Traversal>
void GuardTree(Traversal const& p_traversal) {
    try {
        p_traversal();
    } catch (Core::CyclicDependencyFoundExcept const& error) {
        throw HostError(std::string("The scene contains itself: ") + error.what());
    } catch (Core::TreeTooDeepExcept const& error) {
        throw HostError(std::string("The scene cannot be shown: ") + error.what());
    }
}

} // namespace Qor::Chart::Host
