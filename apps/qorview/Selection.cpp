#include "apps/qorview/Selection.h"

#include "framework/model/SceneGraph.h"
#include "render/core/PaneMarker.h"
#include "render/pick/Selector.h"

#include <algorithm>
#include <list>

namespace Qor::Chart::QorView {

using Render::Selector;
using Render::SelectRecord;

namespace {

std::string NameOf(Model::ModelNode const& p_node) {
    return p_node.Name().empty() ? p_node.TypeName() : p_node.Name();
}

/// The inside of a pane is in front of what the pane shows, and the pointer goes through it.
bool IsInsideOfPane(Render::HitRecord const& p_hit) {
    Core::Ptr<Render::Vis> const node = p_hit.node.Lock();
    return dynamic_cast<Render::PaneMarker const*>(node.Get()) &&
        std::ranges::all_of(p_hit.result.records,
            [](Ogl::HitRecord const& p_record) { return p_record.name == Ogl::HitRecord::NameDefault; });
}

} // namespace

std::vector<SelectRecord> Selection::BestOf(std::vector<Render::HitRecord> const& p_hits) {
    for (Render::HitRecord const& hit : p_hits) {
        std::list<SelectRecord> const records = Selector::RecordsOf(hit);
        if (!records.empty())
            return {records.front()};
        if (!IsInsideOfPane(hit))
            break;
    }
    return {};
}

std::vector<SelectRecord> Selection::AllOf(std::vector<Render::HitRecord> const& p_hits) {
    std::vector<SelectRecord> all;
    for (Render::HitRecord const& hit : p_hits) {
        std::list<SelectRecord> const records = Selector::RecordsOf(hit);
        all.insert(all.end(), records.begin(), records.end());
    }
    return all;
}

void Selection::Select(std::vector<SelectRecord> const& p_records, bool p_adds) {
    if (!p_adds)
        Clear();
    for (SelectRecord const& record : p_records) {
        if (_records.insert(record).second)
            Selector::Select(record, true);
    }
}

void Selection::Toggle(std::vector<SelectRecord> const& p_records) {
    for (SelectRecord const& record : p_records) {
        bool const isNew = _records.insert(record).second;
        if (!isNew)
            _records.erase(record);
        Selector::Select(record, isNew);
    }
}

void Selection::Clear() {
    for (SelectRecord const& record : _records)
        Selector::Select(record, false);
    _records.clear();
}

void Selection::Forget() {
    std::erase_if(_records, [](SelectRecord const& p_record) { return !p_record.IsValid(); });
}

std::string Selection::Text() const {
    constexpr std::size_t most = 3;
    if (_records.empty())
        return "nothing selected";
    std::string text;
    std::size_t named = 0;
    for (SelectRecord const& record : _records) {
        Core::Ptr<Model::ModelNode> const node = record.Selection().Lock();
        if (!node)
            continue;
        if (named++ == most)
            break;
        text += (text.empty() ? "" : ", ") + NameOf(*node);
    }
    return std::to_string(_records.size()) + " selected: " + text + (named > most ? ", ..." : "");
}

std::string NameInTree(Core::WeakPtr<Model::ModelNode> const& p_node) {
    Core::Ptr<Model::ModelNode> const node = p_node.Lock();
    if (!node)
        return {};
    std::string around;
    Model::ModelNode const* above = node.Get();
    for (auto parents = above->Parents(); !parents.empty(); parents = above->Parents()) {
        above = parents.front();
        if (dynamic_cast<Model::SceneGraph const*>(above))
            break;
        around += (around.empty() ? "" : ", ") + NameOf(*above);
    }
    return NameOf(*node) + (around.empty() ? "" : " (" + around + ")");
}

} // namespace Qor::Chart::QorView
