#include "render/nodes/Viewport.h"

#include "render/nodes/PaneDecoration.h"
#include "render/nodes/PanePopOut.h"
#include "render/nodes/PaneToolbar.h"
#include "render/loops/Generator.h"
#include "render/pick/HitResult.h"
#include "render/context/DrawContext.h"
#include "render/context/EventDispatcher.h"
#include "render/context/PickPoint.h"
#include "render/context/SceneCapabilities.h"
#include "render/context/UpdateContext.h"
#include "framework/algorithms/Hit.h"
#include "framework/assets/ImageCache.h"
#include "framework/assets/ImageError.h"
#include "framework/assets/Resource.h"
#include "framework/ogl/Agl.h"
#include "framework/ogl/PushAttribScope.h"
#include "framework/ogl/Text.h"
#include "framework/utility/Ensure.h"
#include "framework/utility/Logger.h"

#include <algorithm>
#include <utility>

namespace Qor::Chart::Render {

namespace {

using namespace Ogl::Tokens;
using Agl = Utility::Scoped<Ogl::Agl>;
using Box = Types::BoundingBox_Base<double>;

constexpr std::array Hooks{HandledUpdate, HandledSetup, HandledDraw, HandledHighlight, HandledHit, HandledTeardown,
    HandledSetupOverlay, HandledHitOverlay, HandledHighlightOverlay, HandledTeardownOverlay};
constexpr std::array Events{EventHandler::EventMouseOver, EventHandler::EventMouseOut, EventHandler::EventDragBegin,
    EventHandler::EventDrag, EventHandler::EventDragEnd, EventHandler::EventClick};

std::uint64_t NameOf(PaneLayout::Grip p_grip) {
    return Viewport::PartGripTopLeft + static_cast<std::uint64_t>(p_grip);
}

std::optional<ProjectionMode> ModeOf(Model::Pane const& p_pane) {
    switch (p_pane.GetProjectionMode()) {
    case Model::Pane::ProjectionMode::Orthographic:
        return ProjectionMode::Orthographic;
    case Model::Pane::ProjectionMode::Perspective:
        return ProjectionMode::Perspective;
    }
    return std::nullopt;
}

/// A projection needs some extent to fit into the viewport.
Box WithExtent(Box p_box) {
    if (p_box.Min() == p_box.Max())
        p_box.Grow(1.0);
    return p_box;
}

void LoadView(DrawContext& p_context, Agl& p_agl) {
    p_agl->MatrixMode(AGL_MODELVIEW);
    p_context.Projection().Set(p_agl->Get(AGL_PROJECTION_MATRIX));
    p_agl->LoadIdentity();
    p_context.ModelView().Set(Types::Matrix4());
}

void LoadScissor(Agl& p_agl, Types::Viewport<0> const& p_viewport) {
    p_agl->Enable(AGL_SCISSOR_TEST);
    p_agl->PushScissor();
    p_agl->Scissor(p_viewport);
}

void SwitchLightsOff(DrawContext& p_context, Agl& p_agl) {
    p_agl->Disable(AGL_LIGHTING);
    for (std::uint32_t light = 0; light < p_context.LightCount().Top(); ++light)
        p_agl->Disable(AGL_LIGHT0 + light);
    p_context.LightCount().Set(0);
    p_context.Lights().Set({});
}

/// What is below clears to the pane's background, if it has one.
void SetClearColor(DrawContext& p_context, Model::Pane const& p_pane) {
    if (p_pane.BackgroundColor().alpha() == 0)
        return;
    Types::Schema schema = p_context.Schema().Top();
    schema.clearColor = p_pane.BackgroundColor();
    p_context.Schema().Set(std::move(schema));
}

} // namespace

Viewport::Viewport()
    : Vis(VisFlagContextRoot | VisFlagSecond)
    , _pane(*this, "viewport")
    , _toolbar(*this, "viewport.toolbar")
    , _titleColor(TextureWidget::FadeCriteria())
    , _titleHeightBlender(TextureWidget::FadeCriteria()) {
    SetLayer(PaneLayer);
    for (HandledCallbacks const hook : Hooks)
        RegisterCB(hook);
    for (EventName const event : Events)
        Connect(*this, event);
    _watchers.Add(_pane.Get());
    _watchers.Touch();
}

Viewport::~Viewport() = default;

void Viewport::Attach(Core::Ptr<Model::ModelNode> const& p_model) {
    _pane.Attach(p_model);
    _watchers.Clear();
    _watchers.Add(_pane.Get());
    _watchers.Touch();
}

Core::WeakPtr<Model::ModelNode> Viewport::SourceModel() const {
    return _pane.Get();
}

/// Without a font nothing more is done until the pane changes: a pane whose title cannot be written shows its scene.
NodeStatus Viewport::DoUpdate(UpdateContext const& p_context) {
    if (!_watchers.Modified())
        return IsValid() ? NodeStatusOk : NodeStatusInvalid;
    _watchers.Clear();
    _watchers.Add(_pane.Get());
    Core::Ptr<Model::Pane> const pane = _pane.Lock();
    if (!pane)
        return NodeStatusInvalid;
    UpdatePicking(*pane);
    if (!_titleFont && !MakeTitleFont(p_context))
        return NodeStatusInvalid;
    UpdateToolbar(p_context, pane);
    if (pane->AreButtonsShown())
        UpdateButtons(p_context);
    _watchers.Reset();
    OwnTracker().ClearWatcherEntries();
    OwnTracker().AddWatcherEntry(_watchers);
    return NodeStatusOk;
}

void Viewport::UpdatePicking(Model::Pane const& p_pane) {
    bool const isPickable =
        p_pane.IsMovable() || p_pane.IsResizable() || p_pane.IsBackgroundPickable() || p_pane.AreButtonsShown();
    for (HandledCallbacks const hook : {HandledHitOverlay, HandledHit}) {
        if (isPickable)
            RegisterCB(hook);
        else
            UnregisterCB(hook);
    }
}

bool Viewport::MakeTitleFont(UpdateContext const& p_context) {
    std::vector<Assets::FontFile> const fonts = p_context.Resource().FontSet("");
    if (fonts.empty())
        return false;
    Agl agl(p_context.Graphics());
    _titleFont = agl->GenFont(fonts, 5);
    _titleFont->SetHorizontalAlignment(Ogl::HorizontalAlignment::Center);
    _titleFont->SetVerticalAlignment(Ogl::VerticalAlignment::Center);
    _titleFont->SetSize(10);
    return true;
}

void Viewport::UpdateToolbar(UpdateContext const& p_context, Core::Ptr<Model::Pane> const& p_pane) {
    bool const isShown = p_pane->IsToolbarShown();
    if (isShown && !_ownToolbar) {
        _ownToolbar = PaneToolbar::Make(p_pane, _titleHeight);
        _toolbar.Attach(_ownToolbar);
    }
    if (isShown && !_toolbarVis) {
        _toolbarVis = p_context.Generator()(_ownToolbar);
        if (_toolbarVis)
            Add(_toolbarVis);
    }
    if (!_ownToolbar)
        return;
    if (_ownToolbar->IsVisible() != isShown)
        _ownToolbar->SetVisible(isShown);
    PaneToolbar::Follow(*p_pane, *_ownToolbar);
}

void Viewport::UpdateButtons(UpdateContext const& p_context) {
    if (!_popOutButton)
        _popOutButton = MakeButton(p_context, "PopOut");
    if (!_detachButton)
        _detachButton = MakeButton(p_context, "Detach");
    for (TextureWidget* const button : {_popOutButton.get(), _detachButton.get()}) {
        auto const [x, y, width, height] = PaneLayout::PopOutButton({}, _titleHeight);
        button->SetRectangle({button->Rectangle().x, button->Rectangle().y, width, height});
        button->Set(TextureWidget::FlagAnimated, p_context.Capabilities().AnimationsOn());
    }
    _popout = [pane = _pane.Get()](PopOutHost& p_host, Types::Size const& p_size, PopOutHost::Restore const& p_restore,
                  PopOutHost::Content const& p_content) {
        PanePopOut::Open(p_host, pane, p_size, p_restore, p_content);
    };
}

/// A button without its image still works; that it looks empty is reported.
std::unique_ptr<TextureWidget> Viewport::MakeButton(UpdateContext const& p_context, char const* p_image) const {
    std::shared_ptr<Library::Texture const> texture;
    try {
        auto const image = p_context.ImageCache().Image(p_context.Resource().ImageFile(p_image));
        Agl agl(p_context.Graphics());
        texture = std::make_shared<Library::Texture>(*image, agl, p_image);
    } catch (Assets::ImageError const& error) {
        p_context.Dispatcher().ReportWarning(*this, error.what(), Utility::AtLine(__PRETTY_FUNCTION__, __LINE__), 1);
    }
    auto button = std::make_unique<TextureWidget>(std::move(texture));
    button->SetTextureMode(TextureWidget::TextureMode::Tinted);
    return button;
}

Viewport::Rectangle Viewport::GetTitlebar(Rectangle const& p_viewport) const {
    return PaneLayout::TitleBar(p_viewport, _titleHeight);
}

Viewport::Rectangle Viewport::GetViewport(Rectangle const& p_parent) const {
    Model::Pane const* const pane = _pane.Peek();
    return pane ? PaneLayout::Place(pane->GetViewport(), p_parent) : Rectangle();
}

void Viewport::SetViewport(Rectangle const& p_parent, Rectangle const& p_viewport) const {
    if (Core::Ptr<Model::Pane> const pane = _pane.Lock())
        pane->SetViewport({PaneLayout::Widened(p_viewport), p_parent, pane->GetViewport()});
}

/// Saves what the teardown brings back, and finds out where the pane lies and whether it can be drawn.
Viewport::Rectangle Viewport::BeginSetup(DrawContext& p_context, Agl& p_agl, Model::Pane const* p_pane) {
    p_agl->PushLayerId(Id());
    p_agl->PushAttrib(AGL_ALL_ATTRIB_BITS);
    Rectangle const& parent = p_context.Viewport().Top();
    Rectangle viewport = GetViewport(parent);
    if (p_context.IsPerViewportDraw() && p_context.Mode() != DrawContext::DrawMode::DrawInPlace) {
        Types::Vector2_Base<double> const& offset = p_context.PerViewportOffset();
        viewport.Translate(static_cast<float>(offset.x), static_cast<float>(offset.y));
    }
    if (p_pane && p_pane->IsKeptInsideParent())
        viewport = PaneLayout::FittedInto(parent, viewport);
    _drawable = p_pane && viewport.width > 0 && viewport.height > 0;
    if (!_drawable)
        p_context.Viewport().Set(Rectangle()); // so that nothing below is found in the rectangle of the parent
    return viewport;
}

void Viewport::EndSetup(Agl& p_agl) const {
    if (_drawable) {
        p_agl->PopScissor();
        p_agl->Disable(AGL_SCISSOR_TEST);
    }
    p_agl->PopAttrib();
    p_agl->PopLayerId();
}

void Viewport::DoSetup(DrawContext& p_context, Agl& p_agl) {
    _titleHeight = static_cast<unsigned>(std::max(p_context.Schema().Top().titleBarHeight, 0));
    Core::Ptr<Model::Pane> const pane = _pane.Lock();
    Rectangle const viewport = BeginSetup(p_context, p_agl, pane.Get());
    if (!_drawable)
        return;
    _parentViewport = p_context.Viewport().Top();
    p_agl->Viewport(viewport);
    p_context.Viewport().Set(viewport);

    Box const box = WithExtent(BoundingBox());
    std::optional<ProjectionMode> const mode = ModeOf(*pane);
    p_agl->MatrixMode(AGL_PROJECTION);
    p_agl->LoadIdentity();
    if (mode)
        p_context.ProjectionMode().Set(*mode);
    if (mode == ProjectionMode::Orthographic)
        p_agl->Ortho(viewport, box, p_context.Camera().Top());
    else if (mode == ProjectionMode::Perspective)
        p_agl->Perspective(viewport, box, p_context.Camera().Top());
    else
        Utility::GetLogger().notimp(Utility::AtLine(__PRETTY_FUNCTION__, 552));
    LoadView(p_context, p_agl);

    LoadScissor(p_agl, viewport);
    p_agl->Clear(AGL_DEPTH_BUFFER_BIT);
    SwitchLightsOff(p_context, p_agl);
    SetClearColor(p_context, *pane);
    PlaceButtons(viewport);
}

void Viewport::PlaceButtons(Rectangle const& p_viewport) {
    Rectangle const bar = GetTitlebar(p_viewport);
    if (_popOutButton)
        _popOutButton->SetRectangle(PaneLayout::PopOutButton(bar, _titleHeight));
    if (_detachButton)
        _detachButton->SetRectangle(PaneLayout::DetachButton(bar, _titleHeight));
}

void Viewport::DoSetupOverlay(DrawContext& p_context, Agl& p_agl) {
    _parentViewport = p_context.Viewport().Top();
    Core::Ptr<Model::Pane> const pane = _pane.Lock();
    Rectangle const viewport = BeginSetup(p_context, p_agl, pane.Get());
    if (!_drawable)
        return;
    p_agl->Viewport(viewport);
    p_context.Viewport().Set(viewport);

    p_agl->MatrixMode(AGL_PROJECTION);
    p_agl->LoadIdentity();
    p_agl->Ortho2D(viewport);
    LoadView(p_context, p_agl);
    if (std::optional<ProjectionMode> const mode = ModeOf(*pane))
        p_context.ProjectionMode().Set(*mode);
    else
        Utility::GetLogger().notimp(Utility::AtLine(__PRETTY_FUNCTION__, 768));

    LoadScissor(p_agl, viewport);
    SetClearColor(p_context, *pane);
    PlaceButtons(viewport);
}

void Viewport::DoTeardown(DrawContext const&, Agl& p_agl) {
    EndSetup(p_agl);
}

void Viewport::DoTeardownOverlay(DrawContext const& p_context, Agl& p_agl) {
    if (_drawable && p_context.Mode() == DrawContext::DrawMode::Highlight)
        DrawDecoration(p_context);
    EndSetup(p_agl);
}

DrawResult Viewport::DoDraw(DrawContext const& p_context) {
    if (!_drawable)
        return DrawResultSkipChildren;
    if (Core::Ptr<Model::Pane> const pane = _pane.Lock())
        PaneDecoration(p_context).DrawBackground(pane->BackgroundColor(), pane->BackgroundTopColor());
    return DrawResultDescend;
}

DrawResult Viewport::DoHighlight(DrawContext const&) {
    return _drawable ? DrawResultDescend : DrawResultSkipChildren;
}

DrawResult Viewport::DoDrawOverlay(DrawContext const&) {
    return _drawable ? DrawResultDescend : DrawResultSkipChildren;
}

DrawResult Viewport::DoHighlightOverlay(DrawContext const& p_context) {
    if (!_drawable)
        return DrawResultSkipChildren;
    Core::Ptr<Model::Pane> const pane = _pane.Lock();
    if (pane && _selectionBox.width != 0 && _selectionBox.height != 0)
        PaneDecoration(p_context).DrawRubberBand(_selectionBox, pane->BorderColor().alpha() != 0);
    return DrawResultDescend;
}

/// Whether the place, relative to the pane, lies in it; p_layer stands in the message that says it doesn't.
bool Viewport::IsInside(DrawContext const& p_context, PickPoint const& p_point, char const* p_layer) const {
    if (!_drawable || _pane.Expired())
        return false;
    Rectangle const& viewport = p_context.Viewport().Top();
    if (Algorithms::Hit::IsHit(viewport, p_point.position + viewport.Origin()))
        return true;
    if (auto out = Utility::GetLogger().out(""))
        out << "Culling based on viewport (" << p_layer << ") in " << Name() << " where:  vp(" << viewport << ")";
    return false;
}

bool Viewport::DoHit(DrawContext const& p_context, PickPoint const& p_point, HitResult&) {
    return IsInside(p_context, p_point, "base") && !HasHover(Ogl::HitRecord::NameDefault);
}

bool Viewport::DoHitOverlay(DrawContext const& p_context, PickPoint const& p_point, HitResult& p_result) {
    if (!IsInside(p_context, p_point, "overlay"))
        return false;
    Core::Ptr<Model::Pane> const pane = _pane.Lock();
    Rectangle const& viewport = p_context.Viewport().Top();
    auto const add = [&p_result](std::uint64_t p_name, bool p_isHit) {
        if (p_isHit)
            p_result.records.emplace_back(p_name, Ogl::HitRecord::DepthOverlay);
    };
    add(Ogl::HitRecord::NameDefault, pane->IsBackgroundPickable());
    add(PartTitleBar, pane->IsMovable() && Algorithms::Hit::IsHit(GetTitlebar(viewport), p_point.position));
    Types::Pos const inWindow = p_point.position + viewport.Origin();
    for (PaneLayout::Grip const grip : PaneLayout::Grips)
        add(NameOf(grip), pane->IsResizable() && PaneLayout::IsOnGrip(grip, viewport, inWindow));
    bool const hasButtons = pane->AreButtonsShown();
    add(PartPopOutButton, hasButtons && _popOutButton && _popOutButton->IsHit(p_point.position));
    add(PartDetachButton, hasButtons && _detachButton && _detachButton->IsHit(p_point.position));
    return true;
}

std::optional<PaneLayout::Grip> Viewport::HoveredGrip() const {
    for (PaneLayout::Grip const grip : PaneLayout::Grips) {
        if (HasHover(NameOf(grip)))
            return grip;
    }
    return std::nullopt;
}

void Viewport::ShowTitleBar(bool p_shown) {
    _titleHeightBlender.SetTarget(p_shown ? static_cast<int>(_titleHeight) : 0);
    for (TextureWidget* const button : {_popOutButton.get(), _detachButton.get()}) {
        if (button)
            button->Set(TextureWidget::FlagShown, p_shown);
    }
}

void Viewport::DrawDecoration(DrawContext const& p_context) {
    Core::Ptr<Model::Pane> const pane = _pane.Lock();
    if (!pane)
        return;
    Agl agl(p_context.Graphics());
    Ogl::PushAttribScope const saved(agl, AGL_ENABLE_BIT);
    agl->Disable(AGL_DEPTH_TEST);
    PaneDecoration const decoration(p_context);
    decoration.DrawBorder(pane->BorderColor());
    DrawTitleBar(p_context, *pane);
    if (IsDecorationHovered() && pane->IsResizable())
        decoration.DrawGrips(HoveredGrip());
}

/// The bar slides down from above the pane; the scissor box shows as much of it as the animation wants.
void Viewport::DrawTitleBar(DrawContext const& p_context, Model::Pane const& p_pane) {
    ShowTitleBar(p_pane.IsTitlePinned() || IsDecorationHovered());
    bool const isAnimated = p_context.Capabilities().AnimationsOn();
    if (!isAnimated)
        _titleHeightBlender.Jump();
    bool const isSliding = !_titleHeightBlender.IsComplete();
    if (!p_pane.IsMovable() && !p_pane.IsTitlePinned() && !p_pane.AreButtonsShown() && !isSliding)
        return;
    bool isRunning = isSliding;
    if (int const height = _titleHeightBlender.Value(); height > 1) {
        Rectangle bar = GetTitlebar(p_context.Viewport().Top());
        bar.y += static_cast<float>(static_cast<int>(_titleHeight) - height);
        Types::Schema const& schema = p_context.Schema().Top();
        _titleColor.SetTarget(HasHover(PartTitleBar) ? schema.highlightColor : schema.titleColor, isAnimated);
        isRunning = isRunning || !_titleColor.IsComplete();

        PaneDecoration const decoration(p_context);
        decoration.DrawTitleBar(bar, _titleColor.Value());
        bool const hasButtons = p_pane.AreButtonsShown() && _popOutButton && _detachButton;
        if (_titleFont)
            decoration.DrawTitle(
                bar, p_pane.Title(), *_titleFont, hasButtons ? _detachButton->Rectangle().x : bar.Right());
        if (hasButtons) {
            _popOutButton->Draw(p_context);
            _detachButton->Draw(p_context);
        }
    }
    if (isRunning)
        p_context.Dispatcher().RequestRedraw(TextureWidget::RedrawMilliseconds);
}

} // namespace Qor::Chart::Render
