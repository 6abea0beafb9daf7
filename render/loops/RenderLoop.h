#pragma once

#include "framework/core/Ptr.h"
#include "framework/core/WeakPtr.h"
#include "framework/utility/Scoped.h"
#include "framework/utility/StackLimit.h"
#include "render/Export.h"
#include "render/context/AutoDiscontinuity.h"
#include "render/context/DrawContext.h"
#include "render/core/CallbackType.h"
#include "render/core/Vis.h"
#include "render/loops/Layer.h"
#include "render/loops/NodeScope.h"

#include <cstdint>
#include <functional>

namespace Qor::Chart::Render {

/// Draws a visual tree for one layer in one mode, depth first, siblings in the order of the child lists. Subtrees that
/// have no work for the pass are not entered. Around every node stands a check point of the context, so that what the
/// node's setup writes holds for the node and its subtree alone. What a node throws is reported, makes this node invalid
/// and leaves out its subtree; the traversal goes on.
///
/// The base draw pass sorts what is transparent: draws that `Ogl::Agl` is to put off wait until the context root that
/// they are under, or the whole pass, is through; see `Ogl::Agl::BeginTransparency`. The order of the hooks stays what
/// it is.
///
/// Per node, in this order: pre-visit delegate, check point, setup, the node's own drawing, its active children, teardown,
/// post-visit delegate, restore. A loop object may be run any number of times.
///
///     RenderLoop base(LayerBase, DrawContext::DrawMode::Draw);
///     base(root, context);
class QOR_VIS_API RenderLoop : private VisHooks {
public:
    using VisitDelegate = std::function<void(Core::Ptr<Vis> const&)>;

    /// The hooks of one node that a pass calls; null where the node has none.
    struct Delegates {
        void (*setup)(Vis&, DrawContext&, Utility::Scoped<Ogl::Agl>&) = nullptr;
        DrawResult (*draw)(Vis&, DrawContext const&) = nullptr;
        void (*teardown)(Vis&, DrawContext const&, Utility::Scoped<Ogl::Agl>&) = nullptr;
    };

    /// @param p_layer      its lowest bit chooses the base layer
    /// @param p_mode       draw or highlight; any other is reported, and the first run throws
    /// @param p_preVisit   called before anything is done for a node that is not pruned; may be empty
    /// @param p_postVisit  called when everything is done; may be empty
    RenderLoop(
        Layer p_layer, DrawContext::DrawMode p_mode, VisitDelegate p_preVisit = {}, VisitDelegate p_postVisit = {});

    /// Draws the tree under a root; one that is not enabled draws nothing. The errors of the graphics are asked for at the
    /// end in every case.
    /// @throws Core::TreeTooDeepExcept when the stack does not suffice
    /// @throws std::out_of_range when the loop was made for a mode that cannot be drawn
    void operator()(Core::Ptr<Vis> const& p_root, DrawContext& p_context);
    /// The same, with all panes left out but one. The restriction stays in force for later runs of this object, of either
    /// form; when the pane is gone it stays what it was.
    void operator()(Core::Ptr<Vis> const& p_root, DrawContext& p_context, Core::WeakPtr<Vis> const& p_viewport);

    /// Nodes that the last run entered, those that it then pruned included.
    std::uint32_t VisitedCount() const noexcept { return _visited; }
    /// Nodes whose draw or highlight hook the last run called.
    std::uint32_t DrawnCount() const noexcept { return _drawn; }

private:
    using Agl = Utility::Scoped<Ogl::Agl>;
    using DrawFunction = DrawResult (*)(Vis&, DrawContext const&);
    using DelegatesFunction = Delegates (*)(Vis const&);

    enum OptionBits : std::uint8_t {
        OptionTraverse = 1,
        OptionViewportFilter = 2,
    };

    bool Draw(Core::Ptr<Vis> const& p_node, DrawContext& p_context, ContextRootStack& p_roots);
    void DrawNode(Vis& p_node, Core::Ptr<Vis> const& p_handle, DrawContext& p_context, ContextRootStack& p_roots,
        NodeScope::Stage const& p_stage);
    void DrawPane(Vis& p_node, Core::Ptr<Vis> const& p_handle, DrawContext& p_context, ContextRootStack& p_roots,
        NodeScope::Stage const& p_stage);
    void DrawThis(DrawFunction p_draw, Vis& p_node, DrawContext& p_context, ContextRootStack& p_roots);
    bool CallDrawHook(DrawFunction p_draw, Vis& p_node, DrawContext& p_context, NodeScope::Stage const& p_stage);
    void DrawRoot(Core::Ptr<Vis> const& p_root, DrawContext& p_context);

    bool IsFilteredOut(Vis const& p_node) const;
    bool NeedsHandle(DrawContext const& p_context) const;
    bool SortsTransparent() const;
    bool DrawsBounds(DrawContext const& p_context) const;

    DelegatesFunction CalculateDelegatesFunc() const;
    static Delegates DrawBaseDelegates(Vis const& p_node);
    static Delegates DrawOverlayDelegates(Vis const& p_node);
    static Delegates HighlightBaseDelegates(Vis const& p_node);
    static Delegates HighlightOverlayDelegates(Vis const& p_node);

    static void CallSetup(Vis& p_node, DrawContext& p_context, Agl& p_agl);
    static void CallSetupOverlay(Vis& p_node, DrawContext& p_context, Agl& p_agl);
    static DrawResult CallDraw(Vis& p_node, DrawContext const& p_context);
    static DrawResult CallDrawOverlay(Vis& p_node, DrawContext const& p_context);
    static DrawResult CallHighlight(Vis& p_node, DrawContext const& p_context);
    static DrawResult CallHighlightOverlay(Vis& p_node, DrawContext const& p_context);
    static void CallTeardown(Vis& p_node, DrawContext const& p_context, Agl& p_agl);
    static void CallTeardownOverlay(Vis& p_node, DrawContext const& p_context, Agl& p_agl);

    Layer _layer;
    DrawContext::DrawMode _mode;
    std::uint32_t _visited = 0;
    std::uint32_t _drawn = 0;
    std::uint32_t _viewportFilterId = 0;
    std::uint8_t _options = OptionTraverse;
    DelegatesFunction _delegates;
    int _callbackType;
    VisitDelegate _preVisit;
    VisitDelegate _postVisit;
    Utility::StackLimit _stackLimit; ///< of the run that is under way
    std::uint32_t _depth = 0; ///< levels between the root and the node that is being drawn
};

} // namespace Qor::Chart::Render
