#include "framework/model/SelectionList.h"

#include "framework/model/Events.h"

#include <boost/container_hash/hash.hpp>
#include <boost/multi_index/hashed_index.hpp>
#include <boost/multi_index/identity.hpp>
#include <boost/multi_index/member.hpp>
#include <boost/multi_index/sequenced_index.hpp>
#include <boost/multi_index_container.hpp>

#include <algorithm>
#include <deque>
#include <string>
#include <utility>

namespace Qor::Chart::Model {

namespace {

using Entry = SelectionList::Entry;
using Entries = SelectionList::Entries;
using Nodes = std::vector<Core::Ptr<ModelNode>>;

struct EntryHash {
    std::size_t operator()(Entry const& p_entry) const noexcept {
        std::size_t hash = p_entry.node.OwnerHash();
        boost::hash_combine(hash, p_entry.index.has_value());
        boost::hash_combine(hash, p_entry.index.value_or(0));
        return hash;
    }
};

using NodeOfEntry = boost::multi_index::member<Entry, Core::WeakPtr<ModelNode>, &Entry::node>;

/// Entries in order, each once, found by themselves and by their node.
using OrderedEntries = boost::multi_index_container<Entry,
    boost::multi_index::indexed_by<boost::multi_index::sequenced<>,
        boost::multi_index::hashed_unique<boost::multi_index::identity<Entry>, EntryHash>,
        boost::multi_index::hashed_non_unique<NodeOfEntry, std::hash<Core::WeakPtr<ModelNode>>>>>;
constexpr int ByEntry = 1;
constexpr int ByNode = 2;

/// Each of the entries once, without those of nodes that are gone.
OrderedEntries Cleaned(std::span<Entry const> p_entries) {
    OrderedEntries cleaned;
    if (p_entries.size() > 1)
        cleaned.get<ByEntry>().reserve(p_entries.size());
    for (Entry const& entry : p_entries) {
        if (!entry.node.Expired())
            cleaned.push_back(entry);
    }
    return cleaned;
}

Entries EntriesOf(Nodes const& p_nodes) {
    Entries entries;
    entries.reserve(p_nodes.size());
    for (Core::Ptr<ModelNode> const& node : p_nodes)
        entries.push_back({node, {}});
    return entries;
}

/// The entries of one list that are not in the other.
Entries Without(OrderedEntries const& p_entries, OrderedEntries const& p_others) {
    Entries rest;
    auto const& others = p_others.get<ByEntry>();
    for (Entry const& entry : p_entries) {
        if (others.find(entry) == others.end())
            rest.push_back(entry);
    }
    return rest;
}

} // namespace

struct SelectionList::Storage {
    OrderedEntries entries;
    std::deque<Events::SelectionChangedArgs> untold;
    bool isTelling = false;

