#pragma once

#include "framework/Export.h"

#include <cstdint>
#include <iosfwd>
#include <limits>

namespace Qor::Chart::Ogl {

/// One hit of a pick: the name that was loaded when the primitives were drawn and the nearest window depth of these
/// primitives inside the pick area, from 0 (near plane) to 1 (far plane).
struct QOR_FRAMEWORK_API HitRecord {
    /// No name.
    static constexpr std::uint64_t NameInvalid = std::numeric_limits<std::uint64_t>::max();
    /// The whole of what was picked, where its elements have no names of their own.
    static constexpr std::uint64_t NameDefault = 0;
    /// The first name of an element; further elements count on from here.
    static constexpr std::uint64_t NameFirst = 1;
    /// The depth of everything in the overlay: in front of the scene.
    static constexpr double DepthOverlay = 0.0;

    std::uint64_t name = NameInvalid;
    double depth = 1.0;

    constexpr HitRecord() = default;
    constexpr HitRecord(std::uint64_t p_name, double p_depth) : name(p_name), depth(p_depth) {}

    /// A strict weak order for sorting, nearer first; records of equal depth keep their order in a stable sort.
    static constexpr bool OrderByDepth(HitRecord const& p_a, HitRecord const& p_b) { return p_a.depth < p_b.depth; }

    constexpr bool operator==(HitRecord const&) const = default;
};

/// Writes "name(N) depth(D)", the first two names of the class as "invalid" and "default".
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, HitRecord const& p_record);

} // namespace Qor::Chart::Ogl
