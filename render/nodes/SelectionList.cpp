#include "render/nodes/SelectionList.h"

#include "render/nodes/SelectionHits.h"
#include "render/nodes/SelectionLists.h"
#include "render/nodes/SelectionView.h"
#include "render/events/EventInformation.h"
#include "render/pick/BoxSelection.h"
#include "render/context/UpdateContext.h"
#include "framework/model/Events.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace Qor::Chart::Render {

using Entry = Model::SelectionEntry;

namespace {

bool IsHeld(EventInformation const& p_event, EventInformation::ModifierMask p_modifier) {
    return (p_event.modifiers & p_modifier) != 0;
}

} // namespace

SelectionList::SelectionList() : Vis(VisFlagSecond), _model(*this, "model"), _view(std::make_shared<SelectionView>()) {
    RegisterCB(HandledUpdate);
    for (EventName const event : {EventMouseOut, EventClick, EventDoubleClick, EventKeyPress})
        Connect(*this, event);
}

SelectionList::~SelectionList() = default;

void SelectionList::Attach(Core::Ptr<Model::ModelNode> const& p_model) {
    _model.Attach(p_model);
    _view->MarkAll();
    _connection.Disconnect();
    Core::Ptr<Model::SelectionList> const model = List();
    if (!model)
        return;
    using Changed = Model::Events::SelectionChangedArgs;
    _connection = model->Delegate().Connect<Changed>([view = _view](Changed const& p_event) {
        for (auto const* const entries : {&p_event.Added(), &p_event.Removed()}) {
            for (Entry const& entry : *entries)
                view->MarkChanged(entry.node);
        }
    });
}

Core::WeakPtr<Model::ModelNode> SelectionList::SourceModel() const {
    return _model.Get();
}

NodeStatus SelectionList::DoUpdate(UpdateContext const& p_context) {
    if (_model.Expired())
        return NodeStatusInvalid;
    if (!_lists) {
        _lists = SelectionLists::MakeOf(p_context.Registrar());
        _lists->Join(*this, _view);
    }
    return NodeStatusOk;
}

std::vector<SelectRecordEntry> SelectionList::Entries() const {
    std::vector<SelectRecordEntry> entries;
    Core::Ptr<Model::SelectionList> const model = List();
    if (!model)
        return entries;
    for (Entry const& entry : model->Selected())
        entries.emplace_back(
            SelectionHits::RecordOf(_view->HandlerOf(entry.node), entry), SelectionHits::TypeOf(entry));
    return entries;
}

std::vector<Entry> SelectionList::InArea(std::vector<SelectRecord> const& p_records) const {
    std::vector<Entry> entries;
    for (SelectRecord const& record : p_records) {
        Core::Ptr<Vis> const handler = record.Handler().Lock();
        if (handler && record.IsValid() && (!_lists || _lists->ListOf(*handler).Get() == this))
            entries.push_back(SelectionHits::EntryOf(record));
    }
    return entries;
}

Event::Result SelectionList::OnClick(EventInformation& p_event) {
    return Click(p_event, false);
}

Event::Propagation SelectionList::OnDoubleClick(EventInformation& p_event) {
    return Click(p_event, true).propagation;
}

Event::Result SelectionList::Click(EventInformation& p_event, bool p_isSecond) {
    Core::Ptr<Model::SelectionList> const model = List();
    if (!model || !model->ClickSelects() || p_event.button != 0 || !p_event.hits)
        return Event::Ignored;
    bool const isNext = IsHeld(p_event, EventInformation::ModifierAlt);
    std::vector<Entry> const entries = InArea(SelectionHits::At(*p_event.hits, isNext ? p_event.hits->size() : 1));
    if (entries.empty())
        return ClickBeside(p_event, *model);
    Entry const clicked = Clicked(entries, isNext);
    _lastClicked = clicked;
    p_event.SetTimeOut(RowMilliseconds);
    if (!IsHeld(p_event, EventInformation::ModifierControl)) {
        if (IsHeld(p_event, EventInformation::ModifierShift))
            model->Select(std::span(&clicked, 1));
        else
            model->Replace(std::span(&clicked, 1));
    } else if (isNext || !p_isSecond) {
        model->Toggle(std::span(&clicked, 1));
    }
    return Event::Consumed;
}

Event::Result SelectionList::ClickBeside(EventInformation const& p_event, Model::SelectionList& p_model) {
    _lastClicked.reset();
    bool const keeps =
        IsHeld(p_event, EventInformation::ModifierControl) || IsHeld(p_event, EventInformation::ModifierShift);
    bool const clears = !keeps && p_model.ClickBesideClears() && !SelectionHits::Foremost(*p_event.hits);
    return clears && p_model.DeselectAll() ? Event::Consumed : Event::Ignored;
}

Entry const& SelectionList::Clicked(std::vector<Entry> const& p_entries, bool p_isNext) const {
    auto const last = p_isNext && _lastClicked ? std::ranges::find(p_entries, *_lastClicked) : p_entries.end();
    bool const hasNext = last != p_entries.end() && std::next(last) != p_entries.end();
    return hasNext ? *std::next(last) : p_entries.front();
}

void SelectionList::OnMouseOut(EventInformation&) {
    _lastClicked.reset();
}

Event::Result SelectionList::OnKeyPress(EventInformation& p_event) {
    Core::Ptr<Model::SelectionList> const model = List();
    bool const clears =
        model && p_event.key == EventInformation::KeyEscape && p_event.modifiers == 0 && model->EscapeClears();
    return clears && model->DeselectAll() ? Event::Consumed : Event::Ignored;
}

bool SelectionList::SelectBox(BoxSelection const& p_box, std::vector<HitRecord> const& p_hits) const {
    Core::Ptr<Model::SelectionList> const model = List();
    if (!model || !model->BoxSelects())
        return false;
    std::vector<Entry> entries;
    for (SelectRecord const& record : SelectionHits::AllOf(p_hits))
        entries.push_back(SelectionHits::EntryOf(record));
    if (p_box.GetOperation() == BoxSelection::Operation::Add)
        model->Select(entries);
    else
        model->Replace(entries);
    return true;
}

} // namespace Qor::Chart::Render
