#include "render/loops/UpdateLoop.h"

#include "render/context/EventDispatcher.h"
#include "render/context/UpdateContext.h"
#include "render/loops/FailureReport.h"
#include "render/loops/Generator.h"
#include "render/loops/UpdateRun.h"

#include "framework/algorithms/DepthFirstSearch.h"
#include "framework/core/Exceptions.h"
#include "framework/model/ModelNode.h"
#include "framework/model/Events.h"
#include "framework/utility/Ensure.h"
#include "framework/utility/Logger.h"

#include <algorithm>
#include <memory>
#include <unordered_set>
#include <vector>

namespace Qor::Chart::Render {

namespace {

using Box = Types::BoundingBox_Base<double>;

qordebug::channel const& FrameChannel() {
    static qordebug::channel const& channel = Utility::GetLogger().get_channel("Gtm");
    return channel;
}

qordebug::channel const& NodeChannel() {
    static qordebug::channel const& channel = Utility::GetLogger().get_channel("UpdateLoop");
    return channel;
}

[[gnu::noinline, gnu::cold]] void ReportMissingFactory(Model::ModelNode const& p_model) {
    Utility::GetLogger().err("cerr") << "Factory for \"" << p_model.TypeName() << "\" is not registered!";
}

int ClampedLayer(Vis const& p_vis) noexcept {
    return std::clamp<int>(p_vis.GetLayer(), Vis::LowestLayer, Vis::HighestLayer);
}

bool OnCycle(Core::Ptr<Vis> const& p_node) {
    throw Core::CyclicDependencyFoundExcept("while updating the visual tree, at the node \"" + p_node->Name() + "\"");
}

} // namespace

/// What the steps of one node's update hand to each other.
struct UpdateLoop::Step {
    bool hasChanged = false;
    bool hasFailed = false; ///< a hook that runs after the update hook threw
    bool isSorted = false; ///< as far as is known
    bool areChildrenFresh = false; ///< this update has asked the children whether they are enabled
    std::unique_ptr<std::vector<Core::WeakPtr<Core::Node>>> toRetry; ///< children that could not be made this time
};

void UpdateLoop::operator()(
    Core::Ptr<Vis> const& p_root, UpdateContext const& p_context, unsigned& p_visited, unsigned& p_updated) const {
    if (!p_root || !p_root->IsEnabled())
        return;
    Utility::GetLogger().out(FrameChannel()) << "Begin Update ..................................";
    {
        Core::DestructionScope const keepDroppedNodes;
        UpdateRun run(p_context, p_visited, p_updated);
        auto const updateNode = [&run](Core::Ptr<Vis> const& p_node, auto const& p_visitChildren) {
            return UpdateNode(p_node, p_visitChildren, run);
        };
        auto search = Algorithms::DepthFirstSearch<Core::Ptr<Vis>, ActiveIterator>::Make(
            "updating the visual tree", updateNode, &OnCycle);
        search(p_root);
    }
    Utility::GetLogger().out(FrameChannel()) << "End Update ..................................";
}

/// Updates one node and what is below it. This is the frame that the recursion repeats: it holds next to nothing, and
/// everything that needs room stands in the steps that it calls.
template <class ChildrenVisitor>
bool UpdateLoop::UpdateNode(Core::Ptr<Vis> const& p_node, ChildrenVisitor const& p_visitChildren, UpdateRun& p_run) {
    Vis& vis = *p_node;
    bool const areSiblingsFresh = p_run.areChildrenFresh;
    Step step;
    if (!BeginNode(vis, p_run, step))
        return true;
    if (vis.IsValid() && !vis.IsPending()) {
        p_run.context.CreateCheckPoint();
        RefreshContext(vis, p_run, step);
        p_run.accumulators.emplace_back();
        p_run.areChildrenFresh = step.areChildrenFresh;
        p_visitChildren(vis.ActiveBegin(), vis.ActiveEnd());
        p_run.areChildrenFresh = areSiblingsFresh;
        GatherChildren(vis, p_run, step);
        p_run.context.RestoreCheckPoint();
    } else if (!vis.IsPending()) {
        FailureReport::Invalid(vis, p_run.context.Dispatcher(), Utility::AtLine("UpdateLoop::UpdateNode", __LINE__));
    }
    EndNode(vis, p_run, step);
    return true;
}

/// Everything that comes before the children. False when there is nothing to do for the node or below it.
[[gnu::noinline]] bool UpdateLoop::BeginNode(Vis& p_vis, UpdateRun& p_run, Step& p_step) {
    ++p_run.visited;
    ExplicitModificationTracker const& tracker = Tracker(p_vis);
    bool const isModified = tracker.Modified();
    if ((isModified || !p_run.areChildrenFresh || p_vis.IsDisabled()) && !p_vis.IsEnabled())
        return false;
    if (!isModified) {
        p_run.PassUp(p_vis.OptimalPaths());
        return false;
    }
    SetEntered(p_vis);
    p_run.EnterLog(p_vis);
    SetHasActiveChildren(p_vis, false);
    if (tracker.OnlyCallbacksModified()) {
        ActivateChildren(p_vis, p_step); // one that was invalid or pending may have come back by such a change
        return true;
    }
    UpdateModel(p_vis, p_run);
    if (!p_vis.IsFlagged(Vis::VisFlagSelfManaged))
        FollowModel(p_vis, p_run, p_step);
    UpdateThis(p_vis, p_run, p_step);
    return true;
}

/// The hook runs twice: what it changes in the model may call for a second look. The second answer counts.
void UpdateLoop::UpdateModel(Vis& p_vis, UpdateRun& p_run) {
    if (!p_vis.IsValid() || p_vis.IsPending() || !p_vis.IsHandled(HandledUpdateModel))
        return;
    try {
        VisHooks::UpdateModel(p_vis, p_run.context);
        NodeStatus const status = VisHooks::UpdateModel(p_vis, p_run.context);
        if (status == NodeStatusInvalid)
            p_vis.SetInvalid();
        else if (status == NodeStatusPending)
            p_vis.SetPending();
    } catch (...) {
        p_run.Caught(p_vis, "DoUpdateModel", __PRETTY_FUNCTION__, __LINE__);
        p_vis.SetInvalid();
    }
}

/// The changes of the child list reach the node like all others, but they are no reason to retry a node that the model
/// hook made invalid or pending.
void UpdateLoop::FollowModel(Vis& p_vis, UpdateRun& p_run, Step& p_step) {
    ExplicitModificationTracker const& tracker = Tracker(p_vis);
    bool const wasValid = p_vis.IsValid();
    bool const wasPending = p_vis.IsPending();
    std::vector<Core::Ptr<Model::ModelNode>> added;
    for (auto record = tracker.BeginAdded(); record != tracker.EndAdded(); ++record) {
        if (!record->isModelNode)
            continue;
        auto const model = Core::StaticCast<Model::ModelNode>(record->node.Lock());
        if (QOR_ENSURE_TEXT(model, "An added node expired earlier but was never removed!"))
            added.push_back(model);
    }
    if (tracker.BeginRemoved() != tracker.EndRemoved())
        RemoveChildren(p_vis);
    AddChildren(p_vis, added, p_run, p_step);
    ActivateChildren(p_vis, p_step);
    if (!wasValid)
        p_vis.SetInvalid();
    if (wasPending)
        p_vis.SetPending();
}

/// Drops the children whose model nodes left; of several with the same model node, the first.
void UpdateLoop::RemoveChildren(Vis& p_vis) {
    ExplicitModificationTracker const& tracker = Tracker(p_vis);
    std::unordered_set<Core::WeakPtr<Core::Node>> removed;
    for (auto record = tracker.BeginRemoved(); record != tracker.EndRemoved(); ++record)
        removed.insert(record->node);
    std::vector<Core::Ptr<Vis>> leaving;
    for (Core::Ptr<Vis> const& child : p_vis) {
        auto const model = child->SourceModel();
        if (!model.IsEmpty() && removed.erase(model) > 0)
            leaving.push_back(child);
        if (removed.empty())
            break;
    }
    for (Core::Ptr<Vis> const& child : leaving)
        p_vis.Remove(child);
}

void UpdateLoop::AddChildren(
    Vis& p_vis, std::vector<Core::Ptr<Model::ModelNode>> const& p_models, UpdateRun& p_run, Step& p_step) {
    for (Core::Ptr<Model::ModelNode> const& model : p_models) {
        if (!p_run.context.Generator().IsRegistered(model)) {
            ReportMissingFactory(*model);
            continue;
        }
        try {
            if (Core::Ptr<Vis> const child = p_run.context.Generator()(model))
                p_vis.Add(child);
        } catch (...) {
            p_run.Caught(p_vis, "Generator", __PRETTY_FUNCTION__, __LINE__);
            if (!p_step.toRetry)
                p_step.toRetry = std::make_unique<std::vector<Core::WeakPtr<Core::Node>>>();
            p_step.toRetry->emplace_back(model);
        }
    }
}

void UpdateLoop::UpdateThis(Vis& p_vis, UpdateRun& p_run, Step& p_step) {
    bool const isSelfManaged = p_vis.IsFlagged(Vis::VisFlagSelfManaged);
    bool const isDue = p_vis.IsValid() && !p_vis.IsPending() && p_vis.IsHandled(HandledUpdate) &&
        (isSelfManaged || Tracker(p_vis).ExplicitModified());
    if (isDue)
        UpdateHook(p_vis, p_run, p_step);
    if ((isDue || isSelfManaged) && p_vis.IsValid() && !p_vis.IsPending())
        ActivateChildren(p_vis, p_step);
}

void UpdateLoop::UpdateHook(Vis& p_vis, UpdateRun& p_run, Step& p_step) {
    ++p_run.updated;
    try {
        NodeStatus const status = VisHooks::Update(p_vis, p_run.context);
        if (status == NodeStatusInvalid)
            p_vis.SetInvalid();
        else if (status == NodeStatusPending)
            p_vis.SetPending();
        else
            p_step.hasChanged = true;
    } catch (...) {
        p_run.Caught(p_vis, "DoUpdate", __PRETTY_FUNCTION__, __LINE__);
        p_vis.SetInvalid();
    }
}

void UpdateLoop::ActivateChildren(Vis& p_vis, Step& p_step) {
    // Their memory may be anywhere: what the next ones need is fetched ahead, first the child, then the way to its model.
    constexpr int Distance = 6;
    auto const end = p_vis.end();
    auto child = p_vis.begin();
    auto near = child;
    for (int step = 0; step < Distance && near != end; ++step)
        ++near;
    auto far = near;
    for (int step = 0; step < Distance && far != end; ++step)
        ++far;
    for (; child != end; ++child) {
        if (far != end) {
            (*far)->Prefetch();
            ++far;
        }
        if (near != end) {
            (*near)->SourceModel().Prefetch();
            ++near;
        }
        (*child)->SetActive((*child)->IsEnabled());
    }
    p_step.areChildrenFresh = true;
}

/// Lets the node change the context for its subtree; a change that it did not complete is taken back.
[[gnu::noinline]] void UpdateLoop::RefreshContext(Vis& p_vis, UpdateRun& p_run, Step& p_step) {
    if (!p_vis.IsHandled(HandledRefreshUpdateContext))
        return;
    try {
        VisHooks::RefreshUpdateContext(p_vis, p_run.context);
    } catch (...) {
        p_run.Caught(p_vis, "DoRefreshUpdateContext", __PRETTY_FUNCTION__, __LINE__);
        p_step.hasFailed = true;
        p_run.context.RestoreCheckPoint();
        p_run.context.CreateCheckPoint();
    }
}

/// Takes up what the children's updates came to: which of them are active or take keys, their box and their passes.
[[gnu::noinline]] void UpdateLoop::GatherChildren(Vis& p_vis, UpdateRun& p_run, Step& p_step) {
    Box box;
    bool anyActive = false;
    bool anyTakesKeys = false;
    bool isSorted = true;
    int layer = Vis::LowestLayer;
    for (Core::Ptr<Vis> const& entry : p_vis) {
        Vis& child = *entry;
        bool const wasEntered = TakeEntered(child);
        bool isActive = child.IsActive();
        bool const isKnown = isActive && !wasEntered && p_step.areChildrenFresh && !child.IsDisabled();
        if (!isKnown || Tracker(child).Modified()) {
            isActive = child.IsValid() && !child.IsPending() && child.IsEnabled();
            child.SetActive(isActive);
        }
        anyActive = anyActive || isActive;
        anyTakesKeys = anyTakesKeys || (isActive && child.HasKeyTakers());
        if (isActive && !child.IsFlagged(Vis::VisFlagContextRoot) && child.BoundingBox().IsDefined())
            box.Add(child.BoundingBox());
        int const next = ClampedLayer(child);
        isSorted = isSorted && layer <= next;
        layer = next;
    }
    p_step.isSorted = isSorted && !p_vis.IsHandled(HandledPostUpdate);
    SetHasActiveChildren(p_vis, anyActive);
    SetHasKeyTakers(p_vis, anyTakesKeys);

    if (p_vis.IsHandled(HandledBoundingBox)) {
        try {
            box = VisHooks::BoundingBox(p_vis, box);
        } catch (...) {
            p_run.Caught(p_vis, "DoBoundingBox", __PRETTY_FUNCTION__, __LINE__);
            p_step.hasFailed = true;
        }
    }
    if (box != p_vis.BoundingBox())
        p_step.hasChanged = true;
    SetBoundingBox(p_vis, box);
    if (p_step.hasChanged && p_vis.IsHandled(HandledPostUpdate)) {
        try {
            VisHooks::PostUpdate(p_vis, p_run.context);
        } catch (...) {
            p_run.Caught(p_vis, "DoPostUpdate", __PRETTY_FUNCTION__, __LINE__);
            p_step.hasFailed = true;
        }
    }
    if (p_step.hasFailed) // only now: changes that came from below meanwhile do not repair the node
        p_vis.SetInvalid();
    CallbackTypeBitSet const children = p_run.accumulators.back();
    p_run.accumulators.pop_back();
    UpdateOptimalPaths(p_vis, children);
    if (p_vis.IsValid()) // a hook above may have failed: nobody descends into an invalid node
        p_run.PassUp(p_vis.OptimalPaths());
}

void UpdateLoop::UpdateOptimalPaths(Vis& p_vis, CallbackTypeBitSet p_children) {
    struct Pass {
        CallbackType type;
        HandledCallbacks hook;
        bool isOverlay;
    };
    static constexpr Pass passes[] = {
        {CallbackHit, HandledHit, false},
        {CallbackDraw, HandledDraw, false},
        {CallbackHighlight, HandledHighlight, false},
        {CallbackHitOverlay, HandledHitOverlay, true},
        {CallbackDrawOverlay, HandledDrawOverlay, true},
        {CallbackHighlightOverlay, HandledHighlightOverlay, true},
    };
    bool const hasScene =
        p_vis.IsFlagged(Vis::VisFlagContextRoot) || p_vis.BoundingBox().IsDefined() || p_vis.HasActiveChildren();
    CallbackTypeBitSet paths;
    for (Pass const& pass : passes) {
        if ((pass.isOverlay || hasScene) && (p_vis.IsHandled(pass.hook) || p_children.Has(pass.type)))
            paths.Set(pass.type);
    }
    p_vis.OptimalPaths() = paths;
}

/// Tells the listeners of the model node that what was pending is done.
[[gnu::noinline]] void UpdateLoop::ReportCompletion(Vis& p_vis, UpdateRun& p_run) {
    auto const model = p_vis.SourceModel();
    if (!QOR_ENSURE_TEXT(!model.Expired(), "The weak pointer has expired!"))
        return;
    Utility::GetLogger().out(NodeChannel())
        << "UpdateLoop: Dispatching PendingUpdateCompleteArgs for model node: " << *model.Peek();
    try {
        p_run.context.Dispatcher().DispatchEvent(
            model, std::make_shared<Model::Events::PendingUpdateCompletedArgs>(model, p_vis.BoundingBox()));
    } catch (...) {
        p_run.Caught(p_vis, "DispatchEvent", __PRETTY_FUNCTION__, __LINE__);
    }
}

/// Everything that comes after the children, also for a node that turned pending or invalid.
[[gnu::noinline]] void UpdateLoop::EndNode(Vis& p_vis, UpdateRun& p_run, Step& p_step) {
    if (p_vis.IsPendingUpdateAttempt() && !p_vis.IsPending())
        ReportCompletion(p_vis, p_run);
    ClearPendingUpdateAttempt(p_vis);
    if (!p_step.isSorted && !std::is_sorted(p_vis.begin(), p_vis.end(), &LayerSortNodes))
        p_vis.StableSort(&LayerSortNodes);
    p_vis.CloseHoles();
    Tracker(p_vis).Reset();
    if (p_step.toRetry) {
        for (Core::WeakPtr<Core::Node> const& model : *p_step.toRetry)
            Tracker(p_vis).RetryAdded(model);
    }
    p_run.LeaveLog();
}

bool UpdateLoop::LayerSortNodes(Core::Ptr<Vis> const& p_left, Core::Ptr<Vis> const& p_right) noexcept {
    return ClampedLayer(*p_left) < ClampedLayer(*p_right);
}

} // namespace Qor::Chart::Render
