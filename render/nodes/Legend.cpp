#include "render/nodes/Legend.h"

#include "render/nodes/LegendLayout.h"
#include "render/nodes/LegendPainter.h"
#include "render/nodes/LegendRow.h"
#include "render/nodes/PixelScope.h"
#include "render/nodes/ShortText.h"
#include "render/events/EventInformation.h"
#include "render/events/EventSink.h"
#include "render/pick/HitRecord.h"
#include "render/pick/HitResult.h"
#include "render/pick/SelectRecord.h"
#include "render/context/DrawContext.h"
#include "render/context/PickPoint.h"
#include "render/context/SceneCapabilities.h"
#include "render/context/UpdateContext.h"
#include "render/units/UnitSystemConverter.h"
#include "framework/algorithms/Hit.h"
#include "framework/model/Events.h"
#include "framework/model/Pane.h"
#include "framework/ogl/Agl.h"

#include <boost/any.hpp>

#include <algorithm>
#include <array>
#include <span>
#include <utility>

namespace Qor::Chart::Render {

namespace {

using Agl = Utility::Scoped<Ogl::Agl>;
using Name = Ogl::HitRecord;

constexpr std::array Hooks{HandledUpdate, HandledSetupOverlay, HandledDrawOverlay, HandledHitOverlay};
constexpr std::array Events{EventHandler::EventMouseOver, EventHandler::EventMouseOut, EventHandler::EventClick};

/// Of how many rows that are not to be seen the width is measured: those with the longest texts.
constexpr std::size_t MeasuredRows = 8;
/// How many dependents of a target are looked at for its visual node.
constexpr std::size_t MostDependents = 64;
constexpr int GroundAlpha = 235;

/// What was hit of the legend; null when nothing was.
Ogl::HitRecord const* PartOf(EventInformation const& p_event) {
    return p_event.Hit() && !p_event.Hit()->result.records.empty() ? &p_event.Hit()->result.records.front() : nullptr;
}

bool IsButton(std::uint64_t p_name) {
    return p_name == Legend::PartScrollUp || p_name == Legend::PartScrollDown;
}

/// The height of a title bar that is always there, in the pane that a node lies in.
float ReservedHeight(DrawContext const& p_context, Model::ModelNode const& p_node) {
    for (Core::Dependencies::Entry const& entry : p_node.Deps().Entries()) {
        auto const* const pane = entry.children > 0 ? dynamic_cast<Model::Pane const*>(entry.dependent) : nullptr;
        if (pane && pane->IsTitlePinned())
            return static_cast<float>(std::max(p_context.Schema().Top().titleBarHeight, 0));
    }
    return 0;
}

/// At the entry as long as it is there, and at the legend.
template <class Args>
void Raise(Core::Ptr<Model::Legend> const& p_legend, Core::WeakPtr<Model::LegendEntry> const& p_entry,
    EventInformation const& p_event) {
    Args const args(p_entry, p_event.position);
    if (Core::Ptr<Model::LegendEntry> const entry = p_entry.Lock())
        entry->Delegate().Raise(args);
    if (p_legend)
        p_legend->Delegate().Raise(args);
}

bool IsInSameTree(Core::NodePath const& p_a, Core::NodePath const& p_b) {
    return !p_a.IsDefined() || !p_b.IsDefined() || p_a.Ids().front() == p_b.Ids().front();
}

} // namespace

/// What is drawn, and who draws it.
struct Legend::Sheet {
    LegendPainter painter;
    LegendPainter::Page page;
    float widest = 0; ///< of the rows measured so far
};

Legend::Legend()
    : Vis(VisFlagSecond | VisFlagSelfManaged)
    , _legend(*this, "legend")
    , _units(*this, "units")
    , _sheet(std::make_unique<Sheet>()) {
    SetLayer(HighestLayer);
    for (HandledCallbacks const hook : Hooks)
        RegisterCB(hook);
    for (EventName const event : Events)
        Connect(*this, event);
}

Legend::~Legend() {
    if (_stack)
        _stack->Leave(*this);
}

void Legend::Attach(Core::Ptr<Model::ModelNode> const& p_model) {
    _isComplete = false;
    _legend.Attach(p_model);
}

Core::WeakPtr<Model::ModelNode> Legend::SourceModel() const {
    return _legend.Get();
}

Core::Ptr<Model::Legend> Legend::Shown() const {
    Core::Ptr<Model::Legend> model = _legend.Lock();
    return model && model->IsVisible() ? model : Core::Ptr<Model::Legend>();
}

/// Entries that are appended, one after the other, are the one change of the list that is not looked at as a whole.
void Legend::TouchThis(ModifiableType p_type, Change p_change, Relationship p_relationship,
    Core::WeakPtr<Core::Node> const& p_node, std::string const& p_name, boost::any const& p_data) {
    if (p_type == ModifiableTypeNode && p_relationship == RelationshipDirect) {
        auto const* const node = boost::any_cast<Core::WeakPtr<Core::Node>>(&p_data);
        if (p_change == ChangeAdd && node && _isComplete)
            _added.push_back(*node);
        else
            _isComplete = false;
    }
    Vis::TouchThis(p_type, p_change, p_relationship, p_node, p_name, p_data);
}

/// A node whose model is gone stays valid: it has nothing to complain about.
NodeStatus Legend::DoUpdate(UpdateContext const& p_context) {
    if (!_stack) {
        _stack = LegendStack::Of(p_context.Registrar());
        _stack->Join(*this);
    }
    Core::Ptr<Model::Legend> const model = _legend.Lock();
    if (!model)
        return NodeStatusOk;
    if (!_isComplete)
        TakeEntries(*model);
    for (Core::WeakPtr<Core::Node> const& node : _added)
        Append(Core::DynamicCast<Model::LegendEntry>(node.Lock()));
    _added.clear();
    bool const areOtherUnits = TakeUnits(p_context);
    TakeChanges(p_context);
    for (Slot& slot : _slots) {
        if (areOtherUnits && slot.isTall)
            TakeRow(p_context, slot);
    }
    ListShown();
    return NodeStatusOk;
}

bool Legend::TakeUnits(UpdateContext const& p_context) {
    if (_units.Peek() == p_context.Units().Get() && !_unitsSeen.Modified())
        return false;
    _units.Attach(p_context.Units());
    _unitsSeen = Core::ModificationWatcher(Core::WeakPtr<Core::Node>(p_context.Units()));
    return true;
}

/// Keeps the rows of entries that are still there.
void Legend::TakeEntries(Model::Legend const& p_model) {
    std::vector<Slot> former = std::exchange(_slots, {});
    _sheet->page.items.clear(); // they point to rows
    _added.clear();
    _slots.reserve(p_model.Size());
    auto next = former.begin();
    auto const hasLeft = [&](Slot const& p_slot) {
        Model::LegendEntry const* const entry = p_slot.row->Entry().Peek();
        return !entry || !p_model.Contains(*entry);
    };
    for (Core::Ptr<Model::ModelNode> const& child : p_model) {
        while (next != former.end() && next->entry != child->Id() && hasLeft(*next))
            ++next;
        if (next != former.end() && next->entry == child->Id()) {
            next->row->index = _slots.size();
            _slots.push_back(std::move(*next++));
        } else {
            Append(Core::DynamicCast<Model::LegendEntry>(child));
        }
    }
    _isComplete = true;
    _isListDue = true;
}

void Legend::Append(Core::Ptr<Model::LegendEntry> const& p_entry) {
    if (!p_entry)
        return;
    Slot& slot = _slots.emplace_back();
    slot.row = Core::MakeNode<LegendRow>(_changed);
    slot.row->index = _slots.size() - 1;
    slot.entry = p_entry->Id();
    slot.row->Attach(p_entry);
}

void Legend::TakeChanges(UpdateContext const& p_context) {
    for (std::size_t i = 0; i < _changed.size(); ++i) {
        Core::Ptr<LegendRow> const row = _changed[i];
        bool const isCurrent = row->index < _slots.size() && _slots[row->index].row == row;
        if (isCurrent)
            TakeRow(p_context, _slots[row->index]);
    }
    _changed.clear();
}

void Legend::TakeRow(UpdateContext const& p_context, Slot& p_slot) {
    if (!p_slot.row->Update(p_context, *this))
        return;
    LegendRow::Look const& look = p_slot.row->GetLook();
    auto const length = static_cast<std::uint32_t>(look.text.size());
    bool const isListed = p_slot.row->index < _listed;
    _isListDue = _isListDue || (isListed && (look.isShown != p_slot.isShown || look.HasBar() != p_slot.isTall));
    _areLengthsDue = _areLengthsDue || (isListed && length != p_slot.length);
    p_slot.isShown = look.isShown;
    p_slot.isTall = look.HasBar();
    p_slot.length = length;
    _isLayoutDue = true;
}

void Legend::ListShown() {
    if (std::exchange(_isListDue, false)) {
        _shown.clear();
        _tall.clear();
        _listed = 0;
        _areLengthsDue = true;
        _isLayoutDue = true;
    }
    if (std::exchange(_areLengthsDue, false)) {
        _longest.clear();
        for (std::uint32_t const slot : _shown)
            OfferLongest(slot);
        _isWidthDue = true;
    }
    for (; _listed < _slots.size(); ++_listed) {
        if (!_slots[_listed].isShown)
            continue;
        _shown.push_back(static_cast<std::uint32_t>(_listed));
        _tall.push_back(_slots[_listed].isTall ? 1 : 0);
        OfferLongest(static_cast<std::uint32_t>(_listed));
    }
}

void Legend::OfferLongest(std::uint32_t p_slot) {
    auto const isLonger = [&](std::uint32_t p_a, std::uint32_t p_b) { return _slots[p_a].length > _slots[p_b].length; };
    if (_longest.size() == MeasuredRows && !isLonger(p_slot, _longest.back()))
        return;
    if (_longest.size() == MeasuredRows)
        _longest.pop_back();
    _longest.insert(std::upper_bound(_longest.begin(), _longest.end(), p_slot, isLonger), p_slot);
    _isWidthDue = true;
}

/// Rows that look other than they were prepared, lay out nothing but themselves; all else is kept from frame to frame.
void Legend::DoSetupOverlay(DrawContext& p_context, Agl&) {
    Core::Ptr<Model::Legend> const model = Shown();
    _mayInteract = p_context.Capabilities().interaction;
    if (!model || p_context.Viewport().Top().IsEmpty()) {
        _sheet->page = {};
        _isLayoutDue = true;
        return;
    }
    bool const isOtherStyle = _sheet->painter.TakeStyle(p_context);
    _isWidthDue = _isWidthDue || isOtherStyle;
    if (TakeSettings(p_context, *model) || isOtherStyle || _isLayoutDue || IsDimmingDue())
        LayOut(p_context);
}

bool Legend::TakeSettings(DrawContext const& p_context, Model::Legend const& p_model) {
    Types::Size const pane = p_context.Viewport().Top().Extent();
    float const reserved = ReservedHeight(p_context, p_model);
    LegendStack::Taken const taken = p_model.IsAutomaticallyPlaced() ? _stack->Before(*this) : LegendStack::Taken();
    bool const isSame = pane == _settings.pane && reserved == _settings.reserved && taken == _settings.taken &&
        p_model.IsAutomaticallyPlaced() == _settings.isAutomatic && p_model.GetXPosition() == _settings.x &&
        p_model.GetYPosition() == _settings.y && p_model.Columns() == _settings.columns &&
        ShortText::IsOf(_settings.title, p_model.Title());
    if (isSame)
        return false;
    _settings = {pane, reserved, taken, ShortText::Of(p_model.Title()), p_model.IsAutomaticallyPlaced(),
        p_model.GetXPosition(), p_model.GetYPosition(), p_model.Columns(), _settings.first};
    return true;
}

/// A target that goes tells nobody, nor does what is above it when it is hidden.
bool Legend::IsDimmingDue() const {
    return std::ranges::any_of(_sheet->page.items,
        [](LegendPainter::Item const& p_item) { return p_item.row->IsDimmed() != p_item.isDimmed; });
}

void Legend::MeasureLongest() {
    if (!std::exchange(_isWidthDue, false))
        return;
    _sheet->widest = 0;
    for (std::uint32_t const slot : _longest)
        _sheet->widest = std::max(_sheet->widest, _sheet->painter.WidthOf(*_slots[slot].row));
}

/// Below the legends before it; beside them when there it would have to be scrolled, and over them when there is no space
/// at all.
void Legend::LayOut(DrawContext const& p_context) {
    LegendPainter& painter = _sheet->painter;
    LegendLayout const& layout = _sheet->page.layout;
    MeasureLongest();
    _sheet->page.title = _settings.title;
    LegendStack::Taken const& taken = _settings.taken;
    LegendLayout::Request request{_settings.pane, std::max(_settings.reserved, taken.above), 0, _settings.isAutomatic,
        _settings.x, _settings.y, _settings.columns, painter.PixelRatio(), painter.LineHeight(),
        painter.WidthOf(_settings.title), 0, _tall, _settings.first};
    FitRows(request);
    if (taken.right > 0 && (layout.IsEmpty() || layout.IsScrolled())) {
        request.reservedAbove = _settings.reserved;
        request.reservedRight = taken.right;
        FitRows(request);
    }
    if (taken.right > 0 && layout.IsEmpty()) {
        request.reservedRight = 0;
        FitRows(request);
    }
    _settings.first = layout.first;
    painter.Prepare(p_context, _sheet->page);
    _isLayoutDue = false;
}

/// A second time when the rows that come into sight are wider than those that were measured.
void Legend::FitRows(LegendLayout::Request& p_request) {
    LegendPainter::Page& page = _sheet->page;
    for (bool isMeasured = false; !isMeasured;) {
        float const widest = _sheet->widest;
        p_request.rowWidth = widest;
        page.layout = LegendLayout(p_request);
        page.items.clear();
        for (LegendLayout::Cell const& cell : page.layout.cells) {
            LegendRow const& row = *_slots[_shown[cell.row]].row;
            page.items.push_back({&row, cell.place, row.IsDimmed()});
            _sheet->widest = std::max(_sheet->widest, _sheet->painter.WidthOf(row));
        }
        isMeasured = !(_sheet->widest > widest);
    }
}

LegendStack::Taken Legend::Takes() const {
    LegendLayout::Rectangle const& ground = _sheet->page.layout.ground;
    if (ground.IsEmpty() || !_settings.isAutomatic)
        return {};
    Types::Size const& pane = _settings.pane;
    return {static_cast<float>(pane.height) - ground.y, static_cast<float>(pane.width) - ground.x};
}

LegendRow const* Legend::RowOf(std::uint64_t p_name) const {
    bool const isEntry = p_name >= Name::NameFirst && p_name - Name::NameFirst < _slots.size();
    return isEntry ? _slots[static_cast<std::size_t>(p_name - Name::NameFirst)].row.Get() : nullptr;
}

DrawResult Legend::DoDrawOverlay(DrawContext const& p_context) {
    Core::Ptr<Model::Legend> const model = Shown();
    LegendPainter::Page const& page = _sheet->page;
    if (!model || page.layout.IsEmpty())
        return DrawResultDescend;
    Types::Schema const& schema = p_context.Schema().Top();
    LegendPainter::Ground ground{schema.clearColor, model->BorderColor().value_or(schema.borderColor)};
    ground.fill.setAlpha(GroundAlpha);
    ground.fill = model->BackgroundColor().value_or(ground.fill);
    LegendLayout::Rectangle lit;
    if (_hovered == PartScrollUp && page.layout.first > 0)
        lit = page.layout.up;
    if (_hovered == PartScrollDown && page.layout.hiddenAfter > 0)
        lit = page.layout.down;
    for (LegendPainter::Item const& item : page.items) {
        if (!_hoveredEntry.IsEmpty() && item.row->Entry() == _hoveredEntry)
            lit = item.place;
    }
    Agl agl(p_context.Graphics());
    PixelScope const pixels(agl, p_context.Viewport().Top());
    _sheet->painter.Draw(p_context, page, ground, lit);
    return DrawResultDescend;
}

/// The traversal takes what was found last for the best.
bool Legend::DoHitOverlay(DrawContext const&, PickPoint const& p_point, HitResult& p_result) {
    LegendLayout const& layout = _sheet->page.layout;
    if (layout.IsEmpty() || !Algorithms::Hit::IsHit(layout.ground, p_point.position))
        return true;
    p_result.records.emplace_back(Name::NameDefault, Name::DepthOverlay);
    if (LegendLayout::Cell const* const cell = layout.CellAt(p_point.position)) {
        LegendRow const& row = *_slots[_shown[cell->row]].row;
        p_result.records.emplace_back(Name::NameFirst + row.index, Name::DepthOverlay);
        p_result.data = row.Entry();
    } else if (Algorithms::Hit::IsHit(layout.up, p_point.position)) {
        p_result.records.emplace_back(PartScrollUp, Name::DepthOverlay);
    } else if (Algorithms::Hit::IsHit(layout.down, p_point.position)) {
        p_result.records.emplace_back(PartScrollDown, Name::DepthOverlay);
    }
    return true;
}

Legend::WeakEntry Legend::EntryOf(EventInformation const& p_event) const {
    if (auto const* const entry = boost::any_cast<WeakEntry>(&p_event.Hit()->result.data))
        return *entry;
    LegendRow const* const row = RowOf(PartOf(p_event)->name);
    return row ? row->Entry() : WeakEntry();
}

Core::Ptr<Vis> Legend::VisualOf(Model::ModelNode const& p_target) const {
    std::span<Core::Dependencies::Entry const> const entries = p_target.Deps().Entries();
    for (Core::Dependencies::Entry const& entry : entries.first(std::min(entries.size(), MostDependents))) {
        auto* const vis = entry.references > 0 ? dynamic_cast<Vis*>(entry.dependent) : nullptr;
        if (vis && vis->SourceModel().Peek() == &p_target && IsInSameTree(GetPath(), vis->GetPath()))
            return Core::Ptr<Vis>(vis);
    }
    return {};
}

Event::Result Legend::OnMouseOver(EventInformation& p_event) {
    Ogl::HitRecord const* const part = PartOf(p_event);
    if (!part)
        return Event::Ignored;
    Core::Ptr<Vis> const self(this); // a listener may remove the legend
    WeakEntry const hovered = EntryOf(p_event);
    if (_hoveredEntry != hovered)
        EndHover(p_event);
    _hovered = part->name;
    p_event.Sink().RequestRedraw();
    Core::Ptr<Model::LegendEntry> const entry = hovered.Lock();
    if (!entry || std::exchange(_hoveredEntry, hovered) == hovered)
        return Event::Consumed;
    Render::HitRecord const& hit = *p_event.Hit();
    p_event.Sink().Hover(SelectRecord(self, entry, part->name, hit.location, hit.screenPos, GetPath()));
    if (Core::Ptr<Model::ModelNode> const target = entry->Target().Lock()) {
        if (Core::Ptr<Vis> const visual = VisualOf(*target)) {
            _hoveredTarget = target;
            p_event.Sink().Hover(SelectRecord(visual, target, visual->GetPath()));
        }
    }
    Raise<Model::Events::LegendEntryHoveredArgs>(_legend.Lock(), hovered, p_event);
    return Event::Consumed;
}

void Legend::EndHover(EventInformation& p_event) {
    WeakEntry const entry = std::exchange(_hoveredEntry, {});
    Core::WeakPtr<Model::ModelNode> const target = std::exchange(_hoveredTarget, {});
    if (entry.IsEmpty())
        return;
    p_event.Sink().EndHover(entry);
    if (!target.IsEmpty())
        p_event.Sink().EndHover(target);
    Raise<Model::Events::LegendEntryHoverEndedArgs>(_legend.Lock(), entry, p_event);
}

void Legend::OnMouseOut(EventInformation& p_event) {
    if (std::exchange(_hovered, Name::NameInvalid) == Name::NameInvalid)
        return;
    Core::Ptr<Vis> const self(this); // a listener may remove the legend
    p_event.Sink().RequestRedraw();
    EndHover(p_event);
}

Event::Result Legend::OnClick(EventInformation& p_event) {
    Ogl::HitRecord const* const part = PartOf(p_event);
    if (!part || p_event.button != 0)
        return Event::Ignored;
    Core::Ptr<Vis> const self(this); // a listener may remove the legend
    if (IsButton(part->name)) {
        Scroll(p_event, part->name);
    } else if (Core::Ptr<Model::LegendEntry> const entry = EntryOf(p_event).Lock()) {
        Toggle(p_event, *entry);
        Raise<Model::Events::LegendEntryClickedArgs>(_legend.Lock(), Core::WeakPtr<Model::LegendEntry>(entry), p_event);
    }
    return Event::Consumed;
}

void Legend::Scroll(EventInformation& p_event, std::uint64_t p_button) {
    LegendLayout const& layout = _sheet->page.layout;
    bool const isToEnd = (p_event.modifiers & EventInformation::ModifierControl) != 0;
    if (p_button == PartScrollUp)
        _settings.first = isToEnd ? 0 : layout.previousPage;
    else
        _settings.first = isToEnd ? _shown.size() : layout.nextPage;
    _isLayoutDue = true;
    p_event.Sink().RequestRedraw();
}

void Legend::Toggle(EventInformation& p_event, Model::LegendEntry const& p_entry) const {
    Core::Ptr<Model::Legend> const legend = _legend.Lock();
    Core::Ptr<Model::ModelNode> const target = p_entry.Target().Lock();
    if (!legend || !target || !_mayInteract || !legend->ClickToggles() || !p_entry.ClickToggles())
        return;
    p_event.Sink().RequestUpdate();
    target->SetVisible(!target->IsVisible());
}

void Legend::GetSelectRecords(Render::HitRecord const& p_hit, std::list<SelectRecord>& p_records) {
    auto const* const entry = boost::any_cast<WeakEntry>(&p_hit.result.data);
    Core::Ptr<Model::LegendEntry> const hit = entry ? entry->Lock() : Core::Ptr<Model::LegendEntry>();
    Core::Ptr<Model::ModelNode> const target = hit ? hit->Target().Lock() : Core::Ptr<Model::ModelNode>();
    Core::Ptr<Vis> const visual = target ? VisualOf(*target) : Core::Ptr<Vis>();
    if (visual)
        p_records.emplace_back(visual, target, visual->GetPath());
}

} // namespace Qor::Chart::Render
