#pragma once

#include "framework/Export.h"
#include "framework/types/DefinedAs.h"

#include <iosfwd>

namespace Qor::Chart::Types {

/// The side of the parent from which a horizontal distance is measured.
enum class XEdge : int {
    Left = 0,
    Right = 1,
};

/// Where something lies horizontally inside a parent: a distance, in pixels or as a fraction of the parent's width, from
/// the parent's left or right side to the same side of the thing.
struct QOR_FRAMEWORK_API XPosition {
    DefinedAs definedAs = DefinedAs::Pixels;
    XEdge edge = XEdge::Left;
    double distance = 0;

    constexpr XPosition() = default;
    constexpr XPosition(DefinedAs p_definedAs, XEdge p_edge, double p_distance)
        : definedAs(p_definedAs), edge(p_edge), distance(p_distance) {}

    constexpr bool operator==(XPosition const&) const = default;

    /// The x coordinate of the left side of a thing p_width wide, inside a parent that spans p_parentWidth from
    /// p_parentX; all in pixels.
    constexpr double Resolve(double p_parentX, double p_parentWidth, double p_width) const {
        double const pixels = definedAs == DefinedAs::Pixels ? distance : distance * p_parentWidth;
        return edge == XEdge::Left ? p_parentX + pixels : p_parentX + p_parentWidth - pixels - p_width;
    }
};

QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, XPosition const& p_position);

} // namespace Qor::Chart::Types
