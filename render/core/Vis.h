#pragma once

#include "framework/core/NodeList.h"
#include "framework/core/NodePath.h"
#include "framework/types/BoundingBox.h"
#include "render/Export.h"
#include "render/core/ActiveIterator.h"
#include "render/core/CallbackTypeBitSet.h"
#include "render/core/ExplicitModificationTracker.h"
#include "render/core/HandledCallbacks.h"
#include "render/core/NodeStatus.h"

#include <boost/any.hpp>

#include <cstdint>
#include <list>
#include <string>

namespace Qor::Chart::Utility {
template <class T>
class Scoped;
}

namespace Qor::Chart::Ogl {
class Agl;
}

namespace Qor::Chart::Model {
class ModelNode;
}

namespace Qor::Chart::Render {

class DrawContext;
class UpdateContext;
struct HitRecord;
struct HitResult;
struct PickPoint;
class SelectRecord;

/// Kinds of change that visual nodes add to those of the core.
enum VisModifiableType : int {
    /// A node took up or gave up a hook of the update itself: unlike a change of the drawing passes, this one makes the
    /// next update run the node's hooks.
    ModifiableTypeUpdateHook = 1007,
};

/// A node of the visual tree. Each one mirrors a node of the model tree: it is made by the `Generator`, brought up to
/// date by the `UpdateLoop`, given its path by the `UpdateNodePathLoop`, drawn by the `RenderLoop` and picked by the hit
/// loops.
///
/// A concrete node overrides the hooks it needs and registers each of them with `RegisterCB`; a hook that is not
/// registered is never called. Registering notifies the tree and therefore asks for the source model: do it in the
/// constructor of the concrete class, never before its model handle exists.
///
/// A node is drawn and picked while it is active, valid and not pending. A hook that fails makes its node invalid; any
/// change that reaches the node makes it valid again, and the next update retries it.
class QOR_VIS_API Vis : public Core::NodeList<Vis> {
public:
    using NodeStatus = Render::NodeStatus;
    using DrawResult = Render::DrawResult;

    enum Flags : int {
        VisFlagContextRoot = 1, ///< opens a context of its own for its subtree
        VisFlagSecond = 2, ///< kept for the node types; the traversals do not read it
        VisFlagSelfManaged = 4, ///< makes its children itself, and lives on without its model node
    };

    static constexpr std::size_t CacheLine = 64;
    static constexpr int LowestLayer = -30000;
    static constexpr int HighestLayer = 30001;

    ~Vis() override;

    /// Receives a change of the node, its children or its model: repairs an invalid node, wakes a pending one, and
    /// records the change. The dependents of a disabled node see it from further away, so that they do not take it for
    /// one of their own.
    void TouchThis(ModifiableType p_type, Change p_change, Relationship p_relationship,
        Core::WeakPtr<Core::Node> const& p_node, std::string const& p_name, boost::any const& p_data) override;

    void Dump(std::ostream& p_stream, Core::Verbosity p_verbosity, std::uint64_t p_depth) const override;

    /// The model node that this node mirrors; empty when there never was one.
    virtual Core::WeakPtr<Model::ModelNode> SourceModel() const = 0;

    /// Active, valid and not pending.
    bool IsActive() const noexcept {
        return (_flags & (FlagActive | FlagValid | FlagPending)) == (FlagActive | FlagValid);
    }
    bool IsValid() const noexcept { return Has(FlagValid); }
    bool IsPending() const noexcept { return Has(FlagPending); }
    /// A touch has arrived while the node was pending; the next complete update reports its completion.
    bool IsPendingUpdateAttempt() const noexcept { return Has(FlagPendingUpdateAttempt); }
    bool IsDisabled() const noexcept { return Has(FlagDisabled); }
    bool IsFlagged(Flags p_flag) const noexcept { return Has(static_cast<std::uint8_t>(p_flag)); }

    /// Whether the node takes part at all: not disabled, and its model node enabled. Without its model node only a
    /// self-managed node does.
    bool IsEnabled() const;

