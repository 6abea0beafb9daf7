#pragma once

#include "framework/core/NodeList.h"
#include "render/Export.h"

#include <cstddef>
#include <iterator>

namespace Qor::Chart::Render {

class Vis;

/// Runs over the children of a visual node that are active, valid and not pending. To use it, include `Vis.h`.
class QOR_VIS_API ActiveIterator {
public:
    using Position = Core::NodeList<Vis>::Iterator;
    using iterator_category = std::forward_iterator_tag;
    using value_type = Core::Ptr<Vis>;
    using difference_type = std::ptrdiff_t;
    using pointer = Core::Ptr<Vis> const*;
    using reference = Core::Ptr<Vis> const&;

    ActiveIterator() noexcept = default;
    /// Stands on the first active child from the given position on.
    ActiveIterator(Position p_begin, Position p_end) noexcept : _at(p_begin), _end(p_end) { SkipInactive(); }

    ActiveIterator& operator++() noexcept {
        ++_at;
        SkipInactive();
        return *this;
    }
    ActiveIterator operator++(int) noexcept {
        ActiveIterator const before = *this;
        ++*this;
        return before;
    }
    /// The iterator this many active children further on.
    ActiveIterator operator+(std::size_t p_count) const noexcept {
        ActiveIterator moved = *this;
        for (; p_count > 0; --p_count)
            ++moved;
        return moved;
    }

    bool operator==(ActiveIterator const& p_other) const noexcept { return _at == p_other._at; }
    Core::Ptr<Vis> const& operator*() const noexcept { return *_at; }
    Core::Ptr<Vis> const* operator->() const noexcept { return &*_at; }

private:
    inline void SkipInactive() noexcept;

    Position _at;
    Position _end;
};

} // namespace Qor::Chart::Render
