#pragma once

#include "framework/core/Ptr.h"
#include "framework/core/WeakPtr.h"
#include "framework/model/Action.h"
#include "framework/model/Pane.h"
#include "framework/model/Toolbar.h"
#include "render/Export.h"

namespace Qor::Chart::Render {

/// What an action of a projection toolbar does: it gives the pane a mode, checks itself and unchecks the other one.
/// Handles that have expired are reported and left out.
class QOR_VIS_API ChangeProjectionMode {
public:
    ChangeProjectionMode(Core::WeakPtr<Model::Pane> p_viewport, Core::WeakPtr<Model::Action> p_thisAction,
        Core::WeakPtr<Model::Action> p_other, Model::Pane::ProjectionMode p_mode);

    void operator()() const;

private:
    Core::WeakPtr<Model::Pane> _viewport;
    Core::WeakPtr<Model::Action> _thisAction;
    Core::WeakPtr<Model::Action> _other;
    Model::Pane::ProjectionMode _mode;
};

/// The toolbar of a pane that switches between its two projections.
struct QOR_VIS_API PaneToolbar {
    /// A horizontal bar in the upper right corner, below a title bar of that height. It knows the pane weakly.
    static Core::Ptr<Model::Toolbar> Make(Core::Ptr<Model::Pane> const& p_pane, unsigned p_titleHeight);

    /// Checks the action of the pane's present mode alone: keys and programs switch it too.
    static void Follow(Model::Pane const& p_pane, Model::Toolbar const& p_toolbar);
};

} // namespace Qor::Chart::Render