    /// Asks the processor to bring what `IsEnabled` and `SetActive` read into its cache.
    void Prefetch() const noexcept {
        char const* const begin = reinterpret_cast<char const*>(this);
        for (std::size_t line = 0; line < sizeof(Vis) + CacheLine; line += CacheLine)
            __builtin_prefetch(begin + line);
    }

    void SetActive(bool p_active) noexcept { Write(FlagActive, p_active); }
    void SetDisabled(bool p_disabled) noexcept { Write(FlagDisabled, p_disabled); }
    void SetInvalid() noexcept { Write(FlagValid, false); }
    void SetPending() noexcept { Write(FlagPending, true); }

    /// @throws std::out_of_range for a value outside 0 to 15
    bool IsHandled(HandledCallbacks p_callback) const { return _handled.Has(p_callback); }
    HandledCallbackSet Handled() const noexcept { return _handled; }

    /// The passes that have work at this node or below it, as of its last update.
    CallbackTypeBitSet& OptimalPaths() noexcept { return _optimalPaths; }
    CallbackTypeBitSet const& OptimalPaths() const noexcept { return _optimalPaths; }

    /// The node's path from the root, undefined until the node path loop first met the node; then it never changes.
    Core::NodePath const& GetPath() const noexcept { return _path; }

    /// The box of the node and its active children in the coordinates of the enclosing pane, as of its last update.
    Types::BoundingBox_Base<double> const& BoundingBox() const noexcept { return _boundingBox; }

    /// Siblings are drawn in the order of their layers; equal layers in the order in which they were added.
    std::int16_t GetLayer() const noexcept { return _layer; }
    void SetLayer(std::int16_t p_layer) noexcept { _layer = p_layer; }

    ActiveIterator ActiveBegin() const noexcept { return {begin(), end()}; }
    ActiveIterator ActiveEnd() const noexcept { return {end(), end()}; }
    /// Whether the last update left no active child.
    bool ActiveEmpty() const noexcept { return !_hasActiveChildren; }
    bool HasActiveChildren() const noexcept { return _hasActiveChildren; }

    /// The node whose child it is, the first of several; null at the top of a tree.
    Vis const* Parent() const noexcept;
    /// Whether the node is in the tree of this root, and it and all above it are active and enabled.
    bool TakesPartIn(Vis const& p_root) const;

    /// For event handlers: whether the node itself wants the presses of keys.
    void SetTakesKeys(bool p_takes) noexcept { _takesKeys = p_takes; }
    /// Whether the node or an active one below it wants them, as of its last update.
    bool HasKeyTakers() const noexcept { return _hasKeyTakers; }

    ExplicitModificationTracker const& Tracker() const noexcept { return _tracker; }

protected:
    Vis();
    /// @param p_flags  any of `Flags`
    explicit Vis(int p_flags);

    /// Takes up a hook of the draw, pick or basic update passes; does nothing when it is taken up already.
    /// @param p_callback  0 to 11; other values up to 15 are reported and ignored: see `RegisterUpdateHook`
    /// @throws std::out_of_range for a value outside 0 to 15
    void RegisterCB(HandledCallbacks p_callback);
    /// Gives a hook up; the mirror of `RegisterCB`.
    void UnregisterCB(HandledCallbacks p_callback);

    /// Takes up `HandledPostUpdate`, `HandledUpdateModel` or `HandledRefreshUpdateContext`. The next update runs all
    /// hooks of the node.
    void RegisterUpdateHook(HandledCallbacks p_callback);
    void UnregisterUpdateHook(HandledCallbacks p_callback);

    /// For a node that has its tracker watch others as well.
    ExplicitModificationTracker& OwnTracker() noexcept { return _tracker; }

private:
    friend class VisHooks;

    enum FlagBits : std::uint8_t {
        FlagDisabled = 8,
        FlagValid = 16,
        FlagActive = 32,
        FlagPending = 64,
        FlagPendingUpdateAttempt = 128,
    };

