#pragma once

#include "framework/core/WeakPtr.h"
#include "framework/types/Pos.h"
#include "framework/types/Vector3.h"
#include "render/Export.h"
#include "render/core/Vis.h"
#include "render/pick/HitResult.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace Qor::Chart::Render {

/// One node that a pick has hit. A plain value: it may be kept, and outlives the node.
struct QOR_VIS_API HitRecord {
    Core::WeakPtr<Vis> node;
    HitResult result;
    Types::Vector3_Base<double> location; ///< the nearest hit in the node's own coordinates
    Types::Vector3_Base<double> global; ///< the same in the coordinates of the enclosing pane
    Core::WeakPtr<Vis> hitRoot; ///< the innermost context root around the node, or the node if it is one; may be empty
    Types::Pos screenPos; ///< what was picked, in pixels of the window, origin in the lower left corner

    HitRecord(Core::WeakPtr<Vis> p_node, HitResult p_result, Types::Vector3_Base<double> const& p_location,
        Types::Vector3_Base<double> const& p_global, Types::Pos const& p_screenPos);

    /// The order of a list of hits: true when p_a goes before p_b. Live nodes go before those that are gone, then higher
    /// layers before lower ones, then nearer hits before farther ones. Records without hits are equal to all.
    static bool IsBefore(HitRecord const& p_a, HitRecord const& p_b);
    /// Brings records in the order in which they were found into the order of a list of hits; of equal ones the last found
    /// goes first.
    static void Sort(std::vector<HitRecord>& p_found);

    /// Writes the node, the places and each hit on a line of its own, all lines but the first beginning with the prefix
    /// and a tab; there is no line break at the end. Of a node that is gone only that is written.
    static void Dump(std::string const& p_prefix, std::ostream& p_stream, HitRecord const& p_record);
    /// The same for each record, numbered from 0, with a line break after each.
    static void Dump(std::string const& p_prefix, std::ostream& p_stream, std::vector<HitRecord> const& p_records);
};

/// `Dump` without a prefix.
QOR_VIS_API std::ostream& operator<<(std::ostream& p_stream, HitRecord const& p_record);
QOR_VIS_API std::ostream& operator<<(std::ostream& p_stream, std::vector<HitRecord> const& p_records);

} // namespace Qor::Chart::Render
