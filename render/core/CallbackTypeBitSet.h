#pragma once

#include "render/Export.h"
#include "render/core/CallbackType.h"

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <stdexcept>

namespace Qor::Chart::Render {

namespace Detail {

/// @throws std::out_of_range unless the position is below the count
constexpr void CheckBitPosition(std::size_t p_position, std::size_t p_count) {
    if (p_position >= p_count)
        throw std::out_of_range("invalid bitset<N> position");
}

} // namespace Detail

/// The set of passes that have work at a node or below it. The bit of a pass stands at 1006 minus its code.
class QOR_VIS_API CallbackTypeBitSet {
public:
    static constexpr std::size_t Count = 6;

    constexpr CallbackTypeBitSet() noexcept = default;

    /// The bit's position. Codes outside 1001 to 1006 give positions that the other operations refuse.
    static constexpr std::size_t PositionOf(int p_type) noexcept {
        return static_cast<std::size_t>(CallbackHighlightOverlay) - static_cast<std::size_t>(p_type);
    }

    /// @throws std::out_of_range for a code outside 1001 to 1006
    constexpr bool Has(int p_type) const {
        Detail::CheckBitPosition(PositionOf(p_type), Count);
        return (_bits >> PositionOf(p_type) & 1U) != 0;
    }
    /// @throws std::out_of_range for a code outside 1001 to 1006
    constexpr void Set(int p_type, bool p_on = true) {
        Detail::CheckBitPosition(PositionOf(p_type), Count);
        auto const bit = static_cast<std::uint8_t>(1U << PositionOf(p_type));
        _bits = static_cast<std::uint8_t>(p_on ? _bits | bit : _bits & ~bit);
    }
    constexpr void SetAll() noexcept { _bits = (1U << Count) - 1; }
    constexpr void Clear() noexcept { _bits = 0; }
    constexpr bool Any() const noexcept { return _bits != 0; }

    constexpr CallbackTypeBitSet& operator|=(CallbackTypeBitSet p_other) noexcept {
        _bits = static_cast<std::uint8_t>(_bits | p_other._bits);
        return *this;
    }
    constexpr bool operator==(CallbackTypeBitSet const&) const noexcept = default;

private:
    std::uint8_t _bits = 0;
};

/// Writes the six bits in the order of the codes, such as "[101000]".
QOR_VIS_API std::ostream& operator<<(std::ostream& p_stream, CallbackTypeBitSet p_set);

} // namespace Qor::Chart::Render
