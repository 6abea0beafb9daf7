#include "framework/core/NodePath.h"

#include <algorithm>
#include <ostream>
#include <utility>

namespace Qor::Chart::Core {

namespace Detail {

/// One node on the way, with the way that leads to it.
struct PathSegment {
    PathSegment* parent;
    std::int32_t id;
    std::uint32_t holders;
};

void ShareSegment(PathSegment* p_segment) noexcept {
    if (p_segment)
        ++p_segment->holders;
}

void ReleaseSegment(PathSegment* p_segment) noexcept {
    while (p_segment && --p_segment->holders == 0)
        delete std::exchange(p_segment, p_segment->parent);
}

} // namespace Detail

NodePath::NodePath(std::vector<std::int32_t> const& p_ids) {
    WorkingPath path;
    for (std::int32_t const id : p_ids)
        path.Push(id);
    *this = path.Path();
}

NodePath::NodePath(Detail::PathSegment* p_parent, std::int32_t p_last, std::uint32_t p_size) noexcept
    : _parent(p_parent), _last(p_last), _size(p_size) {
    Detail::ShareSegment(_parent);
}

void NodePath::Swap(NodePath& p_other) noexcept {
    std::swap(_parent, p_other._parent);
    std::swap(_last, p_other._last);
    std::swap(_size, p_other._size);
}

std::vector<std::int32_t> NodePath::Ids() const {
    std::vector<std::int32_t> ids;
    if (!IsDefined())
        return ids;
    ids.reserve(_size);
    ids.push_back(_last);
    for (Detail::PathSegment const* segment = _parent; segment; segment = segment->parent)
        ids.push_back(segment->id);
    std::ranges::reverse(ids);
    return ids;
}

bool NodePath::operator==(NodePath const& p_other) const noexcept {
    if (_size != p_other._size || _last != p_other._last)
        return false;
    Detail::PathSegment const* mine = _parent;
    Detail::PathSegment const* theirs = p_other._parent;
    while (mine != theirs) {
        if (mine->id != theirs->id)
            return false;
        mine = mine->parent;
        theirs = theirs->parent;
    }
    return true;
}

std::strong_ordering NodePath::operator<=>(NodePath const& p_other) const {
    std::vector<std::int32_t> const mine = Ids();
    std::vector<std::int32_t> const theirs = p_other.Ids();
    return std::lexicographical_compare_three_way(mine.begin(), mine.end(), theirs.begin(), theirs.end());
}

std::ostream& operator<<(std::ostream& p_stream, NodePath const& p_path) {
    if (!p_path.IsDefined())
        return p_stream << "(undefined)";
    char const* separator = "";
    for (std::int32_t const id : p_path.Ids())
        p_stream << std::exchange(separator, "/") << id;
    return p_stream;
}

WorkingPath::~WorkingPath() {
    while (!Empty())
        Pop();
}

void WorkingPath::Push(std::int32_t p_id) {
    _levels.push_back({p_id, nullptr});
}

void WorkingPath::Pop() noexcept {
    if (Empty())
        return;
    Detail::ReleaseSegment(_levels.back().segment);
    _levels.pop_back();
}

NodePath WorkingPath::Path() {
    if (Empty())
        return {};
    std::size_t const last = _levels.size() - 1;
    return NodePath(
        last == 0 ? nullptr : SegmentOf(last - 1), _levels[last].id, static_cast<std::uint32_t>(_levels.size()));
}

/// The shared segment of a level; what lies above it is made first.
Detail::PathSegment* WorkingPath::SegmentOf(std::size_t p_level) {
    std::size_t first = p_level;
    while (first > 0 && !_levels[first].segment)
        --first;
    for (std::size_t level = first; level <= p_level; ++level) {
        if (_levels[level].segment)
            continue;
        Detail::PathSegment* const parent = level == 0 ? nullptr : _levels[level - 1].segment;
        Detail::ShareSegment(parent);
        _levels[level].segment = new Detail::PathSegment{parent, _levels[level].id, 1};
    }
    return _levels[p_level].segment;
}

} // namespace Qor::Chart::Core
