#pragma once

#include "framework/core/WeakPtr.h"
#include "framework/types/Pos.h"
#include "framework/types/Viewport.h"
#include "host/CameraNode.h"
#include "host/Export.h"
#include "render/core/Vis.h"

#include <vector>

namespace Qor::Chart::Host {

/// A part of a window that shows a scene from one camera: a pane, or the window around all panes.
struct PaneView {
    Core::WeakPtr<Render::Vis> pane; ///< empty for the window itself
    Core::WeakPtr<CameraNode> camera; ///< empty where the host's own camera counts
    Types::Viewport<0> rectangle; ///< in framebuffer pixels of the window
};

/// Finds panes in a visual tree, as the last update left it. Only branches that hold panes are looked through.
struct QOR_HOST_API PaneFinder {
    /// All panes in the order in which they are drawn.
    /// @param p_window  the rectangle that the whole tree is drawn into
    static std::vector<PaneView> All(Core::Ptr<Render::Vis> const& p_root, Types::Viewport<0> const& p_window);

    /// The pane that shows at a pixel: the innermost one, and of panes that cover each other the one on top. The window
    /// where there is none.
    static PaneView At(
        Core::Ptr<Render::Vis> const& p_root, Types::Viewport<0> const& p_window, Types::Pos const& p_pixel);
};

} // namespace Qor::Chart::Host
