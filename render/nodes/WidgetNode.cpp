#include "render/nodes/WidgetNode.h"

#include "render/nodes/OverlayShapes.h"
#include "render/nodes/PixelScope.h"
#include "render/nodes/ToolbarLayout.h"
#include "render/events/EventInformation.h"
#include "render/pick/HitRecord.h"
#include "render/pick/HitResult.h"
#include "render/context/DrawContext.h"
#include "render/context/PickPoint.h"
#include "framework/ogl/HitRecord.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace Qor::Chart::Render {

namespace {

constexpr std::array Hooks{HandledUpdate, HandledSetupOverlay, HandledDrawOverlay, HandledHitOverlay};
constexpr std::array Events{EventHandler::EventMouseOver, EventHandler::EventMouseOut, EventHandler::EventDragBegin,
    EventHandler::EventDrag, EventHandler::EventDragEnd, EventHandler::EventClick, EventHandler::EventDoubleClick,
    EventHandler::EventKeyPress};

} // namespace

WidgetNode::WidgetNode() : Vis(VisFlagSecond | VisFlagSelfManaged) {
    SetLayer(HighestLayer);
}

WidgetNode::~WidgetNode() = default;

// What a hook is taken up for asks for the model, which the derived class has.
void WidgetNode::ConnectAll() {
    for (HandledCallbacks const hook : Hooks)
        RegisterCB(hook);
    for (EventName const event : Events)
        Connect(*this, event);
}

void WidgetNode::Refresh() {
    TouchThis(ModifiableTypeGeneric, ChangeModified, RelationshipSelf, {}, "look", {});
}

void WidgetNode::DoSetupOverlay(DrawContext& p_context, Utility::Scoped<Ogl::Agl>&) {
    _pane = p_context.Viewport().Top();
    std::optional<Placement> const placement = _pane.IsEmpty() ? std::nullopt : Placed(p_context);
    Widget& widget = GetWidget();
    _isShown = placement && placement->size.width > 0 && placement->size.height > 0;
    if (widget.Has(Widget::FlagShown) != _isShown)
        widget.Set(Widget::FlagShown, _isShown);
    if (_isShown)
        Place(widget, *placement);
}

int WidgetNode::SideOf(double p_asked, DrawContext const& p_context) {
    float const ratio = OverlayShapes::PixelRatio(p_context);
    return p_asked > 0 ? static_cast<int>(ToolbarLayout::Scaled(static_cast<float>(p_asked), ratio)) : 0;
}

void WidgetNode::Place(Widget& p_widget, Placement const& p_placement) const {
    Types::Size const pane = _pane.Extent();
    int const width = std::min(p_placement.size.width, pane.width);
    int const height = std::min(p_placement.size.height, pane.height);
    Types::Viewport<0> place(static_cast<float>(std::round(p_placement.x.Resolve(0, pane.width, width))),
        static_cast<float>(std::round(p_placement.y.Resolve(0, pane.height, height))), static_cast<float>(width),
        static_cast<float>(height));
    place = ToolbarLayout::MovedInto(pane, place);
    if (!(place == p_widget.Rectangle()))
        p_widget.SetRectangle(place);
}

DrawResult WidgetNode::DoDrawOverlay(DrawContext const& p_context) {
    if (_pane.IsEmpty())
        return DrawResultDescend;
    Utility::Scoped<Ogl::Agl> agl(p_context.Graphics());
    PixelScope const pixels(agl, _pane);
    GetWidget().Draw(p_context);
    return DrawResultDescend;
}

bool WidgetNode::DoHitOverlay(DrawContext const&, PickPoint const& p_point, HitResult& p_result) {
    if (_isShown && GetWidget().IsHit(p_point.position))
        p_result.records.emplace_back(Ogl::HitRecord::NameDefault, Ogl::HitRecord::DepthOverlay);
    return true;
}

Types::Pos WidgetNode::PlaceOf(EventInformation const& p_event) const {
    return p_event.position - _pane.Origin();
}