    bool Remove(Entry const& p_entry) { return entries.get<ByEntry>().erase(p_entry) > 0; }
};

Property<SelectionList, bool> const SelectionList::ClickSelectsProperty(Field<&SelectionList::_clickSelects>,
    {1, "clickSelects", "Whether a click selects what is under the pointer."}, true);

Property<SelectionList, bool> const SelectionList::BoxSelectsProperty(Field<&SelectionList::_boxSelects>,
    {2, "boxSelects", "Whether a selection rectangle selects what lies in it."}, true);

Property<SelectionList, bool> const SelectionList::ClickBesideClearsProperty(Field<&SelectionList::_clickBesideClears>,
    {3, "clickBesideClears", "Whether a click beside everything deselects all."}, true);

Property<SelectionList, bool> const SelectionList::EscapeClearsProperty(
    Field<&SelectionList::_escapeClears>, {4, "escapeClears", "Whether the Escape key deselects all."}, true);

PropertyList const& SelectionList::ClassProperties() {
    static PropertyList const properties(ModelNode::ClassProperties(),
        {&ClickSelectsProperty, &BoxSelectsProperty, &ClickBesideClearsProperty, &EscapeClearsProperty});
    return properties;
}

SelectionList::SelectionList() : _storage(std::make_unique<Storage>()) {}

SelectionList::~SelectionList() = default;

bool SelectionList::Select(Core::Ptr<ModelNode> const& p_node, std::optional<std::uint64_t> p_index) {
    Entry const entry{p_node, p_index};
    return Select(std::span(&entry, 1));
}

bool SelectionList::Select(std::span<Entry const> p_entries) {
    Entries added;
    for (Entry const& entry : p_entries) {
        if (!entry.node.Expired() && _storage->entries.push_back(entry).second)
            added.push_back(entry);
    }
    return Report(std::move(added), {});
}

bool SelectionList::Deselect(Core::Ptr<ModelNode> const& p_node, std::optional<std::uint64_t> p_index) {
    Entry const entry{p_node, p_index};
    return Deselect(std::span(&entry, 1));
}

bool SelectionList::Deselect(std::span<Entry const> p_entries) {
    Entries removed;
    for (Entry const& entry : p_entries) {
        if (_storage->Remove(entry))
            removed.push_back(entry);
    }
    return Report({}, std::move(removed));
}

bool SelectionList::Toggle(Core::Ptr<ModelNode> const& p_node, std::optional<std::uint64_t> p_index) {
    Entry const entry{p_node, p_index};
    return Toggle(std::span(&entry, 1));
}

bool SelectionList::Toggle(std::span<Entry const> p_entries) {
    Entries added;
    Entries removed;
    for (Entry const& entry : Cleaned(p_entries)) {
        bool const isNew = _storage->entries.push_back(entry).second;
        if (!isNew)
            _storage->Remove(entry);
        (isNew ? added : removed).push_back(entry);
    }
    return Report(std::move(added), std::move(removed));
}

bool SelectionList::Replace(std::span<Entry const> p_entries) {
    OrderedEntries next = Cleaned(p_entries);
    OrderedEntries const& former = _storage->entries;
    Entries added = Without(next, former);
    Entries removed = Without(former, next);
    bool const isReordered = added.empty() && removed.empty() && !std::ranges::equal(next, former);
    std::swap(_storage->entries, next);
    return Report(std::move(added), std::move(removed), isReordered);
}

bool SelectionList::Replace(Nodes const& p_nodes) {
    return Replace(std::span<Entry const>(EntriesOf(p_nodes)));
}

bool SelectionList::DeselectAll() {
    return Replace(std::span<Entry const>());
}

bool SelectionList::ForgetGone() {
    Entries removed;
    OrderedEntries& entries = _storage->entries;
    for (auto entry = entries.begin(); entry != entries.end();) {
        bool const isGone = entry->node.Expired();
        if (isGone)
            removed.push_back(*entry);
        entry = isGone ? entries.erase(entry) : std::next(entry);
    }
    return Report({}, std::move(removed));
}

SelectionList::Entries SelectionList::Selected(std::size_t p_most) const {
    Entries selected;
    selected.reserve(std::min(p_most, _storage->entries.size()));
    for (auto entry = _storage->entries.begin(); entry != _storage->entries.end() && selected.size() < p_most;
         ++entry) {
        if (!entry->node.Expired())
            selected.push_back(*entry);
    }
    return selected;
}

std::size_t SelectionList::Count() const noexcept {
    return static_cast<std::size_t>(
        std::ranges::count_if(_storage->entries, [](Entry const& p_entry) { return !p_entry.node.Expired(); }));
}

bool SelectionList::IsSelected(
    Core::WeakPtr<ModelNode> const& p_node, std::optional<std::uint64_t> p_index) const noexcept {
    auto const& entries = _storage->entries.get<ByEntry>();
    return !p_node.Expired() && entries.find(Entry{p_node, p_index}) != entries.end();
}

std::vector<std::optional<std::uint64_t>> SelectionList::IndicesOf(Core::WeakPtr<ModelNode> const& p_node) const {
    std::vector<std::optional<std::uint64_t>> indices;
    auto const [first, last] = _storage->entries.get<ByNode>().equal_range(p_node);
    for (auto entry = first; entry != last; ++entry)
        indices.push_back(entry->index);
    std::ranges::sort(indices);
    return indices;
}

/// What listeners change meanwhile is told to all after what they are being told, so that each hears the changes in
/// order.
bool SelectionList::Report(Entries p_added, Entries p_removed, bool p_isReordered) {
    static std::string const name = "selection";
    if (p_added.empty() && p_removed.empty() && !p_isReordered)
        return false;
    Core::Ptr<SelectionList> const self(this);
    _storage->untold.emplace_back(Core::WeakPtr<ModelNode>(self), std::move(p_added), std::move(p_removed));
    TouchThis(ModifiableTypeProperty, ChangeModified, RelationshipSelf, {}, name, {});
    if (_storage->isTelling)
        return true;
    _storage->isTelling = true;
    for (; !_storage->untold.empty(); _storage->untold.pop_front())
        Delegate().Raise(_storage->untold.front());
    _storage->isTelling = false;
    return true;
}

Core::Ptr<ModelNode> SelectionList::NewOfSameClass() const {
    return Core::MakeNode<SelectionList>();
}

void SelectionList::CopyTo(ModelNode& p_clone) const {
    static_cast<SelectionList&>(p_clone).Replace(Selected());
}

} // namespace Qor::Chart::Model
