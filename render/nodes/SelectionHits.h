#pragma once

#include "framework/model/SelectionEntry.h"
#include "render/Export.h"
#include "render/pick/HitRecord.h"
#include "render/pick/SelectRecord.h"
#include "render/pick/SelectRecordEntry.h"

#include <cstddef>
#include <vector>

namespace Qor::Chart::Render {

/// What the hits of a pick select. All take hits as a pick gives them, best first.
struct QOR_VIS_API SelectionHits {
    /// The inside of a pane lies in front of what the pane shows, and the pointer goes through it.
    static bool IsInsideOfPane(HitRecord const& p_hit);

    /// The first hit that is more than the inside of a pane; null where there is nothing else.
    static HitRecord const* Foremost(std::vector<HitRecord> const& p_hits);

    /// What the foremost hit selects and what lies behind it, one record of each hit, so many at most. What cannot be
    /// selected, such as a button, covers what is behind: nothing where it is in front.
    static std::vector<SelectRecord> At(std::vector<HitRecord> const& p_hits, std::size_t p_most);

    /// All that all of the hits select.
    static std::vector<SelectRecord> AllOf(std::vector<HitRecord> const& p_hits);

    /// A record as an entry of a selection: of the one thing that a valid index names, or of the node as a whole.
    static Model::SelectionEntry EntryOf(SelectRecord const& p_record);
    /// An entry as a record of the node that handles it; of no node where p_handler is empty.
    static SelectRecord RecordOf(Core::Ptr<Vis> const& p_handler, Model::SelectionEntry const& p_entry);
    static SelectRecordEntry::SelectionType TypeOf(Model::SelectionEntry const& p_entry) noexcept;
};

} // namespace Qor::Chart::Render
