#pragma once

#include "framework/core/Ptr.h"
#include "render/Export.h"
#include "render/context/AutoDiscontinuity.h"
#include "render/context/DrawContext.h"
#include "render/context/PickPoint.h"
#include "render/core/Vis.h"
#include "render/loops/Layer.h"
#include "render/pick/HitRecord.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace Qor::Chart::Render {

/// Finds what lies under a pixel: visits a tree as a draw does, asks each node that can be hit, and gives the records of
/// those that are, the best first. Nothing is drawn and no pixel changes meanwhile, whatever the nodes do; no frame need
/// be in progress. What a node throws is reported, makes the node invalid and leaves out the rest of its subtree.
///
///     unsigned visited = 0, tested = 0;
///     auto const records = HitTopLoop()(root, context, {{x, y}, {2, 2}}, visited, tested, LayerBoth);
class QOR_VIS_API HitTopLoop {
public:
    /// The records of a pick that is under way, in a bucket for each context root that was met.
    class QOR_VIS_API Hits {
    public:
        /// The bucket of a layer id, the identifier of a node; made when it is first asked for. It stays where it is.
        std::vector<HitRecord>& BucketOf(std::uint32_t p_layerId);
        /// All records: the last bucket first, and in each the order of `HitRecord::Sort`. Leaves the buckets empty.
        std::vector<HitRecord> Take();

    private:
        std::vector<std::shared_ptr<std::vector<HitRecord>>> _buckets;
        std::unordered_map<std::uint32_t, std::size_t> _indices;
    };

    /// @param p_point    in pixels of the window
    /// @param p_visited  is counted up by each node that is met, those that are then left out included
    /// @param p_tested   is counted up by each hit hook that is called
    /// @param p_layers   the passes to run, base before overlay. The result has the panes that were met last first; in a
    ///                   pane higher layers, then nearer hits, then what was found last
    /// @throws Core::TreeTooDeepExcept when the stack does not suffice
    std::vector<HitRecord> operator()(Core::Ptr<Vis> p_root, DrawContext& p_context, PickPoint const& p_point,
        unsigned& p_visited, unsigned& p_tested, Layer p_layers) const;

    /// One node of the base pass with what is below it. Clears and draws are not held back here.
    /// @param p_bucket  takes the records until a context root is met
    /// @return false when the point is outside of the current viewport, and so misses the node's siblings as well
    static bool HitBase(Core::Ptr<Vis> const& p_node, DrawContext& p_context, PickPoint const& p_point,
        std::vector<HitRecord>& p_bucket, Hits& p_hits, unsigned& p_visited, unsigned& p_tested,
        ContextRootStack& p_roots);
    /// The same in the overlay pass. All records get the depth of the overlay.
    static bool HitOverlay(Core::Ptr<Vis> const& p_node, DrawContext& p_context, PickPoint const& p_point,
        std::vector<HitRecord>& p_bucket, Hits& p_hits, unsigned& p_visited, unsigned& p_tested,
        ContextRootStack& p_roots);
};

} // namespace Qor::Chart::Render
