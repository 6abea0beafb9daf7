#include "render/core/ExplicitModificationTracker.h"

#include "framework/model/ModelNode.h"
#include "framework/utility/Ensure.h"

#include <algorithm>
#include <ostream>
#include <unordered_map>
#include <vector>

namespace Qor::Chart::Render {

using Core::Node;
using Core::WeakPtr;

/// The records in the order in which they were made. Finding the record of a node takes constant time, and so does
/// taking one out: it stays behind as a cancelled one until half of them are.
class ExplicitModificationTracker::Records {
public:
    Record const* Begin() const noexcept { return _records.data(); }
    Record const* End() const noexcept { return _records.data() + _records.size(); }
    std::size_t Live() const noexcept { return _records.size() - _cancelled; }

    void Append(Record p_record) {
        if (IsIndexed())
            _positions.emplace(p_record.node, _records.size());
        _records.push_back(std::move(p_record));
        if (_positions.empty() && IsIndexed())
            IndexAll();
    }

    /// Takes the matching record out. Gives its change, or nothing when none matches.
    bool Take(Record const& p_match, IModifiable::Change& p_change) {
        std::size_t const position = Find(p_match);
        if (position == _records.size())
            return false;
        Record& record = _records[position];
        p_change = record.change;
        if (IsIndexed())
            _positions.erase(record.node);
        record.node.Reset();
        if (++_cancelled * 2 > _records.size())
            Compact();
        return true;
    }

private:
    static constexpr std::size_t IndexFrom = 16;

    bool IsIndexed() const noexcept { return _records.size() >= IndexFrom; }

    std::size_t Find(Record const& p_match) const {
        if (IsIndexed()) {
            auto const found = _positions.find(p_match.node);
            return found == _positions.end() ? _records.size() : found->second;
        }
        auto const found =
            std::ranges::find_if(_records, [&](Record const& p_record) { return MatchRecord(p_record, p_match); });
        return static_cast<std::size_t>(found - _records.begin());
    }

    void Compact() {
        std::erase_if(_records, [](Record const& p_record) { return p_record.node.IsEmpty(); });
        _cancelled = 0;
        _positions.clear();
        if (IsIndexed())
            IndexAll();
    }

    void IndexAll() {
        for (std::size_t position = 0; position < _records.size(); ++position) {
            if (!_records[position].node.IsEmpty())
                _positions.emplace(_records[position].node, position);
        }
    }

