#pragma once

#include "framework/core/NodePath.h"
#include "framework/utility/StackLimit.h"
#include "render/Export.h"
#include "render/core/Vis.h"

namespace Qor::Chart::Render {

/// Gives every visual node that has none its path: the identifiers from the root down to the node. A path never changes
/// afterwards, even when its node is moved. Subtrees in which no node is new are passed over, so that a run after every
/// update costs next to nothing.
class QOR_VIS_API UpdateNodePathLoop : private VisHooks {
public:
    /// Visits active and inactive children alike.
    /// @throws Core::TreeTooDeepExcept when the stack does not suffice
    void operator()(Core::Ptr<Vis> const& p_root) const;

private:
    static void Update(Vis& p_vis, Core::WorkingPath& p_path, Utility::StackLimit p_limit);
};

} // namespace Qor::Chart::Render
