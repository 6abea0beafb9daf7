#pragma once

#include "render/Export.h"
#include "render/core/Vis.h"

namespace Qor::Chart::Model {
class ModelNode;
}

namespace Qor::Chart::Render {

class UpdateContext;
class UpdateRun;

/// Brings a visual tree up to date with its model, at the cost of what changed: a subtree in which nothing changed is not
/// entered. In a changed node it runs the model hook, follows the children that the model gained and lost, runs the
/// update hook, goes down into the active children, and then gathers the node's box and the passes that have work below
/// it. What a hook throws is reported through the context's dispatcher and makes the node invalid; the traversal goes on.
///
///     unsigned visited = 0, updated = 0;
///     UpdateLoop()(root, context, visited, updated);
class QOR_VIS_API UpdateLoop : private VisHooks {
public:
    /// @param p_visited  grows by one for every node that is reached, disabled ones included
    /// @param p_updated  grows by one for every update hook that is called
    /// @throws Core::CyclicDependencyFoundExcept when a node is its own ancestor
    /// @throws Core::TreeTooDeepExcept when the stack does not suffice
    void operator()(
        Core::Ptr<Vis> const& p_root, UpdateContext const& p_context, unsigned& p_visited, unsigned& p_updated) const;

private:
    struct Step;

    template <class ChildrenVisitor>
    static bool UpdateNode(Core::Ptr<Vis> const& p_node, ChildrenVisitor const& p_visitChildren, UpdateRun& p_run);

    static bool BeginNode(Vis& p_vis, UpdateRun& p_run, Step& p_step);
    static void UpdateModel(Vis& p_vis, UpdateRun& p_run);
    static void FollowModel(Vis& p_vis, UpdateRun& p_run, Step& p_step);
    static void RemoveChildren(Vis& p_vis);
    static void AddChildren(
        Vis& p_vis, std::vector<Core::Ptr<Model::ModelNode>> const& p_models, UpdateRun& p_run, Step& p_step);
    static void UpdateThis(Vis& p_vis, UpdateRun& p_run, Step& p_step);
    static void UpdateHook(Vis& p_vis, UpdateRun& p_run, Step& p_step);
    static void ActivateChildren(Vis& p_vis, Step& p_step);
    static void RefreshContext(Vis& p_vis, UpdateRun& p_run, Step& p_step);
    static void GatherChildren(Vis& p_vis, UpdateRun& p_run, Step& p_step);
    static void UpdateOptimalPaths(Vis& p_vis, CallbackTypeBitSet p_children);
    static void ReportCompletion(Vis& p_vis, UpdateRun& p_run);
    static void EndNode(Vis& p_vis, UpdateRun& p_run, Step& p_step);
    static bool LayerSortNodes(Core::Ptr<Vis> const& p_left, Core::Ptr<Vis> const& p_right) noexcept;
};

} // namespace Qor::Chart::Render
