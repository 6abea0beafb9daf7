#pragma once

#include "framework/core/ModificationWatcher.h"
#include "framework/core/Node.h"
#include "render/Export.h"
#include "render/core/CallbackTypeBitSet.h"

#include <boost/any.hpp>
#include <boost/container/small_vector.hpp>

#include <cstdint>
#include <iosfwd>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

namespace Qor::Chart::Render {

/// What happened to a visual node since its last update: whether anything did, whether it concerned the node itself,
/// which passes it took up or gave up, and which children came or left. The update loop reads it to do only the work that
/// is due, and resets it when the node is up to date.
class QOR_VIS_API ExplicitModificationTracker {
public:
    using IModifiable = Core::IModifiable;

    /// A child that came or left.
    struct Record {
        IModifiable::ModifiableType type;
        IModifiable::Change change;
        Core::WeakPtr<Core::Node> node; ///< empty in a record that was cancelled
        bool isModelNode; ///< false where a visual node came or left further down
    };

    /// Runs over the records of one change, in the order in which they were made. Stays usable until the next change is
    /// recorded.
    class RecordIterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = Record;
        using difference_type = std::ptrdiff_t;
        using pointer = Record const*;
        using reference = Record const&;

        RecordIterator() noexcept = default;
        RecordIterator(Record const* p_at, Record const* p_end, IModifiable::Change p_change) noexcept;

        Record const& operator*() const noexcept { return *_at; }
        Record const* operator->() const noexcept { return _at; }
        RecordIterator& operator++() noexcept;
        RecordIterator operator++(int) noexcept;
        bool operator==(RecordIterator const& p_other) const noexcept { return _at == p_other._at; }

    private:
        void SkipOthers() noexcept;

        Record const* _at = nullptr;
        Record const* _end = nullptr;
        IModifiable::Change _change = IModifiable::ChangeModified;
    };

    /// Starts with nothing recorded. The node must outlive the tracker.
    explicit ExplicitModificationTracker(IModifiable const& p_node);
    ExplicitModificationTracker(ExplicitModificationTracker const&) = delete;
    ExplicitModificationTracker& operator=(ExplicitModificationTracker const&) = delete;
    ~ExplicitModificationTracker();

    /// Marks everything as changed, so that the next update does all its work.
    void Touch();
    /// Takes the node's present state as up to date; watchers stay.
    void Reset();

    /// Records one change that reached the node.
    void Insert(IModifiable::ModifiableType p_type, IModifiable::Change p_change,
        IModifiable::Relationship p_relationship, std::string const& p_name, boost::any const& p_data);

    /// Records once more that a child came, without counting as a change: for a child that could not be taken up and is
    /// tried again when the node is next changed.
    void RetryAdded(Core::WeakPtr<Core::Node> const& p_node);

    /// Whether anything changed, on the node or below it.
    bool Modified() const { return _node.Time() != _seen; }
    /// Whether the node itself, a direct relation of it or something it watches changed.
    bool ExplicitModified() const;
    /// Whether the node itself changed.
    bool ThisModified() const { return Modified() && _thisChange; }
    /// Whether all that changed was which passes the node handles.
    bool OnlyCallbacksModified() const noexcept { return _onlyCallbacks; }
    CallbackTypeBitSet CallbacksModified() const noexcept { return _callbacks; }

    RecordIterator BeginAdded() const noexcept { return Begin(IModifiable::ChangeAdd); }
    RecordIterator EndAdded() const noexcept { return End(IModifiable::ChangeAdd); }
    RecordIterator BeginRemoved() const noexcept { return Begin(IModifiable::ChangeRemove); }
    RecordIterator EndRemoved() const noexcept { return End(IModifiable::ChangeRemove); }

    void AddWatcherEntry(Core::ModificationWatcher const& p_watcher);
    void AddWatcherEntry(Core::ModificationWatcherList const& p_watchers);
    void ClearWatcherEntries() noexcept;

    /// Lists the whole state, one fact a line.
    void Dump(std::ostream& p_stream) const;

private:
    class Records;

    void InsertNodeChange(IModifiable::Change p_change, IModifiable::Relationship p_relationship,
        std::string const& p_name, Core::WeakPtr<Core::Node> const& p_node);
    static bool MatchRecord(Record const& p_left, Record const& p_right) noexcept;
    RecordIterator Begin(IModifiable::Change p_change) const noexcept;
    RecordIterator End(IModifiable::Change p_change) const noexcept;

    bool _onlyCallbacks = true;
    CallbackTypeBitSet _callbacks;
    bool _explicitChange = false;
    bool _thisChange = false;
    Core::TimeStamp _seen;
    IModifiable const& _node;
    std::unique_ptr<Records> _records; ///< null while there are none
    std::unique_ptr<std::vector<Core::ModificationWatcher>> _watchers; ///< null while there are none
    boost::container::small_vector<Core::ModificationWatcherList, 1> _watcherLists;
};

} // namespace Qor::Chart::Render
