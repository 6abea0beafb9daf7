#pragma once

#include "framework/core/ModificationWatcher.h"
#include "framework/core/Reference.h"
#include "framework/model/Legend.h"
#include "framework/ogl/HitRecord.h"
#include "framework/types/Pos.h"
#include "framework/types/Size.h"
#include "framework/types/XPosition.h"
#include "framework/types/YPosition.h"
#include "render/Export.h"
#include "render/core/SelectsBelow.h"
#include "render/core/Vis.h"
#include "render/events/EventHandler.h"
#include "render/nodes/LegendLayout.h"
#include "render/nodes/LegendStack.h"

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <vector>

namespace Qor::Chart::Render {

class LegendPainter;
class LegendRow;
class UnitSystemConverter;

/// The visual node of a legend: a panel over the scene of its pane with a title and one row for each entry, in one or
/// more columns. It finds its place in the upper right corner, below a title bar that stays open and below or beside the
/// legends before it, or lies where the model says, always inside the pane. Rows for which there is no space are scrolled to with two small buttons, a page
/// at a time, or to the end with Control; beside them stands how many rows are hidden before and after. Titles and
/// texts that are too long end in an ellipsis.
///
/// An entry whose target is not visible, or is gone, looks faint. A click on an entry shows and hides its target where
/// legend and entry allow that. Pointer over, pointer out and click are raised as events of the entry and of the
/// legend. Values of colour maps stand in the unit that the converter of the update context gives, and are written with
/// the number format of the draw context.
///
/// Hit records have the name `Ogl::HitRecord::NameFirst` + i for entry i, counted over the entries among the model's
/// children, or that of a button; and, behind it or alone, `Ogl::HitRecord::NameDefault` for the panel. The result's
/// data is the entry, as a `Core::WeakPtr<Model::LegendEntry>`. An update costs what has changed, a frame and a pick
/// what is visible, however many entries there are; only when entries leave their list is walked once.
class QOR_VIS_API Legend : public Vis, public EventHandler, public SelectsBelow {
public:
    /// The names of the buttons in hit records.
    static constexpr std::uint64_t PartScrollUp = Ogl::HitRecord::NameInvalid - 2;
    static constexpr std::uint64_t PartScrollDown = Ogl::HitRecord::NameInvalid - 1;

    Legend();
    ~Legend() override;

    /// Mirrors a model node from now on. One that is no legend is reported and refused.
    void Attach(Core::Ptr<Model::ModelNode> const& p_model);

    Core::WeakPtr<Model::ModelNode> SourceModel() const override;

    void TouchThis(ModifiableType p_type, Change p_change, Relationship p_relationship,
        Core::WeakPtr<Core::Node> const& p_node, std::string const& p_name, boost::any const& p_data) override;

    /// What it takes of its pane where it finds its own place, as it was laid out last.
    LegendStack::Taken Takes() const;

    Event::Result OnMouseOver(EventInformation& p_event) override;
    void OnMouseOut(EventInformation& p_event) override;
    Event::Result OnClick(EventInformation& p_event) override;

private:
    using WeakEntry = Core::WeakPtr<Model::LegendEntry>;

    /// One entry, with what is asked of all of them at hand.
    struct Slot {
        Core::Ptr<LegendRow> row;
        std::uint32_t entry = 0; ///< the entry's identifier
        std::uint32_t length = 0; ///< of its text
        bool isShown = false;
        bool isTall = false;
    };
    /// What decides about the layout beside the rows and the style.
    struct Settings {
        Types::Size pane;
        float reserved = 0; ///< for the title bar
        LegendStack::Taken taken; ///< by other legends
        std::wstring title;
        bool isAutomatic = true;
        Types::XPosition x;
        Types::YPosition y;
        int columns = 0;
        std::size_t first = 0;
    };
    struct Sheet;

    NodeStatus DoUpdate(UpdateContext const& p_context) override;
    void DoSetupOverlay(DrawContext& p_context, Utility::Scoped<Ogl::Agl>& p_agl) override;
    DrawResult DoDrawOverlay(DrawContext const& p_context) override;
    bool DoHitOverlay(DrawContext const& p_context, PickPoint const& p_point, HitResult& p_result) override;
    void GetSelectRecords(HitRecord const& p_hit, std::list<SelectRecord>& p_records) override;

    /// The model, null unless it is there and visible.
    Core::Ptr<Model::Legend> Shown() const;
    bool TakeUnits(UpdateContext const& p_context);
    void TakeEntries(Model::Legend const& p_model);
    void TakeChanges(UpdateContext const& p_context);
    void TakeRow(UpdateContext const& p_context, Slot& p_slot);
    void Append(Core::Ptr<Model::LegendEntry> const& p_entry);
    void ListShown();
    void OfferLongest(std::uint32_t p_slot);

    bool TakeSettings(DrawContext const& p_context, Model::Legend const& p_model);
    bool IsDimmingDue() const;
    void LayOut(DrawContext const& p_context);
    void FitRows(LegendLayout::Request& p_request);
    void MeasureLongest();

    LegendRow const* RowOf(std::uint64_t p_name) const;
    WeakEntry EntryOf(EventInformation const& p_event) const;
    void EndHover(EventInformation& p_event);
    void Scroll(EventInformation& p_event, std::uint64_t p_button);
    void Toggle(EventInformation& p_event, Model::LegendEntry const& p_entry) const;
    /// The visual node of a target in the same tree; null when there is none, or not among the first to be looked at.
    Core::Ptr<Vis> VisualOf(Model::ModelNode const& p_target) const;

    Core::WeakRef<Model::Legend> _legend;
    Core::WeakRef<UnitSystemConverter> _units;
    Core::ModificationWatcher _unitsSeen;
    std::vector<Core::Ptr<LegendRow>> _changed; ///< put there by the rows themselves
    std::vector<Slot> _slots; ///< in the order of the entries
    std::vector<Core::WeakPtr<Core::Node>> _added; ///< children of the model that came after those of the slots
    bool _isComplete = false; ///< the slots and these are all entries, in order
    std::size_t _listed = 0; ///< the slots that were looked at for the lists below
    bool _isListDue = false;
    bool _areLengthsDue = false;
    std::vector<std::uint32_t> _shown; ///< the slots that take a row
    std::vector<std::uint8_t> _tall; ///< for each of these, whether it has a bar
    std::vector<std::uint32_t> _longest; ///< those that are likely to be the widest, the longest text first

    std::shared_ptr<LegendStack> _stack; ///< null until the first update
    std::unique_ptr<Sheet> _sheet; ///< what is drawn
    Settings _settings;
    bool _isLayoutDue = true;
    bool _isWidthDue = true;
    bool _mayInteract = true;

    std::uint64_t _hovered = Ogl::HitRecord::NameInvalid; ///< the name of the part under the pointer
    WeakEntry _hoveredEntry;
    Core::WeakPtr<Model::ModelNode> _hoveredTarget; ///< of the entry when the pointer came
};

} // namespace Qor::Chart::Render
