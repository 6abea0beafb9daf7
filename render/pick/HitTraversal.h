#pragma once

#include "framework/core/Exceptions.h"
#include "framework/types/Math.h"
#include "framework/utility/StackLimit.h"
#include "render/context/AutoDiscontinuity.h"
#include "render/context/DrawContext.h"
#include "render/context/PickPoint.h"
#include "render/core/Vis.h"
#include "render/loops/NodeScope.h"
#include "render/loops/VisitChildren.h"
#include "render/pick/HitPass.h"
#include "render/pick/HitResult.h"

#include <cstdint>
#include <utility>

namespace Qor::Chart::Render {

/// What a target says about a node before anything is done for it.
enum class HitEntry {
    Visit,
    SkipNode, ///< with its subtree
    SkipSiblings, ///< the node, and those after it
};

/// One pass of a pick down a tree, with the same surroundings of a node as in a draw. What is picked, a point or a
/// rectangle, is the target's affair. A target has a type `Level`, what it hands from a node to its children, and says
/// - `Enter(node, context, level)`: whether to visit a node at all,
/// - `LevelOf(node, level)`: the level of a node, given that of its parent,
/// - `Aim(context, level, point)`: after the setup, the point in pixels of the window that stands for the target; false
///   when the node and its children cannot be hit. It may change the level,
/// - `Tests(level)`: whether nodes are tested here,
/// and takes the records, `Add(record, level)`. A node that is neither hit nor a context root costs no memory.
template <class Target>
class HitTraversal {
public:
    using Level = typename Target::Level;

    /// @param p_stage    under which failures are reported
    /// @param p_visited  is counted up by each node that the pass comes to, those left out included
    /// @param p_tested   is counted up by each hit hook that is called
    HitTraversal(Target& p_target, HitPass const& p_pass, NodeScope::Stage const& p_stage, ContextRootStack& p_roots,
        unsigned& p_visited, unsigned& p_tested)
        : _target(p_target)
        , _pass(p_pass)
        , _stage(p_stage)
        , _roots(p_roots)
        , _visited(p_visited)
        , _tested(p_tested)
        , _stackLimit(Utility::StackLimit::Current()) {}

    /// One node and what is below it. This and the next two functions are the frames that repeat at every level; whatever
    /// needs room stands elsewhere. The handle is not looked at again once a hook has run: the hook may have removed the
    /// node.
    /// @return false when the node's later siblings are to be left out
    /// @throws Core::TreeTooDeepExcept when the stack does not suffice
    bool Visit(Core::Ptr<Vis> const& p_node, DrawContext& p_context, Level const& p_level) {
        Vis& node = *p_node;
        ++_visited;
        if (!node.OptimalPaths().Has(_pass.Callback()))
            return true;
        HitEntry const entry = _target.Enter(node, p_context, p_level);
        if (entry != HitEntry::Visit)
            return entry == HitEntry::SkipNode;
        if (_stackLimit.IsNear())
            ThrowTooDeep();
        ++_depth;
        try {
            VisitNode(node, p_context, p_level);
        } catch (Core::TreeTooDeepExcept const&) {
            throw;
        } catch (...) {
            NodeScope::ReportCaught(node, p_context, _stage);
        }
        --_depth;
        return true;
    }

private:
    void VisitNode(Vis& p_node, DrawContext& p_outer, Level const& p_level) {
        NodeScope scope(p_node, p_outer, _roots);
        DrawContext& context = scope.Context();
        Level level = _target.LevelOf(p_node, p_level);
        if (!_pass.Concerns(p_node)) {
            VisitBelow(p_node, context, level);
            return;
        }
        scope.OpenCheckPoint();
        auto const visitThis = [&] {
            if (TestNode(p_node, context, level))
                VisitBelow(p_node, context, level);
        };
        scope.Run(_pass.SetupOf(p_node), _pass.TeardownOf(p_node), visitThis, _stage);
        scope.CloseCheckPoint();
    }

    void VisitBelow(Vis& p_node, DrawContext& p_context, Level const& p_level) {
        VisitChildren(p_node, [&](Core::Ptr<Vis> const& p_child) { return Visit(p_child, p_context, p_level); });
    }

    /// Whether to go on with the node's children.
    [[gnu::noinline]] bool TestNode(Vis& p_node, DrawContext const& p_context, Level& p_level) {
        PickPoint point;
        if (!_target.Aim(p_context, p_level, point))
            return false;
        if (auto const& delegate = p_context.NodeFilter().Top()) {
            bool skipsChildren = false;
            if (delegate(Core::Ptr<Vis>(&p_node), skipsChildren))
                return !skipsChildren;
        }
        return !_pass.HasHit(p_node) || !_target.Tests(p_level) || CallHit(p_node, p_context, point, p_level);
    }

    bool CallHit(Vis& p_node, DrawContext const& p_context, PickPoint const& p_point, Level const& p_level) {
        PickPoint const local{RelativeTo(p_context.Viewport().Top(), p_point.position), p_point.tolerance};
        HitResult result;
        ++_tested;
        bool const wantsChildren = _pass.CallHit(p_node, p_context, local, result);
        if (!result.records.empty())
            _target.Add(_pass.MakeRecord(p_node, std::move(result), p_context, p_point.position, _roots), p_level);
        return wantsChildren;
    }

    static Types::Pos RelativeTo(Types::Viewport<0> const& p_viewport, Types::Pos const& p_window) {
        using Types::Math::Truncate;
        Types::Pos const origin = p_viewport.Origin();
        return {
            Truncate(static_cast<double>(p_window.x) - origin.x), Truncate(static_cast<double>(p_window.y) - origin.y)};
    }

    [[gnu::cold, gnu::noinline]] void ThrowTooDeep() const { throw Core::TreeTooDeepExcept("picking", _depth); }

    Target& _target;
    HitPass const& _pass;
    NodeScope::Stage const& _stage;
    ContextRootStack& _roots;
    unsigned& _visited;
    unsigned& _tested;
    Utility::StackLimit const _stackLimit;
    std::uint32_t _depth = 0; ///< levels between the root and the node that is being visited
};

} // namespace Qor::Chart::Render
