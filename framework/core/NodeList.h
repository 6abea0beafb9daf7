#pragma once

#include "framework/Export.h"
#include "framework/core/ChildStorage.h"
#include "framework/core/Node.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <type_traits>
#include <utility>

namespace Qor::Chart::Core {

namespace Detail {

QOR_FRAMEWORK_API void TouchChildAdded(Node& p_list, Node& p_child);
QOR_FRAMEWORK_API void TouchChildRemoved(Node& p_list, Node& p_child);
QOR_FRAMEWORK_API void TouchCleared(Node& p_list, NodeHandles p_children);
QOR_FRAMEWORK_API void DumpChildren(
    Node const& p_list, std::ostream& p_stream, Verbosity p_verbosity, std::uint64_t p_depth);

} // namespace Detail

/// A node with an ordered list of children that it owns together with whoever else holds them. The list is a dependent
/// of each child: a change of a child reaches it with relationship 1. A list holds a node at most once; a node may stand
/// in several lists.
///
/// Adding, removing and looking a child up take constant time on average. Iterators stay usable while the list changes:
/// they pass over children that were removed, and may miss or repeat what was added or sorted meanwhile. Who adds
/// children while it iterates opens a `DestructionScope`, so that handles taken from the iterator stay readable.
template <class T>
class NodeList : public Node {
    using Storage = Detail::ChildStorage<T>;

public:
    class Iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = Ptr<T>;
        using difference_type = std::ptrdiff_t;
        using pointer = Ptr<T> const*;
        using reference = Ptr<T> const&;

        Iterator() noexcept = default;
        Iterator(Storage const* p_children, std::uint32_t p_slot) noexcept : _children(p_children), _slot(p_slot) {}

        /// The child; empty when it has been removed since the iterator came here.
        Ptr<T> const& operator*() const noexcept { return _slot < Used() ? _children->At(_slot) : None(); }
        Ptr<T> const* operator->() const noexcept { return &**this; }

        Iterator& operator++() noexcept {
            _slot = _slot < Used() ? _children->SkipHoles(_slot + 1) : Storage::End;
            return *this;
        }
        Iterator operator++(int) noexcept {
            Iterator const before = *this;
            ++*this;
            return before;
        }

        bool operator==(Iterator const& p_other) const noexcept { return _slot == p_other._slot; }

    private:
        std::uint32_t Used() const noexcept { return _children ? _children->Used() : 0; }
        static Ptr<T> const& None() noexcept {
            static Ptr<T> const none;
            return none;
        }

        Storage const* _children = nullptr;
        std::uint32_t _slot = Storage::End;
    };
    using iterator = Iterator;
    using const_iterator = Iterator;

    Iterator begin() const noexcept { return _children ? Iterator(_children.get(), _children->First()) : end(); }
    Iterator end() const noexcept { return Iterator(_children.get(), Storage::End); }

    std::size_t Size() const noexcept { return _children ? _children->Size() : 0; }
    bool Empty() const noexcept { return Size() == 0; }
    bool Contains(Node const& p_child) const noexcept { return p_child.Deps().Has(*this, Dependencies::Link::Child); }

    /// Whether one child comes before another; false unless both are in the list.
    bool Precedes(Node const& p_first, Node const& p_second) const {
        return Contains(p_first) && Contains(p_second) && _children->SlotOf(p_first) < _children->SlotOf(p_second);
    }

    /// Appends a child and reports the change. An empty handle, or a child that is in the list already, changes nothing
    /// and gives false.
    bool Add(Ptr<T> const& p_child) {
        if (!p_child || Contains(*p_child))
            return false;
        if (!_children)
            _children = std::make_unique<Storage>();
        _children->Append(p_child);
        p_child->Deps().Add(*this, Dependencies::Link::Child);
        Detail::TouchChildAdded(*this, *p_child);
        return true;
    }

    /// Takes a child out and reports the change; a node that is not in the list changes nothing and gives false.
    bool Remove(Node const& p_child) {
        if (!Contains(p_child))
            return false;
        Ptr<T> const child = _children->Take(p_child);
        child->Deps().Remove(*this, Dependencies::Link::Child);
        Detail::TouchChildRemoved(*this, *child);
        return true;
    }
    bool Remove(Ptr<T> const& p_child) { return p_child && Remove(*p_child); }

    /// Takes all children out and reports one change.
    void Clear() {
        if (Empty())
            return;
        NodeHandles handles;
        handles.reserve(Size());
        for (Ptr<T> const& child : *this)
            handles.emplace_back(child);
        DestructionScope const scope;
        Unlink();
        Detail::TouchCleared(*this, std::move(handles));
    }

    /// Sorts the children, equal ones in the order they had. Nobody is told: the set of children stays what it was.
    template <class Less>
    void StableSort(Less p_less) {
        if (!_children)
            return;
        _children->Compact();
        std::stable_sort(_children->Slots(), _children->Slots() + _children->Used(), p_less);
    }

    /// Frees the places of removed children when they outnumber the others, so that passing over the list costs what it
    /// holds. Not while somebody iterates.
    void CloseHoles() noexcept {
        if (_children)
            _children->CompactIfSparse();
    }

    void CollectChildren(std::vector<Node*>& p_children) const override {
        for (Ptr<T> const& child : *this)
            p_children.push_back(child.Get());
    }
    void Dump(std::ostream& p_stream, Verbosity p_verbosity, std::uint64_t p_depth) const override {
        Node::Dump(p_stream, p_verbosity, p_depth);
        Detail::DumpChildren(*this, p_stream, p_verbosity, p_depth);
    }

protected:
    NodeList() = default;
    ~NodeList() override { Unlink(); }

private:
    void Unlink() noexcept {
        if (!_children)
            return;
        for (Ptr<T> const& child : *this)
            child->Deps().Remove(*this, Dependencies::Link::Child);
        _children->Clear();
    }

    std::unique_ptr<Storage> _children;
};

} // namespace Qor::Chart::Core
