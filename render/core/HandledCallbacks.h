#pragma once

#include "render/Export.h"
#include "render/core/CallbackTypeBitSet.h"

#include <cstdint>

namespace Qor::Chart::Render {

/// The hooks of a visual node. The traversals call a hook only when the node registered its bit.
enum HandledCallbacks : int {
    HandledUpdate = 0,
    HandledSetup = 1,
    HandledDraw = 2,
    HandledHighlight = 3,
    HandledHit = 4,
    HandledTeardown = 5,
    HandledSetupOverlay = 6,
    HandledDrawOverlay = 7,
    HandledHighlightOverlay = 8,
    HandledHitOverlay = 9,
    HandledTeardownOverlay = 10,
    HandledBoundingBox = 11,
    HandledPostUpdate = 13,
    HandledUpdateModel = 14,
    HandledRefreshUpdateContext = 15,
};

/// Which hooks a node handles, indexed by `HandledCallbacks`. Positions outside 0 to 15 throw `std::out_of_range`.
class HandledCallbackSet {
public:
    static constexpr std::size_t Count = 16;

    static constexpr std::uint16_t MaskOf(int p_callback) {
        Detail::CheckBitPosition(static_cast<std::size_t>(p_callback), Count);
        return static_cast<std::uint16_t>(1U << static_cast<unsigned>(p_callback));
    }

    constexpr bool Has(int p_callback) const { return (_bits & MaskOf(p_callback)) != 0; }
    constexpr void Set(int p_callback, bool p_on) {
        std::uint16_t const mask = MaskOf(p_callback);
        _bits = static_cast<std::uint16_t>(p_on ? _bits | mask : _bits & ~mask);
    }
    /// The whole set as a word: bit i is hook i.
    constexpr std::uint16_t Word() const noexcept { return _bits; }

private:
    std::uint16_t _bits = 0;
};

} // namespace Qor::Chart::Render