    /// Changes the context for the node's own later hooks and its subtree.
    virtual void DoRefreshUpdateContext(UpdateContext& p_context);
    /// Brings the model up to date before the children are; called twice per update, the second answer counts.
    virtual NodeStatus DoUpdateModel(UpdateContext const& p_context);
    /// Builds what the node draws from its model. Model children that are added here or later in the update get no visual
    /// nodes: only `DoUpdateModel`, or a listener after the traversal, may add such.
    virtual NodeStatus DoUpdate(UpdateContext const& p_context);
    /// Runs when the node or its box changed, after the children.
    virtual void DoPostUpdate(UpdateContext const& p_context);
    /// Writes context values and graphics state for the node and its subtree, in the base passes; the context's values are
    /// restored by the traversal, what is pushed on the graphics' stacks is popped by the teardown.
    virtual void DoSetup(DrawContext& p_context, Utility::Scoped<Ogl::Agl>& p_agl);
    /// Draws the node, before its children; anything but 0 leaves them out.
    virtual DrawResult DoDraw(DrawContext const& p_context);
    /// Draws what marks the node, in a pass of its own after the draw pass; setup and teardown are the same.
    virtual DrawResult DoHighlight(DrawContext const& p_context);
    /// Fills the result when the point hits the node; the answer says whether to go on with the children.
    virtual bool DoHit(DrawContext const& p_context, PickPoint const& p_point, HitResult& p_result);
    /// Undoes the setup, after the children.
    virtual void DoTeardown(DrawContext const& p_context, Utility::Scoped<Ogl::Agl>& p_agl);
    // The same for the overlay passes.
    virtual void DoSetupOverlay(DrawContext& p_context, Utility::Scoped<Ogl::Agl>& p_agl);
    virtual DrawResult DoDrawOverlay(DrawContext const& p_context);
    virtual DrawResult DoHighlightOverlay(DrawContext const& p_context);
    virtual bool DoHitOverlay(DrawContext const& p_context, PickPoint const& p_point, HitResult& p_result);
    virtual void DoTeardownOverlay(DrawContext const& p_context, Utility::Scoped<Ogl::Agl>& p_agl);
    /// The node's box, given the union of its children's boxes.
    virtual Types::BoundingBox_Base<double> DoBoundingBox(Types::BoundingBox_Base<double> const& p_children);
    /// Takes or gives up the selection of what a record names.
    virtual void DoSelect(SelectRecord const& p_record, Core::NodePath const& p_path, bool p_selected);
    /// Appends the records of what a hit selects; appends none by default.
    virtual void GetSelectRecords(HitRecord const& p_hit, std::list<SelectRecord>& p_records);

    bool Has(std::uint8_t p_bit) const noexcept { return (_flags & p_bit) != 0; }
    void Write(std::uint8_t p_bit, bool p_on) noexcept {
        _flags = static_cast<std::uint8_t>(p_on ? _flags | p_bit : _flags & ~p_bit);
    }
    void ClearPendingUpdateAttempt() noexcept { Write(FlagPendingUpdateAttempt, false); }
    void WriteHandled(HandledCallbacks p_callback, bool p_on, int p_type);

    // What an update asks of every child stands together: the passes over a million children read as little as possible.
    std::int16_t _layer = 0;
    std::uint8_t _flags;
    bool _hasActiveChildren : 1 = false;
    bool _hasNewPaths : 1 = true; ///< a node at or below this one may have no path yet
    bool _wasEntered : 1 = false; ///< the update under way has run this node's hooks; its parent clears it
    bool _takesKeys : 1 = false;
    bool _hasKeyTakers : 1 = false;
    HandledCallbackSet _handled;
    CallbackTypeBitSet _optimalPaths;
    ExplicitModificationTracker _tracker;
    Types::BoundingBox_Base<double> _boundingBox;
    Core::NodePath _path;
};

/// The key by which the traversals reach what a node keeps from everyone else. Only they derive from it.
class VisHooks {
protected:
    // Not defaulted, so that a loop may be a constant without an initialiser.
    VisHooks() noexcept {} // NOLINT(modernize-use-equals-default)

    static void RefreshUpdateContext(Vis& p_vis, UpdateContext& p_context) { p_vis.DoRefreshUpdateContext(p_context); }
    static NodeStatus UpdateModel(Vis& p_vis, UpdateContext const& p_context) { return p_vis.DoUpdateModel(p_context); }
    static NodeStatus Update(Vis& p_vis, UpdateContext const& p_context) { return p_vis.DoUpdate(p_context); }
    static void PostUpdate(Vis& p_vis, UpdateContext const& p_context) { p_vis.DoPostUpdate(p_context); }
    static Types::BoundingBox_Base<double> BoundingBox(Vis& p_vis, Types::BoundingBox_Base<double> const& p_children) {
        return p_vis.DoBoundingBox(p_children);
    }

