#pragma once

#include "framework/Export.h"
#include "framework/core/Ptr.h"

#include <compare>
#include <cstdint>
#include <functional>

namespace Qor::Chart::Core {

class Node;

namespace Detail {

/// What the weak handles of one node share. It outlives the node for as long as a weak handle exists. Weak handles stay
/// on the thread that their node belongs to: their count is a plain one.
struct WeakControl {
    std::uint32_t handles = 1;
    Node* node = nullptr; ///< null from the moment the node's last owning handle is gone
};

QOR_FRAMEWORK_API WeakControl* AcquireControl(Node& p_node);
inline void ReleaseControl(WeakControl* p_control) noexcept {
    if (p_control && --p_control->handles == 0)
        delete p_control;
}
QOR_FRAMEWORK_API bool TryAddReference(WeakControl const& p_control) noexcept;

} // namespace Detail

/// Handle that does not keep its node alive. It knows its node by owner: expired handles of one node still compare equal
/// and keep their place in an order; only a handle that was never attached is empty.
template <class T>
class WeakPtr {
public:
    constexpr WeakPtr() noexcept = default;
    WeakPtr(Ptr<T> const& p_node) : WeakPtr(p_node.Get()) {}
    explicit WeakPtr(T* p_node) : _control(p_node ? Detail::AcquireControl(*p_node) : nullptr) {}
    WeakPtr(WeakPtr const& p_other) noexcept : _control(p_other._control) { Share(); }
    WeakPtr(WeakPtr&& p_other) noexcept : _control(std::exchange(p_other._control, nullptr)) {}

    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    WeakPtr(Ptr<U> const& p_node) : WeakPtr(p_node.Get()) {}

    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    WeakPtr(WeakPtr<U> const& p_other) noexcept : _control(p_other._control) {
        Share();
    }

    ~WeakPtr() { Detail::ReleaseControl(_control); }

    WeakPtr& operator=(WeakPtr p_other) noexcept {
        std::swap(_control, p_other._control);
        return *this;
    }

    void Reset() noexcept { *this = WeakPtr(); }

    /// True when the node is gone, and for an empty handle.
    bool Expired() const noexcept { return !_control || !_control->node; }
    /// True for a handle that was never attached.
    bool IsEmpty() const noexcept { return _control == nullptr; }

    /// The node, kept alive by the result; empty when the node is gone, and while no owning handle has it yet.
    [[nodiscard]] Ptr<T> Lock() const noexcept {
        return _control && Detail::TryAddReference(*_control) ? Ptr<T>::Adopt(Peek()) : Ptr<T>();
    }

    /// Asks the processor to bring what `Peek` reads into its cache.
    void Prefetch() const noexcept { __builtin_prefetch(_control); }

    /// The node without a count taken, null when it is gone: for a look during which the node cannot die.
    T* Peek() const noexcept { return _control && _control->node ? static_cast<T*>(_control->node) : nullptr; }

    template <class U>
    bool operator==(WeakPtr<U> const& p_other) const noexcept {
        return _control == p_other._control;
    }
    template <class U>
    std::strong_ordering operator<=>(WeakPtr<U> const& p_other) const noexcept {
        return std::compare_three_way{}(_control, p_other._control);
    }

    /// Equal for all handles of one node, and different for all others; alive or not.
    std::size_t OwnerHash() const noexcept { return std::hash<Detail::WeakControl*>{}(_control); }

private:
    template <class U>
    friend class WeakPtr;

    void Share() noexcept {
        if (_control)
            ++_control->handles;
    }

    Detail::WeakControl* _control = nullptr;
};

} // namespace Qor::Chart::Core

template <class T>
struct std::hash<Qor::Chart::Core::WeakPtr<T>> {
    std::size_t operator()(Qor::Chart::Core::WeakPtr<T> const& p_node) const noexcept { return p_node.OwnerHash(); }
};
