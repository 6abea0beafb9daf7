#pragma once

#include "framework/Export.h"

#include <cstdint>
#include <memory>
#include <span>

namespace Qor::Chart::Core {

class Node;

/// The dependents of one node: who is told when it changes. A dependent is listed once, however many ways it depends;
/// the ways are counted. Adding, removing and asking take constant time, whatever the number of dependents.
/// A dependent must take itself off before it dies; the handles and child lists of this library do.
class QOR_FRAMEWORK_API Dependencies {
public:
    /// Why a dependent depends.
    enum class Link {
        Child, ///< the node is in the dependent's child list
        Reference, ///< the dependent refers to the node
    };

    struct Entry {
        Node* dependent = nullptr;
        std::uint32_t children = 0;
        std::uint32_t references = 0;
    };

    Dependencies() noexcept = default;
    Dependencies(Dependencies const&) = delete;
    Dependencies& operator=(Dependencies const&) = delete;
    ~Dependencies();

    void Add(Node& p_dependent, Link p_link);
    /// Takes one link back; a link that is not there is ignored.
    void Remove(Node const& p_dependent, Link p_link) noexcept;

    bool Has(Node const& p_dependent, Link p_link) const noexcept;
    bool Empty() const noexcept { return _size == 0; }
    std::size_t Size() const noexcept { return _size; }
    std::span<Entry const> Entries() const noexcept { return {Data(), _size}; }

private:
    class Index;
    struct Heap {
        Entry* data;
        Index* index;
    };
    static constexpr std::uint32_t InlineCapacity = 2;
    static constexpr std::uint32_t IndexFrom = 24;
    static constexpr std::uint32_t NotFound = ~std::uint32_t{0};

    bool IsInline() const noexcept { return _capacity == InlineCapacity; }
    Entry* Data() noexcept { return IsInline() ? _inline : _heap.data; }
    Entry const* Data() const noexcept { return IsInline() ? _inline : _heap.data; }
    std::uint32_t Find(Node const& p_dependent) const noexcept;
    void Grow();
    void Erase(std::uint32_t p_position) noexcept;

    union {
        Entry _inline[InlineCapacity] = {};
        Heap _heap;
    };
    std::uint32_t _size = 0;
    std::uint32_t _capacity = InlineCapacity;
};

} // namespace Qor::Chart::Core