    static void Setup(Vis& p_vis, DrawContext& p_context, Utility::Scoped<Ogl::Agl>& p_agl) {
        p_vis.DoSetup(p_context, p_agl);
    }
    static void SetupOverlay(Vis& p_vis, DrawContext& p_context, Utility::Scoped<Ogl::Agl>& p_agl) {
        p_vis.DoSetupOverlay(p_context, p_agl);
    }
    static DrawResult Draw(Vis& p_vis, DrawContext const& p_context) { return p_vis.DoDraw(p_context); }
    static DrawResult DrawOverlay(Vis& p_vis, DrawContext const& p_context) { return p_vis.DoDrawOverlay(p_context); }
    static DrawResult Highlight(Vis& p_vis, DrawContext const& p_context) { return p_vis.DoHighlight(p_context); }
    static DrawResult HighlightOverlay(Vis& p_vis, DrawContext const& p_context) {
        return p_vis.DoHighlightOverlay(p_context);
    }
    static bool Hit(Vis& p_vis, DrawContext const& p_context, PickPoint const& p_point, HitResult& p_result) {
        return p_vis.DoHit(p_context, p_point, p_result);
    }
    static bool HitOverlay(Vis& p_vis, DrawContext const& p_context, PickPoint const& p_point, HitResult& p_result) {
        return p_vis.DoHitOverlay(p_context, p_point, p_result);
    }
    static void Teardown(Vis& p_vis, DrawContext const& p_context, Utility::Scoped<Ogl::Agl>& p_agl) {
        p_vis.DoTeardown(p_context, p_agl);
    }
    static void TeardownOverlay(Vis& p_vis, DrawContext const& p_context, Utility::Scoped<Ogl::Agl>& p_agl) {
        p_vis.DoTeardownOverlay(p_context, p_agl);
    }

    static void Select(Vis& p_vis, SelectRecord const& p_record, Core::NodePath const& p_path, bool p_selected) {
        p_vis.DoSelect(p_record, p_path, p_selected);
    }
    static void GetSelectRecords(Vis& p_vis, HitRecord const& p_hit, std::list<SelectRecord>& p_records) {
        p_vis.GetSelectRecords(p_hit, p_records);
    }

    static ExplicitModificationTracker& Tracker(Vis& p_vis) noexcept { return p_vis._tracker; }
    static void ClearPendingUpdateAttempt(Vis& p_vis) noexcept { p_vis.ClearPendingUpdateAttempt(); }
    static void SetBoundingBox(Vis& p_vis, Types::BoundingBox_Base<double> const& p_box) noexcept {
        p_vis._boundingBox = p_box;
    }
    static void SetHasActiveChildren(Vis& p_vis, bool p_any) noexcept { p_vis._hasActiveChildren = p_any; }
    static void SetHasKeyTakers(Vis& p_vis, bool p_anyBelow) noexcept {
        p_vis._hasKeyTakers = p_vis._takesKeys || p_anyBelow;
    }
    static void SetEntered(Vis& p_vis) noexcept { p_vis._wasEntered = true; }
    /// Whether the update under way has run the node's hooks; forgets it.
    static bool TakeEntered(Vis& p_vis) noexcept {
        bool const wasEntered = p_vis._wasEntered;
        p_vis._wasEntered = false;
        return wasEntered;
    }
    static bool HasNewPaths(Vis const& p_vis) noexcept { return p_vis._hasNewPaths; }
    static void ClearNewPaths(Vis& p_vis) noexcept { p_vis._hasNewPaths = false; }
    static void SetPath(Vis& p_vis, Core::NodePath p_path) noexcept { p_vis._path = std::move(p_path); }
};

inline void ActiveIterator::SkipInactive() noexcept {
    while (!(_at == _end) && (!*_at || !(*_at)->IsActive()))
        ++_at;
}

} // namespace Qor::Chart::Render
