#include "render/nodes/Toolbar.h"

#include "render/events/EventInformation.h"
#include "render/events/EventSink.h"
#include "render/pick/HitRecord.h"
#include "render/pick/HitResult.h"
#include "render/context/DrawContext.h"
#include "render/context/PickPoint.h"
#include "render/context/UpdateContext.h"
#include "framework/algorithms/Hit.h"
#include "framework/ogl/Agl.h"
#include "framework/ogl/PushAttribScope.h"
#include "framework/ogl/Text.h"

#include <boost/any.hpp>

#include <algorithm>
#include <array>
#include <utility>

namespace Qor::Chart::Render {

namespace {

using namespace Ogl::Tokens;
using Agl = Utility::Scoped<Ogl::Agl>;

constexpr std::array Hooks{
    HandledUpdate, HandledSetupOverlay, HandledDrawOverlay, HandledHighlightOverlay, HandledHitOverlay};
constexpr std::array Events{EventHandler::EventDragBegin, EventHandler::EventDrag, EventHandler::EventDragEnd,
    EventHandler::EventMouseOver, EventHandler::EventMouseOut, EventHandler::EventClick};

/// What was hit of the bar; null when nothing was.
Ogl::HitRecord const* PartOf(EventInformation const& p_event) {
    return p_event.Hit() && !p_event.Hit()->result.records.empty() ? &p_event.Hit()->result.records.front() : nullptr;
}

bool IsPrimaryHit(EventInformation const& p_event) {
    return p_event.button == 0 && PartOf(p_event);
}

std::optional<std::size_t> ButtonOf(std::uint64_t p_name, std::size_t p_count) {
    bool const isButton = p_name >= Ogl::HitRecord::NameFirst && p_name - Ogl::HitRecord::NameFirst < p_count;
    return isButton ? std::optional(static_cast<std::size_t>(p_name - Ogl::HitRecord::NameFirst)) : std::nullopt;
}

} // namespace

Toolbar::Toolbar() : Vis(VisFlagSecond | VisFlagSelfManaged), _toolbar(*this, "toolbar") {
    SetLayer(HighestLayer);
    for (HandledCallbacks const hook : Hooks)
        RegisterCB(hook);
    for (EventName const event : Events)
        Connect(*this, event);
}

Toolbar::~Toolbar() = default;

void Toolbar::Attach(Core::Ptr<Model::ModelNode> const& p_model) {
    _toolbar.Attach(p_model);
}

Core::WeakPtr<Model::ModelNode> Toolbar::SourceModel() const {
    return _toolbar.Get();
}

Core::Ptr<Model::Toolbar> Toolbar::Shown() const {
    Core::Ptr<Model::Toolbar> model = _toolbar.Lock();
    return model && model->IsVisible() ? model : Core::Ptr<Model::Toolbar>();
}

ToolbarButton const* Toolbar::Find(Core::Ptr<Model::Action> const& p_action) const {
    auto const found = std::find_if(_buttons.begin(), _buttons.end(),
        [&](ToolbarButton const& p_button) { return p_button.action.Peek() == p_action.Get(); });
    return found != _buttons.end() ? &*found : nullptr;
}

/// A node whose model is gone stays valid: it has nothing to complain about.
NodeStatus Toolbar::DoUpdate(UpdateContext const& p_context) {
    std::vector<ToolbarButton> buttons;
    if (Core::Ptr<Model::Toolbar> const model = _toolbar.Lock()) {
        for (Core::Ptr<Model::Action> const& action : model->Actions())
            buttons.push_back(ToolbarButton::Of(p_context, action, Find(action), *this));
    }
    _buttons = std::move(buttons);
    return NodeStatusOk;
}

void Toolbar::DoSetupOverlay(DrawContext& p_context, Agl&) {
    Core::Ptr<Model::Toolbar> const model = Shown();
    _pane = p_context.Viewport().Top();
    bool const isShown = model && !_pane.IsEmpty();
    _layout = isShown ? LaidOut(p_context, *model) : ToolbarLayout();
}

ToolbarLayout Toolbar::LaidOut(DrawContext const& p_context, Model::Toolbar const& p_model) {
    ToolbarPainter const painter(p_context, _font);
    ToolbarLayout::Request request{_pane.Extent(), p_model.GetXPosition(), p_model.GetYPosition(), p_model.IsVertical(),
        p_model.IsMovable(), painter.Side(), painter.PixelRatio(), {}};
    for (ToolbarButton const& button : _buttons)
        request.widths.push_back(painter.WidthOf(button));
    return ToolbarLayout(request);
}

ToolbarPainter::Look Toolbar::LookOf(std::size_t p_button) const {
    WeakAction const& action = _buttons[p_button].action;
    if (!_pressed.IsEmpty() && _pressed == action)
        return ToolbarPainter::Look::Pressed;
    bool const isHovered = ButtonOf(_hovered, _buttons.size()) == p_button && _drag == Drag::None;
    return isHovered ? ToolbarPainter::Look::Hovered : ToolbarPainter::Look::Idle;
}

std::optional<std::size_t> Toolbar::TipButton() const {
    std::optional<std::size_t> const button = ButtonOf(_hovered, _layout.buttons.size());
    return _tip.IsShown() && button && !_buttons[*button].tip.empty() ? button : std::nullopt;
}

DrawResult Toolbar::DoDrawOverlay(DrawContext const& p_context) {
    if (_layout.buttons.empty())
        return DrawResultDescend;
    Agl agl(p_context.Graphics());
    Ogl::PushAttribScope const saved(agl, AGL_ENABLE_BIT);
    agl->Disable(AGL_DEPTH_TEST);
    ToolbarPainter const painter(p_context, _font);
    painter.DrawBar(_layout);
    for (std::size_t i = 0; i < _layout.buttons.size(); ++i)
        painter.DrawButton(_buttons[i], _layout.buttons[i], LookOf(i));
    return DrawResultDescend;
}

/// Tips come after everything that is drawn in the draw pass.
DrawResult Toolbar::DoHighlightOverlay(DrawContext const& p_context) {
    std::optional<std::size_t> const button = TipButton();
    if (!button)
        return DrawResultDescend;
    Agl agl(p_context.Graphics());
    Ogl::PushAttribScope const saved(agl, AGL_ENABLE_BIT);
    agl->Disable(AGL_DEPTH_TEST);
    ToolbarPainter const painter(p_context, _font);
    std::wstring const& tip = _buttons[*button].tip;
    Types::Size const pane = _pane.Extent();
    painter.DrawTip(tip, _layout.TipPlace(pane, *button, painter.TipSize(tip, pane)));
    return DrawResultDescend;
}

/// The traversal takes what was found last for the best.
bool Toolbar::DoHitOverlay(DrawContext const&, PickPoint const& p_point, HitResult& p_result) {
    using Ogl::HitRecord;
    if (!Algorithms::Hit::IsHit(_layout.bar, p_point.position))
        return true;
    p_result.records.emplace_back(HitRecord::NameDefault, HitRecord::DepthOverlay);
    if (std::optional<std::size_t> const button = _layout.ButtonAt(p_point.position)) {
        p_result.records.emplace_back(HitRecord::NameFirst + *button, HitRecord::DepthOverlay);
        p_result.data = _buttons[*button].action;
    }
    return true;
}

Core::Ptr<Model::Action> Toolbar::ActionOf(EventInformation const& p_event) const {
    WeakAction hit;
    if (auto const* const action = boost::any_cast<WeakAction>(&p_event.Hit()->result.data))
        hit = *action;
    else if (std::optional<std::size_t> const button = ButtonOf(PartOf(p_event)->name, _buttons.size()))
        hit = _buttons[*button].action;
    return Present(hit);
}

Core::Ptr<Model::Action> Toolbar::Present(WeakAction const& p_action) const {
    Core::Ptr<Model::Action> const action = p_action.Lock();
    Core::Ptr<Model::Toolbar> const model = Shown();
    if (!action || !model)
        return {};
    std::vector<Core::Ptr<Model::Action>> const actions = model->Actions();
    bool const isThere = std::find(actions.begin(), actions.end(), action) != actions.end();
    return isThere ? action : Core::Ptr<Model::Action>();
}

bool Toolbar::IsOverDragged(EventInformation const& p_event) const {
    std::optional<std::size_t> const button = _layout.ButtonAt(p_event.position - _pane.Origin());
    return button && *button < _buttons.size() && _buttons[*button].action == _dragged;
}

/// The tip of what was under the pointer, shown or waited for, is gone with it.
void Toolbar::Hover(std::uint64_t p_name) {
    _hovered = p_name;
    _tip.Hide();
}

void Toolbar::Refresh() {
    TouchThis(ModifiableTypeGeneric, ChangeModified, RelationshipSelf, {}, "look", {});
}

Event::Result Toolbar::OnMouseOver(EventInformation& p_event) {
    Ogl::HitRecord const* const part = PartOf(p_event);
    if (!part)
        return Event::Ignored;
    Hover(part->name);
    p_event.Sink().RequestRedraw();
    _tip.Await(p_event, [this] { Refresh(); });
    return Event::Consumed;
}

void Toolbar::OnMouseOut(EventInformation& p_event) {
    if (_hovered == Ogl::HitRecord::NameInvalid)
        return;
    Hover(Ogl::HitRecord::NameInvalid);
    p_event.Sink().RequestRedraw();
}

void Toolbar::Press(WeakAction p_action) {
    _pressed = std::move(p_action);
    ++_pressNumber;
}

/// The button looks pressed for a while, so that even a short click can be seen.
void Toolbar::Execute(EventInformation& p_event, Core::Ptr<Model::Action> const& p_action) {
    if (!p_action || !p_action->IsEnabled())
        return;
    Core::Ptr<Vis> const self(this); // the action may remove the bar
    p_event.Sink().RequestUpdate();
    p_action->Execute();
    Press(p_action);
    p_event.CallLater(PressMilliseconds, [this, number = _pressNumber] {
        if (number != _pressNumber)
            return;
        Press({});
        Refresh();
    });
}

Event::Result Toolbar::OnClick(EventInformation& p_event) {
    if (!IsPrimaryHit(p_event))
        return Event::Ignored;
    _tip.Hide(p_event);
    Execute(p_event, ActionOf(p_event));
    return Event::Consumed;
}

Event::Result Toolbar::OnDragBegin(EventInformation& p_event) {
    if (!IsPrimaryHit(p_event))
        return Event::Ignored;
    Hover(PartOf(p_event)->name);
    bool const isButton = PartOf(p_event)->name != Ogl::HitRecord::NameDefault;
    _drag = isButton ? Drag::Button : Drag::Bar;
    _dragged = isButton ? ActionOf(p_event) : WeakAction();
    Press(_dragged);
    _isFirstMove = true;
    _dragBegin = p_event.position;
    _dragOffset = p_event.position - _pane.Origin() - _layout.bar.Origin();
    if (Core::Ptr<Model::Toolbar> const model = _toolbar.Lock()) {
        _xBefore = model->GetXPosition();
        _yBefore = model->GetYPosition();
    }
    p_event.Sink().RequestRedraw();
    return Event::Consumed;
}

void Toolbar::OnDrag(EventInformation& p_event) {
    if (_drag == Drag::Bar)
        MoveBar(p_event);
    if (_drag != Drag::Button)
        return;
    Press(IsOverDragged(p_event) ? _dragged : WeakAction());
    p_event.Sink().RequestRedraw();
}

/// Back where the drag began the bar lies exactly as it did before, whatever was lost to whole pixels on the way.
void Toolbar::MoveBar(EventInformation const& p_event) {
    Core::Ptr<Model::Toolbar> const model = Shown();
    if (!model || !model->IsMovable() || _layout.bar.IsEmpty())
        return;
    if (std::exchange(_isFirstMove, false))
        p_event.Sink().AboutToMove(SourceModel());
    Types::Size const pane = _pane.Extent();
    Types::Pos const corner = p_event.position - _pane.Origin() - _dragOffset;
    Rectangle bar = _layout.bar;
    bar.x = static_cast<float>(corner.x);
    bar.y = static_cast<float>(corner.y);
    bar = ToolbarLayout::MovedInto(pane, bar);
    bool const isBack = p_event.position == _dragBegin;
    model->SetXPosition(isBack ? _xBefore : ToolbarLayout::Following(_xBefore, bar.x, bar.width, pane.width));
    model->SetYPosition(isBack ? _yBefore : ToolbarLayout::Following(_yBefore, bar.y, bar.height, pane.height));
    p_event.Sink().RequestUpdate();
}

/// A drag that is broken off ends with the mouse button still down.
void Toolbar::OnDragEnd(EventInformation& p_event) {
    bool const isLetGo = (p_event.buttons & EventInformation::ButtonMaskPrimary) == 0;
    bool const isWanted = _drag == Drag::Button && isLetGo && IsOverDragged(p_event);
    WeakAction const dragged = std::exchange(_dragged, {});
    _drag = Drag::None;
    Press({});
    p_event.Sink().RequestRedraw();
    if (isWanted)
        Execute(p_event, Present(dragged));
}

} // namespace Qor::Chart::Render
