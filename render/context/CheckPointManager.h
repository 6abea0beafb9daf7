#pragma once

#include "framework/utility/Ensure.h"

#include <array>
#include <bitset>
#include <cstddef>
#include <exception>
#include <stdexcept>
#include <vector>

namespace Qor::Chart::Utility {

template <class T, std::size_t Id, std::size_t N>
class CopyOnWriteStack;

/// What a check point manager knows of a value stack.
class ICheckPointEntry {
public:
    /// Drops the value written since the current check point and applies the value that is current again.
    virtual void Restore() = 0;

protected:
    ICheckPointEntry() = default;
    ~ICheckPointEntry() = default;
    ICheckPointEntry(ICheckPointEntry const&) = default;
    ICheckPointEntry& operator=(ICheckPointEntry const&) = default;
};

/// Remembers which of a context's N value stacks were written since a check point was opened, and restores just these
/// when it is closed. There is always an outermost check point. Opening a check point and closing an untouched one take
/// a few nanoseconds and, once the deepest nesting has been reached, no memory.
template <std::size_t N>
class CheckPointManager {
public:
    static constexpr std::size_t EntryCount = N;

    CheckPointManager() = default;
    CheckPointManager(CheckPointManager const&) = delete;
    CheckPointManager& operator=(CheckPointManager const&) = delete;

    void CreateCheckPoint() {
        _outer.push_back(_current);
        _current.reset();
    }

    /// Restores the stacks written since the current check point was opened, in ascending order of their ids, and
    /// removes the check point. What an apply function throws leaves this operation after all of them were restored; of
    /// several exceptions, the first does. A value that an apply function writes belongs to the check point outside of
    /// the one that is being closed, unless its stack is still to be restored: then it is dropped with the rest.
    void RestoreCheckPoint() {
        Bits const written = _current;
        if (_outer.empty()) {
            _current.reset();
        } else {
            _current = _outer.back();
            _outer.pop_back();
        }
        if (written.any())
            Restore(written);
    }

    /// True when any stack was written since the current check point was opened.
    bool Damaged() const noexcept { return _current.any(); }
    /// True when this stack was. Throws `std::out_of_range` for an id from N on.
    bool Damaged(std::size_t p_id) const { return _current[Checked(p_id)] || _pending[p_id]; }
    /// Notes that the stack is written. Throws `std::out_of_range` for an id from N on.
    void Touch(std::size_t p_id) { _current.set(Checked(p_id)); }

protected:
    ~CheckPointManager() = default;

private:
    template <class T, std::size_t Id, std::size_t Count>
    friend class CopyOnWriteStack;
    using Bits = std::bitset<N>;

    static std::size_t Checked(std::size_t p_id) {
        if (p_id >= N)
            ThrowBadPosition();
        return p_id;
    }
    [[noreturn, gnu::cold, gnu::noinline]] static void ThrowBadPosition() {
        throw std::out_of_range("invalid bitset<N> position");
    }

    void RegisterEntry(std::size_t p_id, ICheckPointEntry* p_entry) {
        if (!QOR_ENSURE_TEXT(p_id < EntryCount, "p_id < EntryCount && p_id >= 0"))
            return;
        (void)QOR_ENSURE_TEXT(!_entries[p_id], "_entries[p_id] == 0");
        _entries[p_id] = p_entry;
    }

    [[gnu::noinline]] void Restore(Bits const& p_written) {
        std::exception_ptr failure;
        _pending |= p_written;
        for (std::size_t id = 0; id < N; ++id) {
            if (!p_written[id])
                continue;
            _pending.reset(id);
            try {
                if (_entries[id])
                    _entries[id]->Restore();
            } catch (...) {
                if (!failure)
                    failure = std::current_exception();
            }
        }
        if (failure)
            std::rethrow_exception(failure);
    }

    std::array<ICheckPointEntry*, N> _entries{};
    Bits _current; ///< stacks written since the innermost check point was opened
    Bits _pending; ///< stacks that a check point being closed has still to restore
    std::vector<Bits> _outer; ///< the same as _current for the check points outside of it, outermost first
};

} // namespace Qor::Chart::Utility
