#include "framework/ogl/HitBuffer.h"

#include <algorithm>
#include <iterator>

namespace Qor::Chart::Ogl {

bool HitBuffer::IsNearer(Entry const& p_a, Entry const& p_b) {
    return p_a.record.depth != p_b.record.depth ? p_a.record.depth < p_b.record.depth : p_a.order < p_b.order;
}

void HitBuffer::Add(HitRecord const& p_record) {
    Entry const entry{p_record, _count++};
    if (_capacity == 0) {
        return;
    }
    if (_entries.size() < _capacity) {
        _entries.push_back(entry);
        if (_entries.size() == _capacity) {
            std::make_heap(_entries.begin(), _entries.end(), IsNearer);
        }
        return;
    }
    if (IsNearer(entry, _entries.front())) {
        std::pop_heap(_entries.begin(), _entries.end(), IsNearer);
        _entries.back() = entry;
        std::push_heap(_entries.begin(), _entries.end(), IsNearer);
    }
}

std::vector<HitRecord> HitBuffer::Records() const {
    std::vector<Entry> sorted = _entries;
    std::sort(sorted.begin(), sorted.end(), [](Entry const& p_a, Entry const& p_b) { return p_a.order < p_b.order; });
    std::vector<HitRecord> records;
    records.reserve(sorted.size());
    std::transform(
        sorted.begin(), sorted.end(), std::back_inserter(records), [](Entry const& p_entry) { return p_entry.record; });
    return records;
}

} // namespace Qor::Chart::Ogl