Event::Result WidgetNode::OnMouseOver(EventInformation& p_event) {
    if (!p_event.Hit() || p_event.Hit()->result.records.empty())
        return Event::Ignored;
    GetWidget().Set(Widget::FlagHover, true);
    p_event.Sink().RequestRedraw();
    return Event::Consumed;
}

void WidgetNode::OnMouseOut(EventInformation& p_event) {
    if (!GetWidget().Has(Widget::FlagHover))
        return;
    GetWidget().Set(Widget::FlagHover, false);
    p_event.Sink().RequestRedraw();
}

bool WidgetNode::TakesPress(EventInformation const& p_event) const {
    return p_event.button == 0 && _isShown && !GetWidget().Has(Widget::FlagDisabled) && p_event.Hit() &&
        !p_event.Hit()->result.records.empty();
}

void WidgetNode::TakeFocus(EventInformation& p_event) {
    Widget& widget = GetWidget();
    if (_hasFocus || !widget.IsFocusable())
        return;
    _hasFocus = true; // before it is told of what becomes of it
    widget.Set(Widget::FlagFocus, true);
    p_event.Sink().TakeFocus(
        Core::WeakPtr<Vis>(Core::Ptr<Vis>(this)), [this](EventSink::FocusChange p_change) { FocusChanged(p_change); });
    p_event.Sink().RequestRedraw();
}

void WidgetNode::FocusChanged(EventSink::FocusChange p_change) {
    Core::Ptr<Vis> const self(this); // who hears of the end of an edit may remove the node
    bool const isHere = p_change == EventSink::FocusChange::WindowEntered;
    if (p_change == EventSink::FocusChange::Lost)
        _hasFocus = false;
    if (p_change != EventSink::FocusChange::Lost)
        GetWidget().WindowChanged(isHere);
    else
        GetWidget().Set(Widget::FlagFocus, false);
    Refresh();
}

Event::Result WidgetNode::OnDragBegin(EventInformation& p_event) {
    if (!TakesPress(p_event))
        return Event::Ignored;
    Core::Ptr<Vis> const self(this);
    TakeFocus(p_event);
    _isDragged = GetWidget().Press(PlaceOf(p_event), p_event);
    return Event::Consumed;
}

void WidgetNode::OnDrag(EventInformation& p_event) {
    Core::Ptr<Vis> const self(this);
    if (_isDragged)
        GetWidget().Drag(PlaceOf(p_event), p_event);
}

void WidgetNode::OnDragEnd(EventInformation& p_event) {
    Core::Ptr<Vis> const self(this);
    if (std::exchange(_isDragged, false))
        GetWidget().Release(PlaceOf(p_event), p_event);
}

Event::Result WidgetNode::OnClick(EventInformation& p_event) {
    if (!TakesPress(p_event))
        return Event::Ignored;
    Core::Ptr<Vis> const self(this); // what a click does may remove the node
    TakeFocus(p_event);
    if (GetWidget().Press(PlaceOf(p_event), p_event))
        GetWidget().Release(PlaceOf(p_event), p_event);
    return Event::Consumed;
}

Event::Propagation WidgetNode::OnDoubleClick(EventInformation& p_event) {
    if (!TakesPress(p_event))
        return Event::PropagationContinue;
    Core::Ptr<Vis> const self(this);
    TakeFocus(p_event);
    bool const isUsed = GetWidget().DoublePress(PlaceOf(p_event), p_event);
    return isUsed ? Event::PropagationStop : Event::PropagationContinue;
}

Event::Result WidgetNode::OnKeyPress(EventInformation& p_event) {
    Core::Ptr<Vis> const self(this);
    Widget& widget = GetWidget();
    if (!_isShown || widget.Has(Widget::FlagDisabled)) {
        if (_hasFocus)
            p_event.Sink().LeaveFocus(Core::WeakPtr<Vis>(self));
        return Event::Ignored;
    }
    if (_hasFocus)
        return widget.Key(p_event) ? Event::Consumed : Event::Ignored;
    bool const isTab = p_event.key == EventInformation::KeyTab;
    if (!isTab || !widget.IsFocusable())
        return Event::Ignored;
    TakeFocus(p_event);
    widget.TabbedInto(p_event);
    return Event::Consumed;
}

} // namespace Qor::Chart::Render
