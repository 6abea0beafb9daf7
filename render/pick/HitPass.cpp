#include "render/pick/HitPass.h"

#include "framework/ogl/Agl.h"
#include "framework/types/Transformation.h"

#include <algorithm>
#include <utility>

namespace Qor::Chart::Render {

HitPass const HitPass::Base(CallbackHit, HandledSetup, &Setup, HandledHit, &Hit, HandledTeardown, &Teardown);
HitPass const HitPass::Overlay(CallbackHitOverlay, HandledSetupOverlay, &SetupOverlay, HandledHitOverlay, &HitOverlay,
    HandledTeardownOverlay, &TeardownOverlay);

HitPass::HitPass(CallbackType p_callback, HandledCallbacks p_setupHook, NodeScope::SetupFunction p_setup,
    HandledCallbacks p_hitHook, HitFunction p_hit, HandledCallbacks p_teardownHook,
    NodeScope::TeardownFunction p_teardown) noexcept
    : _callback(p_callback)
    , _setupBit(HandledCallbackSet::MaskOf(p_setupHook))
    , _hitBit(HandledCallbackSet::MaskOf(p_hitHook))
    , _teardownBit(HandledCallbackSet::MaskOf(p_teardownHook))
    , _setup(p_setup)
    , _hit(p_hit)
    , _teardown(p_teardown) {}

HitRecord HitPass::MakeRecord(Vis& p_node, HitResult&& p_result, DrawContext const& p_context,
    Types::Pos const& p_window, ContextRootStack const& p_roots) const {
    auto& hits = p_result.records;
    std::reverse(hits.begin(), hits.end());
    if (_callback == CallbackHitOverlay) {
        for (Ogl::HitRecord& hit : hits)
            hit.depth = Ogl::HitRecord::DepthOverlay;
    } else {
        std::stable_sort(hits.begin(), hits.end(), &Ogl::HitRecord::OrderByDepth);
    }
    Types::Matrix4 const& modelView = p_context.ModelView().Top();
    Types::Vector3_Base<double> const window(p_window.x, p_window.y, hits.front().depth);
    auto const location =
        Ogl::Agl::UnProject(window, modelView, p_context.Projection().Top(), p_context.Viewport().Top())
            .value_or(Types::Vector3_Base<double>());
    HitRecord record(Core::WeakPtr<Vis>(&p_node), std::move(p_result), location,
        Types::Transformation(modelView).Point(location), p_window);
    if (!p_roots.empty())
        record.hitRoot = p_roots.top();
    return record;
}

} // namespace Qor::Chart::Render
