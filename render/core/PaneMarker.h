#pragma once

#include "render/Export.h"

namespace Qor::Chart::Render {

/// Marks the visual nodes that are panes, so that a traversal can tell them from all others without knowing their class.
class QOR_VIS_API PaneMarker {
public:
    virtual ~PaneMarker();

protected:
    PaneMarker() = default;
    PaneMarker(PaneMarker const&) = default;
    PaneMarker& operator=(PaneMarker const&) = default;
};

} // namespace Qor::Chart::Render
