#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace Qor::Chart::Algorithms {

/// A set of addresses for what comes and goes all the time, such as the nodes on the path of a search. Inserting, finding
/// and erasing cost a few nanoseconds; memory is allocated only when the set grows beyond what it ever held, and not at
/// all up to 64 addresses.
class NodeSet {
public:
    /// False when the address is there already. The null address is never in the set and cannot be inserted.
    bool Insert(void const* p_address) {
        if (p_address == nullptr) {
            return false;
        }
        if (2 * _size >= _mask + 1) {
            Grow();
        }
        std::size_t const slot = SlotOf(p_address);
        if (_slots[slot] == p_address) {
            return false;
        }
        _slots[slot] = p_address;
        ++_size;
        return true;
    }

    /// Takes an address out; one that is not there changes nothing.
    void Erase(void const* p_address) noexcept {
        std::size_t hole = SlotOf(p_address);
        if (p_address == nullptr || _slots[hole] != p_address) {
            return;
        }
        --_size;
        // What was pushed behind the hole by a collision moves up, so that every search still ends at a free slot.
        for (std::size_t next = (hole + 1) & _mask; _slots[next] != nullptr; next = (next + 1) & _mask) {
            std::size_t const home = HomeOf(_slots[next]);
            if (((next - home) & _mask) >= ((next - hole) & _mask)) {
                _slots[hole] = _slots[next];
                hole = next;
            }
        }
        _slots[hole] = nullptr;
    }

    bool Contains(void const* p_address) const noexcept {
        return p_address != nullptr && _slots[SlotOf(p_address)] == p_address;
    }
    std::size_t Size() const noexcept { return _size; }
    bool Empty() const noexcept { return _size == 0; }

    NodeSet() = default;
    NodeSet(NodeSet const&) = delete;
    NodeSet& operator=(NodeSet const&) = delete;

private:
    static constexpr std::size_t InlineSlots = 128;

    std::size_t HomeOf(void const* p_address) const noexcept {
        std::uint64_t const mixed = reinterpret_cast<std::uintptr_t>(p_address) * 0x9E3779B97F4A7C15ULL;
        return static_cast<std::size_t>(mixed >> 32) & _mask;
    }
    /// Where the address is, or the free slot where it would go.
    std::size_t SlotOf(void const* p_address) const noexcept {
        std::size_t slot = HomeOf(p_address);
        while (_slots[slot] != nullptr && _slots[slot] != p_address) {
            slot = (slot + 1) & _mask;
        }
        return slot;
    }
    [[gnu::noinline]] void Grow() {
        std::vector<void const*> larger(2 * (_mask + 1), nullptr);
        void const** const before = _slots;
        std::size_t const count = _mask + 1;
        _slots = larger.data();
        _mask = larger.size() - 1;
        for (std::size_t i = 0; i < count; ++i) {
            if (before[i] != nullptr) {
                _slots[SlotOf(before[i])] = before[i];
            }
        }
        _heap = std::move(larger);
    }

    std::array<void const*, InlineSlots> _inline {};
    std::vector<void const*> _heap;
    void const** _slots = _inline.data();
    std::size_t _mask = InlineSlots - 1;
    std::size_t _size = 0;
};

} // namespace Qor::Chart::Algorithms
