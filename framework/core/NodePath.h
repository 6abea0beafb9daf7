#pragma once

#include "framework/Export.h"

#include <compare>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <vector>

namespace Qor::Chart::Core {

namespace Detail {
struct PathSegment;
QOR_FRAMEWORK_API void ShareSegment(PathSegment* p_segment) noexcept;
QOR_FRAMEWORK_API void ReleaseSegment(PathSegment* p_segment) noexcept;
} // namespace Detail

/// The identifiers of the nodes from a root down to one node: it tells one use of a shared node from another. Paths that
/// come from the same `WorkingPath` share their beginnings, so that a path costs two words.
class QOR_FRAMEWORK_API NodePath {
public:
    /// Undefined: no path was ever given.
    constexpr NodePath() noexcept = default;
    /// A path of these identifiers, root first; none gives an undefined path.
    explicit NodePath(std::vector<std::int32_t> const& p_ids);
    NodePath(NodePath const& p_other) noexcept : _parent(p_other._parent), _last(p_other._last), _size(p_other._size) {
        Detail::ShareSegment(_parent);
    }
    NodePath(NodePath&& p_other) noexcept { Swap(p_other); }
    NodePath& operator=(NodePath p_other) noexcept {
        Swap(p_other);
        return *this;
    }
    ~NodePath() { Detail::ReleaseSegment(_parent); }

    bool IsDefined() const noexcept { return _size > 0; }
    /// Number of nodes on the path, the node itself included.
    std::size_t Size() const noexcept { return _size; }
    /// The identifiers, root first.
    std::vector<std::int32_t> Ids() const;
    /// The node's own identifier, 0 when undefined.
    std::int32_t Last() const noexcept { return _last; }

    bool operator==(NodePath const& p_other) const noexcept;
    /// By the identifiers, root first; an undefined path comes before all others.
    std::strong_ordering operator<=>(NodePath const& p_other) const;

private:
    friend class WorkingPath;
    NodePath(Detail::PathSegment* p_parent, std::int32_t p_last, std::uint32_t p_size) noexcept;
    void Swap(NodePath& p_other) noexcept;

    Detail::PathSegment* _parent = nullptr;
    std::int32_t _last = 0;
    std::uint32_t _size = 0;
};

/// Writes the identifiers, separated by slashes, or "(undefined)".
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, NodePath const& p_path);

/// The path of a traversal that goes up and down a tree, from which it makes the paths of the nodes it meets.
class QOR_FRAMEWORK_API WorkingPath {
public:
    WorkingPath() noexcept = default;
    WorkingPath(WorkingPath const&) = delete;
    WorkingPath& operator=(WorkingPath const&) = delete;
    ~WorkingPath();

    void Push(std::int32_t p_id);
    void Pop() noexcept;
    bool Empty() const noexcept { return _levels.empty(); }
    std::size_t Size() const noexcept { return _levels.size(); }

    /// The path as it stands now.
    NodePath Path();

private:
    struct Level {
        std::int32_t id;
        Detail::PathSegment* segment; ///< made when a path first passes through this level
    };
    Detail::PathSegment* SegmentOf(std::size_t p_level);

    std::vector<Level> _levels;
};

} // namespace Qor::Chart::Core
