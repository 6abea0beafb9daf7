#include "render/loops/RenderLoop.h"

#include "render/core/PaneMarker.h"
#include "render/loops/VisitChildren.h"
#include "framework/core/Exceptions.h"
#include "framework/library/Geometry.h"
#include "framework/ogl/Agl.h"
#include "framework/ogl/PushAttribScope.h"
#include "framework/ogl/TransparencyScope.h"
#include "framework/utility/Logger.h"

#include <QColor>

#include <utility>

namespace Qor::Chart::Render {

namespace {

using namespace Ogl::Tokens;

int GetCallbackType(DrawContext::DrawMode p_mode, Layer p_layer) {
    bool const isBase = IsBaseLayer(p_layer);
    switch (p_mode) {
    case DrawContext::DrawMode::Draw:
        return isBase ? CallbackDraw : CallbackDrawOverlay;
    case DrawContext::DrawMode::Highlight:
        return isBase ? CallbackHighlight : CallbackHighlightOverlay;
    case DrawContext::DrawMode::DrawInPlace:
        break;
    }
    Utility::GetLogger().sentry(__PRETTY_FUNCTION__);
    return Core::IModifiable::ModifiableTypeGeneric;
}

[[gnu::cold, gnu::noinline]] void ThrowTooDeep(std::uint32_t p_depth) {
    throw Core::TreeTooDeepExcept("drawing", p_depth);
}

/// Asks the context's filter about a node.
/// @param p_whole  becomes true when the node's setup, teardown and subtree are to be left out as well
bool IsSuppressed(DrawContext const& p_context, Core::Ptr<Vis> const& p_node, bool& p_whole) {
    DrawContext::NodeFilterDelegate const& filter = p_context.NodeFilter().Top();
    return filter && filter(p_node, p_whole);
}

double NonZero(double p_extent) {
    return p_extent == 0.0 ? 1.0 : p_extent;
}

/// Outlines the node's box and marks its lower corner.
[[gnu::cold, gnu::noinline]] void DrawBounds(Vis const& p_node, DrawContext const& p_context) {
    Types::BoundingBox_Base<double> const& box = p_node.BoundingBox();
    if (!box.IsDefined() || box.Min() == box.Max())
        return;
    auto const center = box.Center();
    auto const extents = box.Extents();
    auto const corner = box.Min();

    Utility::Scoped<Ogl::Agl> agl(p_context.Graphics());
    Ogl::PushAttribScope const attributes(
        agl, AGL_POINT_BIT | AGL_LINE_BIT | AGL_CURRENT_BIT | AGL_POLYGON_BIT | AGL_ENABLE_BIT);
    agl->Disable(AGL_LIGHTING);
    agl->LineWidth(1.0F);
    agl->PolygonMode(AGL_FRONT_AND_BACK, AGL_LINE);
    agl->Color(QColor(85, 85, 85, 136));
    agl->PushMatrix();
    agl->Translate(center);
    agl->Scale(NonZero(extents.x), NonZero(extents.y), NonZero(extents.z));
    agl->Draw(p_context.Geometry().UnitCube());
    agl->PopMatrix();
    agl->Enable(AGL_POINT_SMOOTH);
    agl->PointSize(10.0F);
    agl->Begin(AGL_POINTS);
    agl->Vertex(corner);
    agl->End();
}

} // namespace

RenderLoop::RenderLoop(Layer p_layer, DrawContext::DrawMode p_mode, VisitDelegate p_preVisit, VisitDelegate p_postVisit)
    : _layer(p_layer)
    , _mode(p_mode)
    , _delegates(CalculateDelegatesFunc())
    , _callbackType(GetCallbackType(p_mode, p_layer))
    , _preVisit(std::move(p_preVisit))
    , _postVisit(std::move(p_postVisit)) {}

void RenderLoop::operator()(Core::Ptr<Vis> const& p_root, DrawContext& p_context) {
    _visited = 0;
    _drawn = 0;
    auto const checkError = [&p_context] {
        Agl agl(p_context.Graphics());
        agl->CheckError();
    };
    try {
        DrawRoot(p_root, p_context);
    } catch (...) {
        checkError();
        throw;
    }
    checkError();
}

void RenderLoop::operator()(
    Core::Ptr<Vis> const& p_root, DrawContext& p_context, Core::WeakPtr<Vis> const& p_viewport) {
    if (Core::Ptr<Vis> const viewport = p_viewport.Lock()) {
        _viewportFilterId = viewport->Id();
        _options |= OptionTraverse | OptionViewportFilter;
    }
    (*this)(p_root, p_context);
}

void RenderLoop::DrawRoot(Core::Ptr<Vis> const& p_root, DrawContext& p_context) {
    if (!p_root || !p_root->IsEnabled())
        return;
    Core::DestructionScope const keepDroppedNodes;
    ContextRootStack roots;
    roots.emplace();
    _stackLimit = Utility::StackLimit::Current();
    _depth = 0;
    Ogl::TransparencyScope const transparency(SortsTransparent() ? p_context.Graphics().Get() : nullptr);
    Draw(p_root, p_context, roots);
}

/// One node of the traversal. This and the next two functions are the frames that repeat at every level; whatever needs
/// room stands elsewhere. The handle is not looked at again once a hook has run: the hook may have removed the node.
bool RenderLoop::Draw(Core::Ptr<Vis> const& p_node, DrawContext& p_context, ContextRootStack& p_roots) {
    static constexpr NodeScope::Stage stage{"RenderLoop-Setup/Teardown", __PRETTY_FUNCTION__, __LINE__};
    Vis& node = *p_node;
    ++_visited;
    if (!node.OptimalPaths().Has(_callbackType) || IsFilteredOut(node))
        return true;
    if (_stackLimit.IsNear())
        ThrowTooDeep(_depth);
    ++_depth;
    try {
        Core::Ptr<Vis> const handle = NeedsHandle(p_context) ? p_node : Core::Ptr<Vis>();
        if (node.IsFlagged(Vis::VisFlagContextRoot)) [[unlikely]]
            DrawPane(node, handle, p_context, p_roots, stage);
        else
            DrawNode(node, handle, p_context, p_roots, stage);
    } catch (Core::TreeTooDeepExcept const&) {
        throw;
    } catch (...) {
        NodeScope::ReportCaught(node, p_context, stage);
    }
    --_depth;
    return true;
}

/// What is transparent in a pane is sorted among itself.
[[gnu::noinline]] void RenderLoop::DrawPane(Vis& p_node, Core::Ptr<Vis> const& p_handle, DrawContext& p_context,
    ContextRootStack& p_roots, NodeScope::Stage const& p_stage) {
    Ogl::TransparencyScope const transparency(SortsTransparent() ? p_context.Graphics().Get() : nullptr);
    DrawNode(p_node, p_handle, p_context, p_roots, p_stage);
}

/// @param p_handle  for the delegates; empty where there are none
void RenderLoop::DrawNode(Vis& p_node, Core::Ptr<Vis> const& p_handle, DrawContext& p_context,
    ContextRootStack& p_roots, NodeScope::Stage const& p_stage) {
    NodeScope scope(p_node, p_context, p_roots);
    DrawContext& context = scope.Context();
    bool isWholeSuppressed = false;
    bool const isSuppressed = IsSuppressed(context, p_handle, isWholeSuppressed);
    if (isSuppressed && isWholeSuppressed && p_node.HasActiveChildren())
        return;
    if (_preVisit)
        _preVisit(p_handle);
    scope.OpenCheckPoint();
    if (DrawsBounds(context))
        DrawBounds(p_node, context);
    Delegates const delegates = _delegates(p_node);
    DrawFunction const draw = isSuppressed ? nullptr : delegates.draw;
    if (delegates.setup || delegates.teardown) {
        auto const drawThis = [&] { DrawThis(draw, p_node, context, p_roots); };
        scope.Run(delegates.setup, delegates.teardown, drawThis, p_stage);
    } else {
        DrawThis(draw, p_node, context, p_roots);
    }
    if (_postVisit)
        _postVisit(p_handle);
    scope.CloseCheckPoint();
}

void RenderLoop::DrawThis(DrawFunction p_draw, Vis& p_node, DrawContext& p_context, ContextRootStack& p_roots) {
    static constexpr NodeScope::Stage stage{"RenderLoop-Draw", __PRETTY_FUNCTION__, __LINE__};
    bool const hasActiveChildren = p_node.HasActiveChildren();
    bool const wantsChildren = !p_draw || CallDrawHook(p_draw, p_node, p_context, stage);
    if (!hasActiveChildren || !wantsChildren)
        return;
    VisitChildren(p_node, [&](Core::Ptr<Vis> const& p_child) { return Draw(p_child, p_context, p_roots); });
}

/// Whether the node wants its children drawn.
[[gnu::noinline]] bool RenderLoop::CallDrawHook(
    DrawFunction p_draw, Vis& p_node, DrawContext& p_context, NodeScope::Stage const& p_stage) {
    Ogl::StackDepths const depths = p_context.Graphics().Get()->Depths();
    ++_drawn;
    try {
        return p_draw(p_node, p_context) == DrawResultDescend;
    } catch (Core::TreeTooDeepExcept const&) {
        throw;
    } catch (...) {
        NodeScope::RestoreGraphics(*Agl(p_context.Graphics()), depths);
        NodeScope::ReportCaught(p_node, p_context, p_stage);
        return false;
    }
}

bool RenderLoop::IsFilteredOut(Vis const& p_node) const {
    return (_options & OptionViewportFilter) != 0 && p_node.Id() != _viewportFilterId &&
        dynamic_cast<PaneMarker const*>(&p_node) != nullptr;
}

bool RenderLoop::NeedsHandle(DrawContext const& p_context) const {
    return _preVisit || _postVisit || p_context.NodeFilter().Top();
}

/// Overlays have no depth, and what is highlighted lies on top.
bool RenderLoop::SortsTransparent() const {
    return IsBaseLayer(_layer) && _mode == DrawContext::DrawMode::Draw;
}

bool RenderLoop::DrawsBounds(DrawContext const& p_context) const {
    return p_context.ShowBounds() && IsBaseLayer(_layer) && _mode == DrawContext::DrawMode::Draw;
}

RenderLoop::DelegatesFunction RenderLoop::CalculateDelegatesFunc() const {
    bool const isBase = IsBaseLayer(_layer);
    switch (_mode) {
    case DrawContext::DrawMode::Draw:
        return isBase ? &DrawBaseDelegates : &DrawOverlayDelegates;
    case DrawContext::DrawMode::Highlight:
        return isBase ? &HighlightBaseDelegates : &HighlightOverlayDelegates;
    case DrawContext::DrawMode::DrawInPlace:
        break;
    }
    Utility::GetLogger().sentry(__PRETTY_FUNCTION__);
    return nullptr;
}

RenderLoop::Delegates RenderLoop::DrawBaseDelegates(Vis const& p_node) {
    HandledCallbackSet const handled = p_node.Handled();
    return {handled.Has(HandledSetup) ? &CallSetup : nullptr, handled.Has(HandledDraw) ? &CallDraw : nullptr,
        handled.Has(HandledTeardown) ? &CallTeardown : nullptr};
}

RenderLoop::Delegates RenderLoop::DrawOverlayDelegates(Vis const& p_node) {
    HandledCallbackSet const handled = p_node.Handled();
    return {handled.Has(HandledSetupOverlay) ? &CallSetupOverlay : nullptr,
        handled.Has(HandledDrawOverlay) ? &CallDrawOverlay : nullptr,
        handled.Has(HandledTeardownOverlay) ? &CallTeardownOverlay : nullptr};
}

RenderLoop::Delegates RenderLoop::HighlightBaseDelegates(Vis const& p_node) {
    Delegates delegates = DrawBaseDelegates(p_node);
    delegates.draw = p_node.IsHandled(HandledHighlight) ? &CallHighlight : nullptr;
    return delegates;
}

RenderLoop::Delegates RenderLoop::HighlightOverlayDelegates(Vis const& p_node) {
    Delegates delegates = DrawOverlayDelegates(p_node);
    delegates.draw = p_node.IsHandled(HandledHighlightOverlay) ? &CallHighlightOverlay : nullptr;
    return delegates;
}

void RenderLoop::CallSetup(Vis& p_node, DrawContext& p_context, Agl& p_agl) {
    Setup(p_node, p_context, p_agl);
}

void RenderLoop::CallSetupOverlay(Vis& p_node, DrawContext& p_context, Agl& p_agl) {
    SetupOverlay(p_node, p_context, p_agl);
}

DrawResult RenderLoop::CallDraw(Vis& p_node, DrawContext const& p_context) {
    return VisHooks::Draw(p_node, p_context);
}

DrawResult RenderLoop::CallDrawOverlay(Vis& p_node, DrawContext const& p_context) {
    return DrawOverlay(p_node, p_context);
}

DrawResult RenderLoop::CallHighlight(Vis& p_node, DrawContext const& p_context) {
    return Highlight(p_node, p_context);
}

DrawResult RenderLoop::CallHighlightOverlay(Vis& p_node, DrawContext const& p_context) {
    return HighlightOverlay(p_node, p_context);
}

void RenderLoop::CallTeardown(Vis& p_node, DrawContext const& p_context, Agl& p_agl) {
    Teardown(p_node, p_context, p_agl);
}

void RenderLoop::CallTeardownOverlay(Vis& p_node, DrawContext const& p_context, Agl& p_agl) {
    TeardownOverlay(p_node, p_context, p_agl);
}

} // namespace Qor::Chart::Render
