#include "render/pick/HitBoxLoop.h"

#include "render/pick/HitPass.h"
#include "render/pick/HitTraversal.h"
#include "framework/core/ModificationWatcher.h"
#include "framework/ogl/Agl.h"
#include "framework/ogl/HitDetect.h"
#include "framework/utility/Logger.h"
#include "framework/utility/Scoped.h"

#include <utility>

namespace Qor::Chart::Render {

namespace {

/// Keeps what lies in the bounds. False when nothing does.
bool Clip(Types::Viewport<0>& p_box, Types::Viewport<0> const& p_bounds) {
    if (!(p_box.x <= p_bounds.Right() && p_box.y <= p_bounds.Top()))
        return false;
    if (p_box.x < p_bounds.x) {
        p_box.width -= p_bounds.x - p_box.x;
        p_box.x = p_bounds.x;
    }
    if (p_box.y < p_bounds.y) {
        p_box.height -= p_bounds.y - p_box.y;
        p_box.y = p_bounds.y;
    }
    if (p_bounds.Right() < p_box.Right())
        p_box.width = p_bounds.Right() - p_box.x;
    if (p_bounds.Top() < p_box.Top())
        p_box.height = p_bounds.Top() - p_box.y;
    return !p_box.IsEmpty();
}

/// A rectangle, cut on its way down by the viewports that it comes to.
struct BoxTarget {
    struct Level {
        Types::Viewport<0> rectangle;
        bool isInside; ///< the scope, or below it
    };

    Core::WeakPtr<Vis> const& scope;
    std::vector<HitRecord>& records;

    bool IsInside(Vis const& p_node, bool p_isParentInside) const {
        Vis const* const node = p_isParentInside ? nullptr : scope.Peek();
        return !node || node == &p_node;
    }
    static HitEntry Enter(Vis const& p_node, DrawContext const&, Level const& p_level) {
        return p_level.isInside && p_node.IsFlagged(Vis::VisFlagContextRoot) ? HitEntry::SkipNode : HitEntry::Visit;
    }
    Level LevelOf(Vis const& p_node, Level const& p_parent) const {
        return {p_parent.rectangle, IsInside(p_node, p_parent.isInside)};
    }
    static bool Aim(DrawContext const& p_context, Level& p_level, PickPoint& p_point) {
        if (!Clip(p_level.rectangle, p_context.Viewport().Top()))
            return false;
        p_point = BoxSelection::PointOf(p_level.rectangle);
        return true;
    }
    static bool Tests(Level const& p_level) { return p_level.isInside; }
    void Add(HitRecord&& p_record, Level const&) const { records.push_back(std::move(p_record)); }
};

/// A pass over one node and what is below it.
/// @param p_isInside  see `HitBoxLoop::HitBase`
bool HitNode(HitPass const& p_pass, NodeScope::Stage const& p_stage, Core::Ptr<Vis> const& p_node,
    DrawContext& p_context, BoxSelection const& p_box, std::vector<HitRecord>& p_records, unsigned& p_visited,
    unsigned& p_tested, bool& p_isInside, ContextRootStack& p_roots) {
    BoxTarget target{p_box.Scope(), p_records};
    bool const isParentInside = std::exchange(p_isInside, target.IsInside(*p_node, p_isInside));
    HitTraversal pass(target, p_pass, p_stage, p_roots, p_visited, p_tested);
    return pass.Visit(p_node, p_context, {p_box.Rectangle(), isParentInside});
}

} // namespace

std::vector<HitRecord> HitBoxLoop::operator()(Core::Ptr<Vis> p_root, DrawContext& p_context, BoxSelection const& p_box,
    unsigned& p_visited, unsigned& p_tested) const {
    if (!p_root || !p_root->IsEnabled())
        return {};
    Core::ModificationWatcher const watcher{Core::WeakPtr<Core::Node>(p_root)};
    Core::DestructionScope const keepDroppedNodes;
    Utility::Scoped<Ogl::Agl> agl(p_context.Graphics());
    Ogl::HitDetect const nothingIsDrawn(agl);

    std::vector<HitRecord> records;
    ContextRootStack roots;
    for (auto const& pass : {&HitOverlay, &HitBase}) {
        bool isInside = false;
        pass(p_root, p_context, p_box, records, p_visited, p_tested, isInside, roots);
    }
    HitRecord::Sort(records);
    if (watcher.Modified())
        Utility::GetLogger().out("") << "Graph modified during a hit detect." << '\n';
    return records;
}

bool HitBoxLoop::HitBase(Core::Ptr<Vis> const& p_node, DrawContext& p_context, BoxSelection const& p_box,
    std::vector<HitRecord>& p_records, unsigned& p_visited, unsigned& p_tested, bool& p_isInside,
    ContextRootStack& p_roots) {
    static constexpr NodeScope::Stage stage{"RenderLoop-Hit", __PRETTY_FUNCTION__, __LINE__};
    return HitNode(HitPass::Base, stage, p_node, p_context, p_box, p_records, p_visited, p_tested, p_isInside, p_roots);
}

bool HitBoxLoop::HitOverlay(Core::Ptr<Vis> const& p_node, DrawContext& p_context, BoxSelection const& p_box,
    std::vector<HitRecord>& p_records, unsigned& p_visited, unsigned& p_tested, bool& p_isInside,
    ContextRootStack& p_roots) {
    static constexpr NodeScope::Stage stage{"RenderLoop-HitOverlay", __PRETTY_FUNCTION__, __LINE__};
    return HitNode(
        HitPass::Overlay, stage, p_node, p_context, p_box, p_records, p_visited, p_tested, p_isInside, p_roots);
}

} // namespace Qor::Chart::Render
