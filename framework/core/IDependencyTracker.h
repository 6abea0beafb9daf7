#pragma once

#include "framework/Export.h"

namespace Qor::Chart::Core {

class Dependencies;

/// Something that keeps a list of who is told when it changes.
class QOR_FRAMEWORK_API IDependencyTracker {
public:
    virtual ~IDependencyTracker() = default;

    virtual Dependencies& Deps() = 0;
    virtual Dependencies const& Deps() const = 0;

protected:
    IDependencyTracker() = default;
    IDependencyTracker(IDependencyTracker const&) = default;
    IDependencyTracker& operator=(IDependencyTracker const&) = default;
};

} // namespace Qor::Chart::Core
