#pragma once

#include "render/Export.h"

#include <cstdint>

namespace Qor::Chart::Render {

/// Marks the visual nodes that are panes, so that a traversal can tell them from all others without knowing their class.
class QOR_VIS_API PaneMarker {
public:
    /// The layer of panes, and of nodes that stand for the pane below them: they lie over the scenes beside them.
    static constexpr std::int16_t PaneLayer = 30000;

    virtual ~PaneMarker();

protected:
    PaneMarker() = default;
    PaneMarker(PaneMarker const&) = default;
    PaneMarker& operator=(PaneMarker const&) = default;
};

} // namespace Qor::Chart::Render
