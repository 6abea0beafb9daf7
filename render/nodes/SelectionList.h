#pragma once

#include "framework/core/Reference.h"
#include "framework/model/EventConnection.h"
#include "framework/model/SelectionList.h"
#include "render/Export.h"
#include "render/core/SelectsBelow.h"
#include "render/core/Vis.h"
#include "render/events/EventHandler.h"
#include "render/pick/HitRecord.h"
#include "render/pick/SelectRecord.h"
#include "render/pick/SelectRecordEntry.h"

#include <memory>
#include <optional>
#include <vector>

namespace Qor::Chart::Render {

class BoxSelection;
class SelectionLists;
class SelectionView;

/// The visual node of a selection list. It turns clicks and selection rectangles in its area, what is below its parent
/// and has no list closer to it, into changes of the model's selection, and has the visual nodes there show what is
/// selected: each in its own way. It draws nothing itself and is never hit: the host offers it clicks after the nodes
/// that were.
///
/// A click makes the foremost thing the selection; with Ctrl it is selected or no longer, with Shift as well. With Alt
/// it is the next thing behind the one that was clicked at this place last, and after the last one the foremost again.
/// This row of clicks ends when the host takes the pointer to have left: when it moves, or when some time has passed
/// without input.
class QOR_VIS_API SelectionList : public Vis, public EventHandler, public SelectsBelow {
public:
    /// After which time without input a row of clicks ends.
    static constexpr int RowMilliseconds = 2000;

    SelectionList();
    ~SelectionList() override;

    /// Mirrors a model node from now on. One that is no selection list is reported and refused.
    void Attach(Core::Ptr<Model::ModelNode> const& p_model);

    Core::WeakPtr<Model::ModelNode> SourceModel() const override;
    /// The model node; empty when it is gone.
    Core::Ptr<Model::SelectionList> List() const { return _model.Lock(); }

    /// What is selected, in order, each with the visual node that shows it; without one for what is not in the area.
    std::vector<SelectRecordEntry> Entries() const;

    /// Takes a click with the primary button; `EventInformation::hits` says what is under the pointer. It is handled
    /// when it is on something that can be selected, or has deselected what was.
    Event::Result OnClick(EventInformation& p_event) override;
    /// The same, but that a thing which the first click has toggled stays as it is.
    Event::Propagation OnDoubleClick(EventInformation& p_event) override;
    /// Ends a row of clicks.
    void OnMouseOut(EventInformation& p_event) override;
    /// Deselects all on Escape; an empty list leaves the key to others.
    Event::Result OnKeyPress(EventInformation& p_event) override;

    /// Takes a selection rectangle with what lies in it. False when the model leaves rectangles alone or is gone.
    bool SelectBox(BoxSelection const& p_box, std::vector<HitRecord> const& p_hits) const;

private:
    NodeStatus DoUpdate(UpdateContext const& p_context) override;

    Event::Result Click(EventInformation& p_event, bool p_isSecond);
    Event::Result ClickBeside(EventInformation const& p_event, Model::SelectionList& p_model);
    /// Those of the records that this list serves.
    std::vector<Model::SelectionEntry> InArea(std::vector<SelectRecord> const& p_records) const;
    /// The thing that a click is for, of those under the pointer.
    Model::SelectionEntry const& Clicked(std::vector<Model::SelectionEntry> const& p_entries, bool p_isNext) const;

    Core::WeakRef<Model::SelectionList> _model;
    std::shared_ptr<SelectionView> _view;
    std::shared_ptr<SelectionLists> _lists; ///< null until the first update
    Model::EventConnection _connection;
    std::optional<Model::SelectionEntry> _lastClicked; ///< of the row of clicks that is going on
};

} // namespace Qor::Chart::Render
