#pragma once

#include <array>
#include <cstdint>

namespace Qor::Chart::Ogl {

/// How deep each stack of an `Agl` is. A traversal remembers it before it lets a node loose and gives it back to
/// `Agl::RestoreDepths` afterwards, so that a node that failed halfway leaves nothing behind.
struct StackDepths {
    static constexpr std::size_t TextureUnits = 4;

    std::uint32_t attrib = 0;
    std::uint32_t modelView = 0;
    std::uint32_t projection = 0;
    std::array<std::uint32_t, TextureUnits> texture{};
    std::uint32_t scissor = 0;
    std::uint32_t layer = 0;
    std::uint32_t primitive = 0; ///< 1 between Begin and End, else 0

    constexpr bool operator==(StackDepths const&) const = default;
};

} // namespace Qor::Chart::Ogl
