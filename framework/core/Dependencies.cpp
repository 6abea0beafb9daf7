#include "framework/core/Dependencies.h"

#include <algorithm>
#include <bit>
#include <vector>

namespace Qor::Chart::Core {

/// Where each dependent stands: an open-addressing table of positions, so that a node that a million others refer to
/// pays a few bytes for each.
class Dependencies::Index {
public:
    void Rebuild(Entry const* p_entries, std::uint32_t p_count, std::uint32_t p_capacity) {
        _slots.assign(std::bit_ceil(std::size_t{p_capacity} * 2), NotFound);
        for (std::uint32_t position = 0; position < p_count; ++position)
            Insert(p_entries, position);
    }

    void Insert(Entry const* p_entries, std::uint32_t p_position) noexcept {
        std::size_t slot = Home(p_entries[p_position].dependent);
        while (_slots[slot] != NotFound)
            slot = Next(slot);
        _slots[slot] = p_position;
    }

    std::uint32_t Find(Entry const* p_entries, Node const* p_dependent) const noexcept {
        for (std::size_t slot = Home(p_dependent); _slots[slot] != NotFound; slot = Next(slot)) {
            if (p_entries[_slots[slot]].dependent == p_dependent)
                return _slots[slot];
        }
        return NotFound;
    }

    /// Takes a position out and closes the gap, so that every probe sequence stays unbroken.
    void Erase(Entry const* p_entries, std::uint32_t p_position) noexcept {
        std::size_t gap = SlotOf(p_entries, p_position);
        for (std::size_t slot = Next(gap); _slots[slot] != NotFound; slot = Next(slot)) {
            std::size_t const home = Home(p_entries[_slots[slot]].dependent);
            if (Distance(home, slot) >= Distance(gap, slot)) {
                _slots[gap] = _slots[slot];
                gap = slot;
            }
        }
        _slots[gap] = NotFound;
    }

    void Move(Entry const* p_entries, std::uint32_t p_from, std::uint32_t p_to) noexcept {
        _slots[SlotOf(p_entries, p_from)] = p_to;
    }

private:
    std::size_t Home(Node const* p_dependent) const noexcept {
        auto const key = reinterpret_cast<std::uintptr_t>(p_dependent) >> 4U;
        return (key * 0x9E3779B97F4A7C15ULL >> 20U) & (_slots.size() - 1);
    }
    std::size_t Next(std::size_t p_slot) const noexcept { return (p_slot + 1) & (_slots.size() - 1); }
    std::size_t Distance(std::size_t p_from, std::size_t p_to) const noexcept {
        return (p_to - p_from) & (_slots.size() - 1);
    }
    std::size_t SlotOf(Entry const* p_entries, std::uint32_t p_position) const noexcept {
        std::size_t slot = Home(p_entries[p_position].dependent);
        while (_slots[slot] != p_position)
            slot = Next(slot);
        return slot;
    }

    std::vector<std::uint32_t> _slots;
};

Dependencies::~Dependencies() {
    if (IsInline())
        return;
    delete[] _heap.data;
    delete _heap.index;
}

void Dependencies::Add(Node& p_dependent, Link p_link) {
    std::uint32_t position = Find(p_dependent);
    if (position == NotFound) {
        if (_size == _capacity)
            Grow();
        position = _size++;
        Data()[position] = Entry{&p_dependent, 0, 0};
        if (!IsInline() && _heap.index)
            _heap.index->Insert(_heap.data, position);
    }
    Entry& entry = Data()[position];
    ++(p_link == Link::Child ? entry.children : entry.references);
}

void Dependencies::Remove(Node const& p_dependent, Link p_link) noexcept {
    std::uint32_t const position = Find(p_dependent);
    if (position == NotFound)
        return;
    Entry& entry = Data()[position];
    std::uint32_t& count = p_link == Link::Child ? entry.children : entry.references;
    if (count > 0)
        --count;
    if (entry.children == 0 && entry.references == 0)
        Erase(position);
}

bool Dependencies::Has(Node const& p_dependent, Link p_link) const noexcept {
    std::uint32_t const position = Find(p_dependent);
    if (position == NotFound)
        return false;
    Entry const& entry = Data()[position];
    return (p_link == Link::Child ? entry.children : entry.references) > 0;
}

std::uint32_t Dependencies::Find(Node const& p_dependent) const noexcept {
    if (!IsInline() && _heap.index)
        return _heap.index->Find(_heap.data, &p_dependent);
    Entry const* const data = Data();
    for (std::uint32_t position = 0; position < _size; ++position) {
        if (data[position].dependent == &p_dependent)
            return position;
    }
    return NotFound;
}

void Dependencies::Grow() {
    std::uint32_t const capacity = _capacity * 2;
    auto data = std::make_unique<Entry[]>(capacity);
    std::copy_n(Data(), _size, data.get());
    std::unique_ptr<Index> index;
    if (capacity > IndexFrom) {
        index = std::make_unique<Index>();
        index->Rebuild(data.get(), _size, capacity);
    }
    if (!IsInline()) {
        delete[] _heap.data;
        delete _heap.index;
    }
    _heap = Heap{data.release(), index.release()};
    _capacity = capacity;
}

/// Fills the gap with the last dependent.
void Dependencies::Erase(std::uint32_t p_position) noexcept {
    Entry* const data = Data();
    Index* const index = IsInline() ? nullptr : _heap.index;
    std::uint32_t const last = _size - 1;
    if (index) {
        index->Erase(data, p_position);
        if (p_position != last)
            index->Move(data, last, p_position);
    }
    data[p_position] = data[last];
    --_size;
}

} // namespace Qor::Chart::Core
