#pragma once

#include "render/Export.h"
#include "render/core/Vis.h"
#include "render/pick/HitRecord.h"
#include "render/pick/SelectRecord.h"

#include <list>

namespace Qor::Chart::Render {

/// How a host asks nodes what a hit selects, and tells them what is selected. A node that fails at it is reported to the
/// logger and counts as one that has nothing to select. Not to be called during a traversal.
class QOR_VIS_API Selector : private VisHooks {
public:
    /// What a hit selects; nothing when the node is gone or cannot be selected.
    static std::list<SelectRecord> RecordsOf(HitRecord const& p_hit);

    /// Tells the node that handles a record that it is selected, or is no longer. False when that node is gone.
    static bool Select(SelectRecord const& p_record, bool p_selected);
};

} // namespace Qor::Chart::Render
