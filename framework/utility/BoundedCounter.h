#pragma once

#include "framework/Export.h"

#include <iosfwd>

namespace Qor::Chart::Utility {

/// Counts how many pieces of a limited supply are taken, for instance clip planes or stencil bits: from 0 up to a bound
/// that it never passes. A plain value.
class QOR_FRAMEWORK_API BoundedCounter {
public:
    /// Nothing is taken out of a supply of p_bound.
    explicit constexpr BoundedCounter(unsigned p_bound = 0) noexcept : _bound(p_bound) {}

    constexpr unsigned Value() const noexcept { return _value; }
    constexpr unsigned Bound() const noexcept { return _bound; }
    constexpr unsigned Available() const noexcept { return _bound - _value; }

    /// Takes p_count pieces, or none and gives false when fewer are left.
    [[nodiscard]] constexpr bool TryIncrement(unsigned p_count = 1) noexcept {
        if (p_count > Available()) {
            return false;
        }
        _value += p_count;
        return true;
    }
    /// Gives p_count pieces back, or none and gives false when fewer are taken.
    constexpr bool TryDecrement(unsigned p_count = 1) noexcept {
        if (p_count > _value) {
            return false;
        }
        _value -= p_count;
        return true;
    }

    constexpr bool operator==(BoundedCounter const&) const noexcept = default;

private:
    unsigned _value = 0;
    unsigned _bound = 0;
};

/// Writes "value/bound".
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, BoundedCounter const& p_counter);

} // namespace Qor::Chart::Utility
