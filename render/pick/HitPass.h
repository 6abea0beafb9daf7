#pragma once

#include "render/context/AutoDiscontinuity.h"
#include "render/context/DrawContext.h"
#include "render/context/PickPoint.h"
#include "render/core/CallbackType.h"
#include "render/core/Vis.h"
#include "render/loops/NodeScope.h"
#include "render/pick/HitRecord.h"

#include <cstdint>

namespace Qor::Chart::Render {

/// One of the two passes of a pick, over the scene or over what lies above it: which hooks it calls, and how what a node
/// answered becomes a record.
class HitPass : private VisHooks {
public:
    static HitPass const Base;
    static HitPass const Overlay;

    CallbackType Callback() const noexcept { return _callback; }
    /// Whether the pass calls any hook of the node itself.
    bool Concerns(Vis const& p_node) const noexcept { return Handles(p_node, _setupBit | _hitBit | _teardownBit); }
    bool HasHit(Vis const& p_node) const noexcept { return Handles(p_node, _hitBit); }
    /// Null where the node has none.
    NodeScope::SetupFunction SetupOf(Vis const& p_node) const noexcept {
        return Handles(p_node, _setupBit) ? _setup : nullptr;
    }
    /// Null where the node has none.
    NodeScope::TeardownFunction TeardownOf(Vis const& p_node) const noexcept {
        return Handles(p_node, _teardownBit) ? _teardown : nullptr;
    }

    /// Whether to go on with the node's children.
    bool CallHit(Vis& p_node, DrawContext const& p_context, PickPoint const& p_point, HitResult& p_result) const {
        return _hit(p_node, p_context, p_point, p_result);
    }
    /// The record of a node that was hit: puts the hits in order, nearest first, and finds the place of the first.
    /// @param p_window  what was picked, in pixels of the window
    HitRecord MakeRecord(Vis& p_node, HitResult&& p_result, DrawContext const& p_context, Types::Pos const& p_window,
        ContextRootStack const& p_roots) const;

private:
    using HitFunction = bool (*)(Vis&, DrawContext const&, PickPoint const&, HitResult&);

    HitPass(CallbackType p_callback, HandledCallbacks p_setupHook, NodeScope::SetupFunction p_setup,
        HandledCallbacks p_hitHook, HitFunction p_hit, HandledCallbacks p_teardownHook,
        NodeScope::TeardownFunction p_teardown) noexcept;

    static bool Handles(Vis const& p_node, int p_bits) noexcept { return (p_node.Handled().Word() & p_bits) != 0; }

    CallbackType _callback;
    std::uint16_t _setupBit, _hitBit, _teardownBit;
    NodeScope::SetupFunction _setup;
    HitFunction _hit;
    NodeScope::TeardownFunction _teardown;
};

} // namespace Qor::Chart::Render