    std::vector<Record> _records;
    std::unordered_map<WeakPtr<Node>, std::size_t> _positions;
    std::size_t _cancelled = 0;
};

ExplicitModificationTracker::RecordIterator::RecordIterator(
    Record const* p_at, Record const* p_end, IModifiable::Change p_change) noexcept
    : _at(p_at), _end(p_end), _change(p_change) {
    SkipOthers();
}

ExplicitModificationTracker::RecordIterator& ExplicitModificationTracker::RecordIterator::operator++() noexcept {
    ++_at;
    SkipOthers();
    return *this;
}

ExplicitModificationTracker::RecordIterator ExplicitModificationTracker::RecordIterator::operator++(int) noexcept {
    RecordIterator const before = *this;
    ++*this;
    return before;
}

void ExplicitModificationTracker::RecordIterator::SkipOthers() noexcept {
    while (
        _at != _end && (_at->node.IsEmpty() || _at->type != IModifiable::ModifiableTypeNode || _at->change != _change))
        ++_at;
}

ExplicitModificationTracker::ExplicitModificationTracker(IModifiable const& p_node) : _node(p_node) {
    Reset();
}

ExplicitModificationTracker::~ExplicitModificationTracker() = default;

void ExplicitModificationTracker::Touch() {
    _seen = {};
    _explicitChange = true;
    _thisChange = true;
    _callbacks.SetAll();
    _onlyCallbacks = false;
}

void ExplicitModificationTracker::Reset() {
    _explicitChange = false;
    _thisChange = false;
    _onlyCallbacks = true;
    _seen = _node.Time();
    _callbacks.Clear();
    _records.reset();
}

void ExplicitModificationTracker::Insert(IModifiable::ModifiableType p_type, IModifiable::Change p_change,
    IModifiable::Relationship p_relationship, std::string const& p_name, boost::any const& p_data) {
    using NodeList = Core::NodeHandles;
    if (p_relationship == IModifiable::RelationshipDirect && p_type == IModifiable::ModifiableTypeNode) {
        if (p_change == IModifiable::ChangeAdd || p_change == IModifiable::ChangeRemove) {
            auto const* const node = boost::any_cast<WeakPtr<Node>>(&p_data);
            if (QOR_ENSURE(!p_data.empty()) && QOR_ENSURE(p_data.type() == typeid(WeakPtr<Node>))) {
                WeakPtr<Node> const& tmp = *node;
                if (QOR_ENSURE((p_change == IModifiable::ChangeRemove) || !tmp.Expired()))
                    InsertNodeChange(p_change, p_relationship, p_name, tmp);
            }
        } else if (p_change == IModifiable::ChangeClear) {
            if (QOR_ENSURE(!p_data.empty()) && QOR_ENSURE(p_data.type() == typeid(NodeList))) {
                for (WeakPtr<Node> const& node : *boost::any_cast<NodeList>(&p_data))
                    InsertNodeChange(IModifiable::ChangeRemove, p_relationship, p_name, node);
            }
        }
    }
    if (p_relationship == IModifiable::RelationshipSelf || p_relationship == IModifiable::RelationshipDirect) {
        _explicitChange = true;
        _thisChange = _thisChange || p_relationship == IModifiable::RelationshipSelf;
    }
    int const type = p_type;
    if (type < IModifiable::ModifiableTypeGeneric || type > CallbackHighlightOverlay)
        _onlyCallbacks = false;
    else if (p_relationship == IModifiable::RelationshipSelf && type > IModifiable::ModifiableTypeGeneric)
        _callbacks.Set(type);
    _seen = {};
}

void ExplicitModificationTracker::InsertNodeChange(
    IModifiable::Change p_change, IModifiable::Relationship, std::string const&, WeakPtr<Node> const& p_node) {
    if (!QOR_ENSURE(p_node != WeakPtr<Node>()) ||
        !QOR_ENSURE(p_change == IModifiable::ChangeAdd || p_change == IModifiable::ChangeRemove))
        return;
    if (!_records)
        _records = std::make_unique<Records>();
    bool const isModelNode = dynamic_cast<Model::ModelNode const*>(p_node.Peek()) != nullptr;
    Record record{IModifiable::ModifiableTypeNode, p_change, p_node, isModelNode};
    IModifiable::Change earlier{};
    if (_records->Take(record, earlier) && earlier != p_change)
        return;
    _records->Append(std::move(record));
}

void ExplicitModificationTracker::RetryAdded(WeakPtr<Node> const& p_node) {
    InsertNodeChange(IModifiable::ChangeAdd, IModifiable::RelationshipDirect, {}, p_node);
    _onlyCallbacks = false;
}

bool ExplicitModificationTracker::MatchRecord(Record const& p_left, Record const& p_right) noexcept {
    return p_left.type == p_right.type && p_left.node == p_right.node;
}

bool ExplicitModificationTracker::ExplicitModified() const {
    if (!Modified())
        return false;
    return _explicitChange || (_watchers && std::ranges::any_of(*_watchers, &Core::ModificationWatcher::Modified)) ||
        std::ranges::any_of(_watcherLists, &Core::ModificationWatcherList::Modified);
}

ExplicitModificationTracker::RecordIterator ExplicitModificationTracker::Begin(
    IModifiable::Change p_change) const noexcept {
    return _records ? RecordIterator(_records->Begin(), _records->End(), p_change) : RecordIterator();
}

ExplicitModificationTracker::RecordIterator ExplicitModificationTracker::End(
    IModifiable::Change p_change) const noexcept {
    return _records ? RecordIterator(_records->End(), _records->End(), p_change) : RecordIterator();
}

void ExplicitModificationTracker::AddWatcherEntry(Core::ModificationWatcher const& p_watcher) {
    if (!_watchers)
        _watchers = std::make_unique<std::vector<Core::ModificationWatcher>>();
    _watchers->push_back(p_watcher);
}

void ExplicitModificationTracker::AddWatcherEntry(Core::ModificationWatcherList const& p_watchers) {
    _watcherLists.push_back(p_watchers);
}

void ExplicitModificationTracker::ClearWatcherEntries() noexcept {
    _watchers.reset();
    _watcherLists.clear();
}

void ExplicitModificationTracker::Dump(std::ostream& p_stream) const {
    auto const flag = [](bool p_on) { return p_on ? 1 : 0; };
    p_stream << "_onlyCallbackModified = " << flag(_onlyCallbacks) << '\n'
             << "_callbacks = " << flag(_callbacks.Any()) << '\n'
             << "_time = " << flag(_seen != Core::TimeStamp()) << '\n'
             << "_explicitChange = " << flag(_explicitChange) << '\n'
             << "_thisChange = " << flag(_thisChange) << '\n'
             << "_entries = " << (_records ? _records->Live() : 0) << '\n';
    std::size_t index = 0;
    auto const* const end = _records ? _records->End() : nullptr;
    for (Record const* record = _records ? _records->Begin() : nullptr; record != end; ++record) {
        if (!record->node.IsEmpty())
            p_stream << '[' << index++ << "] \n" << record->type << '\n' << record->change << '\n';
    }
    p_stream << "_watchers = " << (_watchers ? _watchers->size() : 0) << '\n'
             << "_watcherLists = " << _watcherLists.size() << '\n';
}

} // namespace Qor::Chart::Render
