#pragma once

#include "framework/core/Node.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <unordered_map>
#include <utility>

namespace Qor::Chart::Core::Detail {

/// The array behind a `NodeList`. A removed child leaves a hole, which iteration passes over and which is closed before
/// the array grows, unless a traversal runs; so removing all children of a list, one by one and in whatever order, costs
/// no more than the list is long.
template <class T>
class ChildStorage {
public:
    static constexpr std::uint32_t End = ~std::uint32_t{0};

    ChildStorage() noexcept = default;
    ChildStorage(ChildStorage const&) = delete;
    ChildStorage& operator=(ChildStorage const&) = delete;
    ~ChildStorage() {
        Clear();
        std::free(_slots);
    }

    std::size_t Size() const noexcept { return _used - _holes; }
    std::uint32_t Used() const noexcept { return _used; }
    Ptr<T> const& At(std::uint32_t p_slot) const noexcept { return _slots[p_slot]; }
    Ptr<T>* Slots() noexcept { return _slots; }

    /// The slot of the first child, or `End`.
    std::uint32_t First() const noexcept { return SkipHoles(_first); }

    /// The first slot from the given one on that holds a child, or `End`.
    std::uint32_t SkipHoles(std::uint32_t p_slot) const noexcept {
        while (p_slot < _used && !_slots[p_slot])
            ++p_slot;
        return p_slot < _used ? p_slot : End;
    }

    void Append(Ptr<T> p_child) {
        if (_used == _capacity)
            MakeRoom();
        if (_index)
            _index->emplace(p_child.Get(), _used);
        new (_slots + _used) Ptr<T>(std::move(p_child));
        ++_used;
    }

    /// Takes out a child that is in the list.
    Ptr<T> Take(Node const& p_child) {
        std::uint32_t const slot = SlotOf(p_child);
        Ptr<T> taken = std::move(_slots[slot]);
        if (_index)
            _index->erase(&p_child);
        ++_holes;
        while (_first < _used && !_slots[_first])
            ++_first;
        while (_used > 0 && !_slots[_used - 1]) {
            --_used;
            --_holes;
        }
        _first = std::min(_first, _used);
        return taken;
    }

    /// Closes the holes; the order stays.
    void Compact() noexcept {
        _index.reset();
        _searched = 0;
        if (_holes == 0)
            return;
        Ptr<T>* const last = std::remove(_slots, _slots + _used, nullptr);
        _used = static_cast<std::uint32_t>(last - _slots);
        _holes = 0;
        _first = 0;
    }

    void CompactIfSparse() noexcept {
        if (_holes > _used / 2)
            Compact();
    }

    void Clear() noexcept {
        _index.reset();
        std::uint32_t const used = std::exchange(_used, 0);
        _holes = 0;
        _first = 0;
        _searched = 0;
        for (std::uint32_t slot = 0; slot < used; ++slot)
            _slots[slot].Reset();
    }

    /// The place of a child that is in the list. Constant time on average.
    std::uint32_t SlotOf(Node const& p_child) {
        if (!_index && _searched > SearchesBeforeIndex * _used)
            BuildIndex();
        if (_index)
            return _index->at(&p_child);
        std::uint32_t slot = _first;
        while (_slots[slot].Get() != &p_child)
            ++slot;
        _searched += slot - _first;
        return slot;
    }

private:
    /// How many times over the array is searched before an index, many times as dear as a search, pays.
    static constexpr std::uint64_t SearchesBeforeIndex = 16;

    void BuildIndex() {
        _searched = 0;
        _index = std::make_unique<std::unordered_map<Node const*, std::uint32_t>>(Size());
        for (std::uint32_t slot = 0; slot < _used; ++slot) {
            if (_slots[slot])
                _index->emplace(_slots[slot].Get(), slot);
        }
    }

    /// Closes the holes when there are many, else moves to a larger array. Handles are moved as plain memory; while a
    /// traversal runs, all stay where they are and the old array stays readable for whoever still looks into it.
    void MakeRoom() {
        if (!DestructionScope::IsOpen())
            CompactIfSparse();
        if (_used < _capacity)
            return;
        std::uint32_t const capacity = _capacity == 0 ? 4 : _capacity * 2;
        auto* const grown = static_cast<Ptr<T>*>(std::malloc(capacity * sizeof(Ptr<T>)));
        if (!grown)
            throw std::bad_alloc();
        if (_used > 0)
            std::memcpy(static_cast<void*>(grown), static_cast<void const*>(_slots), _used * sizeof(Ptr<T>));
        if (_slots && DestructionScope::IsOpen())
            DestructionScope::Retire(_slots);
        else
            std::free(_slots);
        _slots = grown;
        _capacity = capacity;
    }

    Ptr<T>* _slots = nullptr;
    std::unique_ptr<std::unordered_map<Node const*, std::uint32_t>> _index; ///< made when children are often sought
    std::uint64_t _searched = 0; ///< slots looked through since there was no index
    std::uint32_t _used = 0;
    std::uint32_t _holes = 0;
    std::uint32_t _capacity = 0;
    std::uint32_t _first = 0; ///< no child stands before this slot
};

} // namespace Qor::Chart::Core::Detail
