#pragma once

#include "framework/core/WeakPtr.h"
#include "framework/model/Pane.h"
#include "framework/types/Size.h"
#include "render/Export.h"
#include "render/events/EventSink.h"

namespace Qor::Chart::Render {

/// Takes the content of a pane into a window of its own, and back.
struct QOR_VIS_API PanePopOut {
    using Content = PopOutHost::Content;

    /// The root of the new window's model: a pane that looks like p_parent, fills its window, stays there, and has the
    /// content as its children, which may be children of other nodes as well. Without the parent, which is reported, it
    /// looks like a new pane.
    static Core::Ptr<Model::ModelNode> PopoutViewportContent(
        Core::WeakPtr<Model::Pane> const& p_parent, Content const& p_content);

    /// Hands p_host what it needs to open the window.
    static void Open(PopOutHost& p_host, Core::WeakPtr<Model::Pane> const& p_parent, Types::Size const& p_size,
        PopOutHost::Restore const& p_restore, Content const& p_content);

    /// Hides the pane and empties it, and gives what brings both back once, as long as the pane exists.
    static PopOutHost::Restore Detach(Model::Pane& p_pane, Content const& p_content);
};

} // namespace Qor::Chart::Render
