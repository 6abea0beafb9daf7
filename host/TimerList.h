#pragma once

#include "framework/core/WeakPtr.h"
#include "host/Export.h"
#include "render/core/Vis.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace Qor::Chart::Host {

/// Calls that are to be made later, each for a node: when the node is gone by then, so is the call.
class QOR_HOST_API TimerList {
public:
    struct Timer {
        Core::WeakPtr<Render::Vis> node;
        std::function<void()> call;
    };

    void Add(int p_milliseconds, Core::WeakPtr<Render::Vis> p_node, std::function<void()> p_call);

    /// Takes out what is due, the earliest first, and what was added earlier first among equals.
    std::vector<Timer> TakeDue();

    /// When the earliest of those whose node lives is due, in nanoseconds of the process's clock; nothing when there is
    /// none.
    std::optional<std::uint64_t> NextDue() const;

private:
    std::multimap<std::uint64_t, Timer> _timers;
};

} // namespace Qor::Chart::Host
