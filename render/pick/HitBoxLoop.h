#pragma once

#include "framework/core/Ptr.h"
#include "render/Export.h"
#include "render/context/AutoDiscontinuity.h"
#include "render/context/DrawContext.h"
#include "render/core/Vis.h"
#include "render/pick/BoxSelection.h"
#include "render/pick/HitRecord.h"

#include <vector>

namespace Qor::Chart::Render {

/// Finds everything inside a rubber band: like `HitTopLoop`, but each node is asked about the middle of the rectangle with
/// half the rectangle as tolerance, after the rectangle was cut by the node's viewport. A rectangle never reaches into a
/// pane below its scope. Both layers are picked.
class QOR_VIS_API HitBoxLoop {
public:
    /// @param p_visited  is counted up by each node that is met, those that are then left out included
    /// @param p_tested   is counted up by each hit hook that is called
    /// @return the records in the order of `HitRecord::Sort`; those of the scene are found after those of the overlay
    /// @throws Core::TreeTooDeepExcept when the stack does not suffice
    std::vector<HitRecord> operator()(Core::Ptr<Vis> p_root, DrawContext& p_context, BoxSelection const& p_box,
        unsigned& p_visited, unsigned& p_tested) const;

    /// One node of the base pass with what is below it. Clears and draws are not held back here.
    /// @param p_isInside  whether the node lies below the scope; afterwards also true when it is the scope
    /// @return true
    static bool HitBase(Core::Ptr<Vis> const& p_node, DrawContext& p_context, BoxSelection const& p_box,
        std::vector<HitRecord>& p_records, unsigned& p_visited, unsigned& p_tested, bool& p_isInside,
        ContextRootStack& p_roots);
    /// The same in the overlay pass. All records get the depth of the overlay.
    static bool HitOverlay(Core::Ptr<Vis> const& p_node, DrawContext& p_context, BoxSelection const& p_box,
        std::vector<HitRecord>& p_records, unsigned& p_visited, unsigned& p_tested, bool& p_isInside,
        ContextRootStack& p_roots);
};

} // namespace Qor::Chart::Render
