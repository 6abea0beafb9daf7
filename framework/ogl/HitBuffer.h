#pragma once

#include "framework/Export.h"
#include "framework/ogl/HitRecord.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Qor::Chart::Ogl {

/// Where a `HitDetect` writes its records. It holds at most as many as its capacity; a full buffer lets the farthest one
/// go for a nearer one, and says so. It must outlive the `HitDetect` that writes to it.
class QOR_FRAMEWORK_API HitBuffer {
public:
    /// Memory is taken for the records that come, not for the capacity.
    explicit HitBuffer(std::size_t p_capacity) : _capacity(p_capacity) {}

    /// Keeps the record, or, if the buffer is full, the nearest ones of all records so far; of equal depths the earlier.
    void Add(HitRecord const& p_record);
    /// The records in the order in which they came. That of the last name comes when the next name is loaded, or when the
    /// `HitDetect` closes.
    std::vector<HitRecord> Records() const;

    std::size_t Capacity() const { return _capacity; }
    /// True when there were more records than the buffer holds.
    bool HasOverflowed() const { return _count > _capacity; }

private:
    struct Entry {
        HitRecord record;
        std::uint64_t order = 0;
    };
    /// Of the entries the one to go first is on top of the heap.
    static bool IsNearer(Entry const& p_a, Entry const& p_b);

    std::size_t _capacity;
    std::uint64_t _count = 0;
    std::vector<Entry> _entries; ///< a heap once it is full
};

} // namespace Qor::Chart::Ogl
