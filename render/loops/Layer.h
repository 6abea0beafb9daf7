#pragma once

#include <cstdint>

namespace Qor::Chart::Render {

/// The two layers of a picture: the scene, and what lies over it. As a set, for picks, the layers are bits.
enum Layer : std::uint32_t {
    LayerBase = 1,
    LayerOverlay = 2,
    LayerBoth = LayerBase | LayerOverlay,
};

/// The layer of a draw: a value with the lowest bit set means the base layer.
constexpr bool IsBaseLayer(Layer p_layer) noexcept {
    return (p_layer & LayerBase) != 0;
}

} // namespace Qor::Chart::Render
