#pragma once

namespace Qor::Chart::Utility {

/// A handle to a T that somebody else owns and that may only be used inside a scope (Scoped). Copied freely, kept in
/// contexts; it may be empty. The owner keeps the T alive for as long as handles to it are used.
template <class T>
class Unscoped {
public:
    constexpr Unscoped() noexcept = default;
    constexpr Unscoped(T& p_object) noexcept : _object(&p_object) {}
    explicit constexpr Unscoped(T* p_object) noexcept : _object(p_object) {}

    explicit constexpr operator bool() const noexcept { return _object != nullptr; }
    /// The object itself, without a scope: to compare or to store, not to call.
    constexpr T* Get() const noexcept { return _object; }

    constexpr bool operator==(Unscoped const&) const noexcept = default;

private:
    T* _object = nullptr;
};

} // namespace Qor::Chart::Utility
