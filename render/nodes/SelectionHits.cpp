#include "render/nodes/SelectionHits.h"

#include "render/pick/Selector.h"
#include "render/core/PaneMarker.h"

#include <algorithm>
#include <list>

namespace Qor::Chart::Render {

bool SelectionHits::IsInsideOfPane(HitRecord const& p_hit) {
    return dynamic_cast<PaneMarker const*>(p_hit.node.Peek()) &&
        std::ranges::all_of(p_hit.result.records,
            [](Ogl::HitRecord const& p_record) { return p_record.name == Ogl::HitRecord::NameDefault; });
}

HitRecord const* SelectionHits::Foremost(std::vector<HitRecord> const& p_hits) {
    auto const found = std::ranges::find_if_not(p_hits, &IsInsideOfPane);
    return found == p_hits.end() ? nullptr : &*found;
}

std::vector<SelectRecord> SelectionHits::At(std::vector<HitRecord> const& p_hits, std::size_t p_most) {
    std::vector<SelectRecord> selected;
    for (HitRecord const& hit : p_hits) {
        if (selected.size() >= p_most)
            break;
        std::list<SelectRecord> const records = Selector::RecordsOf(hit);
        if (!records.empty())
            selected.push_back(records.front());
        else if (!IsInsideOfPane(hit))
            break;
    }
    return selected;
}

std::vector<SelectRecord> SelectionHits::AllOf(std::vector<HitRecord> const& p_hits) {
    std::vector<SelectRecord> selected;
    for (HitRecord const& hit : p_hits) {
        std::list<SelectRecord> const records = Selector::RecordsOf(hit);
        selected.insert(selected.end(), records.begin(), records.end());
    }
    return selected;
}

Model::SelectionEntry SelectionHits::EntryOf(SelectRecord const& p_record) {
    return {p_record.Selection(), p_record.IsSubordinateValid() ? p_record.Subordinate() : std::nullopt};
}

SelectRecord SelectionHits::RecordOf(Core::Ptr<Vis> const& p_handler, Model::SelectionEntry const& p_entry) {
    Core::NodePath const path = p_handler ? p_handler->GetPath() : Core::NodePath();
    Core::Ptr<Model::ModelNode> const node = p_entry.node.Lock();
    return p_entry.index ? SelectRecord(p_handler, node, *p_entry.index, path) : SelectRecord(p_handler, node, path);
}

SelectRecordEntry::SelectionType SelectionHits::TypeOf(Model::SelectionEntry const& p_entry) noexcept {
    using Type = SelectRecordEntry::SelectionType;
    return p_entry.index ? Type::Element : Type::Node;
}

} // namespace Qor::Chart::Render
