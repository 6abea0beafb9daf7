#include "render/nodes/Viewport.h"

#include "render/nodes/PanePopOut.h"
#include "render/events/EventInformation.h"
#include "render/pick/BoxSelection.h"
#include "render/pick/HitRecord.h"
#include "framework/types/Math.h"
#include "framework/utility/Logger.h"

#include <algorithm>
#include <span>
#include <utility>

namespace Qor::Chart::Render {

namespace {

/// What was hit of the pane, the foremost part first.
std::span<Ogl::HitRecord const> RecordsOf(EventInformation const& p_event) {
    if (!p_event.Hit())
        return {};
    return p_event.Hit()->result.records;
}

/// Also of places so far apart that no int holds it.
float Difference(int p_a, int p_b) {
    return static_cast<float>(static_cast<double>(p_a) - p_b);
}

bool IsGrip(Ogl::HitRecord const& p_record) {
    return p_record.name >= Viewport::PartGripTopLeft && p_record.name <= Viewport::PartGripBottomRight;
}

bool IsDecoration(Ogl::HitRecord const& p_record) {
    return p_record.name >= Viewport::PartTitleBar && p_record.name <= Viewport::PartDetachButton;
}

} // namespace

Event::Result Viewport::OnMouseOver(EventInformation& p_event) {
    std::span const records = RecordsOf(p_event);
    auto const found = std::ranges::find_if(records, &IsDecoration);
    if (found != records.end()) {
        _hoverRecord = *found;
        ShowTitleBar(true);
    }
    auto const isFirst = [&](Part p_part) { return !records.empty() && records.front().name == p_part; };
    if (_popOutButton)
        _popOutButton->Set(TextureWidget::FlagHover, isFirst(PartPopOutButton));
    if (_detachButton)
        _detachButton->Set(TextureWidget::FlagHover, isFirst(PartDetachButton));
    if (!_hoverRecord)
        return Event::Ignored;
    p_event.Sink().RequestRedraw();
    return Event::Consumed;
}

void Viewport::OnMouseOut(EventInformation& p_event) {
    if (!_hoverRecord)
        return;
    EndHover();
    p_event.Sink().RequestRedraw();
}

void Viewport::EndHover() {
    Model::Pane const* const pane = _pane.Peek();
    if (!pane || !pane->IsTitlePinned())
        ShowTitleBar(false);
    for (TextureWidget* const button : {_popOutButton.get(), _detachButton.get()}) {
        if (button)
            button->Set(TextureWidget::FlagHover, false);
    }
    _hoverRecord.reset();
}

/// The offset takes the parent's corner off once too often, as the drag does: that the two cancel keeps the pane under the
/// pointer wherever the parent lies.
Event::Result Viewport::OnDragBegin(EventInformation& p_event) {
    bool const beginsBand = (p_event.buttons & EventInformation::ButtonMaskPrimary) != 0 &&
        (p_event.modifiers & EventInformation::ModifierControl) != 0;
    for (Ogl::HitRecord const& record : RecordsOf(p_event)) {
        bool const isTitleBar = record.name == PartTitleBar;
        bool const isBand = record.name == Ogl::HitRecord::NameDefault && beginsBand;
        if (!isTitleBar && !IsGrip(record) && !isBand)
            continue;
        if (isTitleBar) {
            Rectangle const viewport = GetViewport(_parentViewport);
            auto const offset = [](int p_pointer, float p_start, float p_parent) {
                return Types::Math::Truncate(static_cast<double>(p_pointer) - p_start - p_parent);
            };
            _dragOffset = {offset(p_event.position.x, viewport.x, _parentViewport.x),
                offset(p_event.position.y, viewport.y, _parentViewport.y)};
        }
        if (isBand) {
            _dragOffset = p_event.position;
            _hoverRecord = record;
            _selectionBox =
                Rectangle(static_cast<float>(p_event.position.x), static_cast<float>(p_event.position.y), 0, 0);
        }
        if (Model::Pane const* const pane = isBand ? nullptr : _pane.Peek()) {
            bool const isOwn = pane->IsSet(Model::Pane::ViewportProperty);
            _dragStart = {p_event.position, isOwn ? std::optional(pane->GetViewport()) : std::nullopt};
        }
        _dragPending = true;
        return Event::Consumed;
    }
    return Event::Ignored;
}

void Viewport::OnDrag(EventInformation& p_event) {
    if (!_hoverRecord)
        return;
    if (std::exchange(_dragPending, false))
        p_event.Sink().AboutToMove(SourceModel());
    if (!HasHover(Ogl::HitRecord::NameDefault)) {
        Move(p_event);
        return;
    }
    bool const drawsBand = (p_event.buttons & EventInformation::ButtonMaskPrimary) != 0 &&
        (p_event.modifiers & EventInformation::ModifierControl) != 0;
    if (!drawsBand)
        return;
    _selectionBox.width = Difference(p_event.position.x, _dragOffset.x);
    _selectionBox.height = Difference(p_event.position.y, _dragOffset.y);
    p_event.Sink().RequestRedraw();
}

/// Moves or resizes the pane, in the coordinates of its parent; the pointer counts as inside the parent.
void Viewport::Move(EventInformation const& p_event) {
    Rectangle const& parent = _parentViewport;
    auto const inParent = [](int p_pointer, float p_start, float p_length) {
        int const place = Types::Math::Truncate(static_cast<double>(p_pointer) - p_start);
        return Types::Math::Clamp(place, 0, Types::Math::Truncate(p_length));
    };
    Types::Pos const pointer(
        inParent(p_event.position.x, parent.x, parent.width), inParent(p_event.position.y, parent.y, parent.height));
    Rectangle viewport = GetViewport(parent).Translate(-parent.x, -parent.y);
    if (HasHover(PartTitleBar)) {
        viewport.x = Difference(pointer.x, _dragOffset.x) - parent.x;
        viewport.y = Difference(pointer.y, _dragOffset.y) - parent.y;
    } else if (auto const grip = HoveredGrip()) {
        viewport = PaneLayout::Resized(viewport, *grip, pointer);
    }
    SetViewport(parent, viewport.Translate(parent.x, parent.y));
    p_event.Sink().RequestUpdate();
}

void Viewport::OnDragEnd(EventInformation& p_event) {
    if (!_hoverRecord)
        return;
    _dragPending = false;
    if (HasHover(Ogl::HitRecord::NameDefault)) {
        using Operation = BoxSelection::Operation;
        bool const adds = (p_event.modifiers & EventInformation::ModifierShift) != 0;
        BoxSelection const box(Core::WeakPtr<Vis>(Core::Ptr<Vis>(this)), _selectionBox, _selectionBox.height < 0,
            adds ? Operation::Add : Operation::Replace);
        _selectionBox = {};
        EndHover();
        p_event.Sink().SelectBox(box);
        p_event.Sink().RequestRedraw();
        return;
    }
    EndHover();
    Place(p_event);
    p_event.Sink().RequestUpdate();
}

void Viewport::Place(EventInformation const& p_event) {
    std::optional<DragStart> const start = std::exchange(_dragStart, std::nullopt);
    Core::Ptr<Model::Pane> const pane = _pane.Lock();
    bool const isTakenBack =
        start && p_event.position == start->pointer && (p_event.buttons & EventInformation::ButtonMaskPrimary) != 0;
    if (!pane || !isTakenBack)
        SetViewport(_parentViewport, PaneLayout::FittedInto(_parentViewport, GetViewport(_parentViewport)));
    else if (start->viewport)
        pane->SetViewport(*start->viewport);
    else
        pane->Reset(Model::Pane::ViewportProperty);
}

Event::Result Viewport::OnClick(EventInformation& p_event) {
    std::span const records = RecordsOf(p_event);
    bool const isDetach = !records.empty() && records.front().name == PartDetachButton;
    bool const isPopOut = !records.empty() && records.front().name == PartPopOutButton;
    Core::Ptr<Model::Pane> const pane = _pane.Lock();
    if ((!isDetach && !isPopOut) || p_event.button != 0 || !pane || !_popout)
        return Event::Ignored;
    PopOutHost* const host = p_event.Sink().GetPopOutHost();
    if (!host) {
        Utility::GetLogger().warning(
            "The content of a pane cannot be shown in a window of its own, because this program "
            "opens no windows; give its event sink a pop-out host, or hide the buttons.");
        return Event::Consumed;
    }
    Types::Size const size = GetViewport(_parentViewport).Extent();
    PopOutHost::Content const content(pane->begin(), pane->end());
    _popout(*host, size, isDetach ? PanePopOut::Detach(*pane, content) : PopOutHost::Restore(), content);
    p_event.Sink().RequestUpdate();
    return Event::Consumed;
}

Event::Result Viewport::OnKeyPress(EventInformation& p_event) {
    using Mode = Model::Pane::ProjectionMode;
    Core::Ptr<Model::Pane> const pane = _pane.Lock();
    bool const isKnown =
        p_event.key == EventInformation::KeyOrthographic || p_event.key == EventInformation::KeyPerspective;
    if (!pane || !isKnown || p_event.modifiers != 0)
        return Event::Ignored;
    Mode const mode = p_event.key == EventInformation::KeyPerspective ? Mode::Perspective : Mode::Orthographic;
    if (pane->GetProjectionMode() == mode)
        return Event::Ignored;
    pane->SetProjectionMode(mode);
    p_event.Sink().RequestUpdate();
    return Event::Consumed;
}

} // namespace Qor::Chart::Render
