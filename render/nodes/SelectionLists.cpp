#include "render/nodes/SelectionLists.h"

#include "render/core/SharedUnique.h"
#include "render/nodes/SelectionList.h"
#include "render/nodes/SelectionView.h"

#include <algorithm>
#include <map>
#include <unordered_map>
#include <utility>

namespace Qor::Chart::Render {

/// Finds which list serves a node, and remembers it for all that is above the node on the way there.
class SelectionLists::Areas {
public:
    explicit Areas(std::vector<Place> const& p_places) {
        for (Place const& place : p_places)
            _lists.try_emplace(place.parent, place.list);
    }

    /// The identifier of the list, 0 for none.
    std::uint32_t ListOf(Vis const& p_node) {
        if (_lists.empty())
            return 0;
        std::uint32_t list = 0;
        std::size_t const first = _way.size();
        for (Vis const* node = &p_node; node; node = node->Parent()) {
            auto const known = _lists.find(node->Id());
            if (known != _lists.end()) {
                list = known->second;
                break;
            }
            _way.push_back(node->Id());
            if (node != &p_node)
                _lists.emplace(node->Id(), 0); // ends the walk where a node is above itself
        }
        for (std::size_t step = first + 1; step < _way.size(); ++step)
            _lists[_way[step]] = list;
        _way.resize(first);
        return list;
    }

private:
    std::unordered_map<std::uint32_t, std::uint32_t> _lists;
    std::vector<std::uint32_t> _way;
};

std::shared_ptr<SelectionLists> SelectionLists::Of(Registrar const& p_registrar) {
    return SharedUnique<SelectionLists>::Find(p_registrar);
}

std::shared_ptr<SelectionLists> SelectionLists::MakeOf(Registrar& p_registrar) {
    return SharedUnique<SelectionLists>::Get(p_registrar);
}

SelectionLists::SelectionLists(Registrar::Handle p_registration) : _registration(std::move(p_registration)) {}

SelectionLists::~SelectionLists() = default;

void SelectionLists::Join(SelectionList& p_list, std::shared_ptr<SelectionView> p_view) {
    _members.push_back({Core::WeakPtr<SelectionList>(&p_list), std::move(p_view)});
}

std::vector<SelectionLists::Place> SelectionLists::Places() const {
    std::vector<Place> places;
    for (Member const& member : _members) {
        SelectionList const* const list = member.list.Peek();
        Vis const* const parent = list && list->IsEnabled() ? list->Parent() : nullptr;
        if (parent)
            places.push_back({list->Id(), parent->Id()});
    }
    return places;
}

Core::Ptr<SelectionList> SelectionLists::ListOf(Vis const& p_node) const {
    return Find(Areas(Places()).ListOf(p_node));
}

Core::Ptr<SelectionList> SelectionLists::Find(std::uint32_t p_id) const {
    for (Member const& member : _members) {
        Core::Ptr<SelectionList> list = member.list.Lock();
        if (list && list->Id() == p_id)
            return list;
    }
    return {};
}

std::vector<std::pair<Core::Ptr<SelectionList>, std::vector<HitRecord>>> SelectionLists::ByList(
    std::vector<HitRecord> const& p_hits) const {
    std::map<std::uint32_t, std::vector<HitRecord>> parts;
    Areas areas(Places());
    for (HitRecord const& hit : p_hits) {
        Core::Ptr<Vis> const node = hit.node.Lock();
        if (std::uint32_t const list = node ? areas.ListOf(*node) : 0)
            parts[list].push_back(hit);
    }
    std::vector<std::pair<Core::Ptr<SelectionList>, std::vector<HitRecord>>> byList;
    byList.reserve(parts.size());
    for (auto& [list, hits] : parts)
        byList.emplace_back(Find(list), std::move(hits));
    return byList;
}

bool SelectionLists::Show() {
    std::vector<Place> places = Places();
    bool const haveMoved = places != _places;
    Areas areas(places);
    _places = std::move(places);
    auto const servedBy = [&areas](SelectionList const* p_list) {
        return [&areas, id = p_list ? p_list->Id() : 0](
                   Vis const& p_node) { return id != 0 && areas.ListOf(p_node) == id; };
    };
    bool hasTold = false;
    for (Member const& member : _members) {
        if (!haveMoved)
            break;
        member.view->MarkAll();
        hasTold = member.view->Withdraw(servedBy(member.list.Peek())) || hasTold;
    }
    std::vector<Core::Ptr<Model::SelectionList>> withGone;
    for (Member const& member : _members) {
        Core::Ptr<SelectionList> const list = member.list.Lock();
        Vis const* const parent = list && list->IsEnabled() ? list->Parent() : nullptr;
        Core::Ptr<Model::SelectionList> const model = parent ? list->List() : Core::Ptr<Model::SelectionList>();
        SelectionView::Outcome const outcome =
            member.view->Show(model.Get(), parent ? parent->Time() : Core::TimeStamp(), servedBy(list.Get()));
        hasTold = hasTold || outcome.hasTold;
        if (outcome.hasGone)
            withGone.push_back(model);
    }
    std::erase_if(_members, [](Member const& p_member) { return p_member.list.Expired(); });
    for (Core::Ptr<Model::SelectionList> const& model : withGone)
        hasTold = model->ForgetGone() || hasTold;
    return hasTold;
}

} // namespace Qor::Chart::Render
