#include "render/pick/HitTopLoop.h"

#include "render/pick/HitPass.h"
#include "render/pick/HitTraversal.h"
#include "framework/algorithms/Hit.h"
#include "framework/core/ModificationWatcher.h"
#include "framework/ogl/Agl.h"
#include "framework/ogl/Bind.h"
#include "framework/ogl/HitDetect.h"
#include "framework/ogl/Shader.h"
#include "framework/utility/Logger.h"
#include "framework/utility/Scoped.h"

#include <iterator>

namespace Qor::Chart::Render {

namespace {

/// A point, which every node of a pane sees alike.
struct PointTarget {
    using Level = std::vector<HitRecord>*; ///< the bucket of the innermost context root

    PickPoint const& point;
    HitTopLoop::Hits& hits;

    HitEntry Enter(Vis const&, DrawContext const& p_context, Level) const {
        return Algorithms::Hit::IsHit(p_context.Viewport().Top(), point.position) ? HitEntry::Visit
                                                                                  : HitEntry::SkipSiblings;
    }
    Level LevelOf(Vis const& p_node, Level p_bucket) const {
        return p_node.IsFlagged(Vis::VisFlagContextRoot) ? &hits.BucketOf(p_node.Id()) : p_bucket;
    }
    bool Aim(DrawContext const&, Level, PickPoint& p_point) const {
        p_point = point;
        return true;
    }
    static bool Tests(Level) { return true; }
    static void Add(HitRecord&& p_record, Level p_bucket) { p_bucket->push_back(std::move(p_record)); }
};

} // namespace

std::vector<HitRecord>& HitTopLoop::Hits::BucketOf(std::uint32_t p_layerId) {
    auto const [it, isNew] = _indices.try_emplace(p_layerId, _buckets.size());
    if (isNew)
        _buckets.push_back(std::make_shared<std::vector<HitRecord>>());
    return *_buckets[it->second];
}

std::vector<HitRecord> HitTopLoop::Hits::Take() {
    std::size_t count = 0;
    for (auto const& bucket : _buckets)
        count += bucket->size();
    std::vector<HitRecord> all;
    all.reserve(count);
    for (auto it = _buckets.rbegin(); it != _buckets.rend(); ++it) {
        std::vector<HitRecord>& bucket = **it;
        HitRecord::Sort(bucket);
        all.insert(all.end(), std::move_iterator(bucket.begin()), std::move_iterator(bucket.end()));
        bucket.clear();
    }
    return all;
}

std::vector<HitRecord> HitTopLoop::operator()(Core::Ptr<Vis> p_root, DrawContext& p_context, PickPoint const& p_point,
    unsigned& p_visited, unsigned& p_tested, Layer p_layers) const {
    if (!p_root || !p_root->IsEnabled())
        return {};
    Core::ModificationWatcher watcher{Core::WeakPtr<Core::Node>(p_root)};
    Core::DestructionScope const keepDroppedNodes;
    Utility::Scoped<Ogl::Agl> agl(p_context.Graphics());
    Ogl::HitDetect const nothingIsDrawn(agl);
    Ogl::Bind<Ogl::Shader> const shader(agl, agl->GenFixedFunctionShader());

    Hits hits;
    ContextRootStack roots;
    auto const run = [&](auto const& p_pass, char const* p_modified) {
        p_pass(p_root, p_context, p_point, hits.BucketOf(p_root->Id()), hits, p_visited, p_tested, roots);
        if (watcher.Modified())
            Utility::GetLogger().out("Err") << p_modified << '\n';
        watcher.Reset();
    };
    if ((p_layers & LayerBase) != 0)
        run(&HitBase, "Graph modified during a hit detect in Base layer.");
    if ((p_layers & LayerOverlay) != 0)
        run(&HitOverlay, "Graph modified during a hit detect in Overlay layer.");
    return hits.Take();
}

bool HitTopLoop::HitBase(Core::Ptr<Vis> const& p_node, DrawContext& p_context, PickPoint const& p_point,
    std::vector<HitRecord>& p_bucket, Hits& p_hits, unsigned& p_visited, unsigned& p_tested,
    ContextRootStack& p_roots) {
    static constexpr NodeScope::Stage stage{"RenderLoop-Hit", __PRETTY_FUNCTION__, __LINE__};
    PointTarget target{p_point, p_hits};
    HitTraversal pass(target, HitPass::Base, stage, p_roots, p_visited, p_tested);
    return pass.Visit(p_node, p_context, &p_bucket);
}

bool HitTopLoop::HitOverlay(Core::Ptr<Vis> const& p_node, DrawContext& p_context, PickPoint const& p_point,
    std::vector<HitRecord>& p_bucket, Hits& p_hits, unsigned& p_visited, unsigned& p_tested,
    ContextRootStack& p_roots) {
    static constexpr NodeScope::Stage stage{"RenderLoop-HitOverlay", __PRETTY_FUNCTION__, __LINE__};
    PointTarget target{p_point, p_hits};
    HitTraversal pass(target, HitPass::Overlay, stage, p_roots, p_visited, p_tested);
    return pass.Visit(p_node, p_context, &p_bucket);
}

} // namespace Qor::Chart::Render
