#pragma once

#include <cstdint>

namespace Qor::Chart::Ogl {

/// What an `Agl` did since its statistics were last reset, and what its back end holds.
struct Statistics {
    std::uint64_t draws = 0; ///< draws asked for: primitive buffers and Begin/End pairs
    std::uint64_t pushes = 0; ///< pushes of any stack
    std::uint64_t pops = 0; ///< pops of any stack, those of RestoreDepths included
    std::uint64_t clears = 0; ///< clears asked for
    std::uint64_t drawCalls = 0; ///< draw calls that the back end made
    std::uint64_t instances = 0; ///< instances in these calls
    std::uint64_t primitives = 0; ///< triangles, lines and points in these calls, all instances together
    std::uint64_t triangles = 0; ///< those of them that are filled
    std::uint64_t stateChanges = 0; ///< attribute groups that the back end had to change between draws
    std::uint64_t bufferBytes = 0; ///< bytes that the back end copied to the device
    std::uint64_t heldBytes = 0; ///< bytes that shapes, textures and buffers took on the device after the last flush
    std::uint64_t flushes = 0; ///< times that recorded commands were handed to the back end

    constexpr bool operator==(Statistics const&) const = default;
};

} // namespace Qor::Chart::Ogl
