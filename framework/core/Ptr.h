#pragma once

#include <compare>
#include <cstddef>
#include <functional>
#include <type_traits>
#include <utility>

namespace Qor::Chart::Core {

/// Owning handle of a node. The count lives in the node, so a handle costs one pointer; counting is atomic. A node dies
/// with its last handle; a tree dies level by level without recursion, however deep it is.
template <class T>
class Ptr {
public:
    using element_type = T;

    constexpr Ptr() noexcept = default;
    constexpr Ptr(std::nullptr_t) noexcept {}
    explicit Ptr(T* p_node) noexcept : _node(p_node) { Acquire(); }
    Ptr(Ptr const& p_other) noexcept : _node(p_other._node) { Acquire(); }
    Ptr(Ptr&& p_other) noexcept : _node(std::exchange(p_other._node, nullptr)) {}

    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    Ptr(Ptr<U> const& p_other) noexcept : _node(p_other.Get()) {
        Acquire();
    }

    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    Ptr(Ptr<U>&& p_other) noexcept : _node(p_other.Detach()) {}

    ~Ptr() { ReleaseNode(_node); }

    Ptr& operator=(Ptr const& p_other) noexcept { // NOLINT(bugprone-unhandled-self-assignment): copies, then swaps
        Ptr(p_other).Swap(*this);
        return *this;
    }
    Ptr& operator=(Ptr&& p_other) noexcept {
        Ptr(std::move(p_other)).Swap(*this);
        return *this;
    }

    /// Takes over a count that the caller already holds.
    static Ptr Adopt(T* p_node) noexcept {
        Ptr adopted;
        adopted._node = p_node;
        return adopted;
    }

    /// Drops the node; the handle is empty afterwards.
    void Reset() noexcept { Ptr().Swap(*this); }
    void Swap(Ptr& p_other) noexcept { std::swap(_node, p_other._node); }

    /// Gives the count up to the caller: the handle is empty afterwards and nothing is released.
    [[nodiscard]] T* Detach() noexcept { return std::exchange(_node, nullptr); }

    T* Get() const noexcept { return _node; }
    T& operator*() const noexcept { return *_node; }
    T* operator->() const noexcept { return _node; }
    explicit operator bool() const noexcept { return _node != nullptr; }

    template <class U>
    bool operator==(Ptr<U> const& p_other) const noexcept {
        return _node == p_other.Get();
    }
    bool operator==(std::nullptr_t) const noexcept { return _node == nullptr; }
    std::strong_ordering operator<=>(Ptr const& p_other) const noexcept {
        return std::compare_three_way{}(_node, p_other._node);
    }

private:
    void Acquire() noexcept {
        if (_node)
            _node->AddReference();
    }
    static void ReleaseNode(T* p_node) noexcept {
        if (p_node)
            p_node->Release();
    }

    T* _node = nullptr;
};

/// Makes a node and its first handle.
template <class T, class... Args>
[[nodiscard]] Ptr<T> MakeNode(Args&&... p_args) {
    return Ptr<T>(new T(std::forward<Args>(p_args)...));
}

template <class T, class U>
[[nodiscard]] Ptr<T> StaticCast(Ptr<U> const& p_node) noexcept {
    return Ptr<T>(static_cast<T*>(p_node.Get()));
}

/// The node as a T, or an empty handle when it is none.
template <class T, class U>
[[nodiscard]] Ptr<T> DynamicCast(Ptr<U> const& p_node) noexcept {
    return Ptr<T>(dynamic_cast<T*>(p_node.Get()));
}

} // namespace Qor::Chart::Core

template <class T>
struct std::hash<Qor::Chart::Core::Ptr<T>> {
    std::size_t operator()(Qor::Chart::Core::Ptr<T> const& p_node) const noexcept {
        return std::hash<T*>{}(p_node.Get());
    }
};
