#pragma once

#include "framework/Export.h"
#include "framework/types/DefinedAs.h"

#include <iosfwd>

namespace Qor::Chart::Types {

/// The side of the parent from which a vertical distance is measured.
enum class YEdge : int {
    Bottom = 0,
    Top = 1,
};

/// Where something lies vertically inside a parent: a distance, in pixels or as a fraction of the parent's height, from
/// the parent's lower or upper side to the same side of the thing.
struct QOR_FRAMEWORK_API YPosition {
    DefinedAs definedAs = DefinedAs::Pixels;
    YEdge edge = YEdge::Bottom;
    double distance = 0;

    constexpr YPosition() = default;
    constexpr YPosition(DefinedAs p_definedAs, YEdge p_edge, double p_distance)
        : definedAs(p_definedAs), edge(p_edge), distance(p_distance) {}

    constexpr bool operator==(YPosition const&) const = default;

    /// The y coordinate of the lower side of a thing p_height high, inside a parent that spans p_parentHeight from
    /// p_parentY upwards; all in pixels.
    constexpr double Resolve(double p_parentY, double p_parentHeight, double p_height) const {
        double const pixels = definedAs == DefinedAs::Pixels ? distance : distance * p_parentHeight;
        return edge == YEdge::Bottom ? p_parentY + pixels : p_parentY + p_parentHeight - pixels - p_height;
    }
};

QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, YPosition const& p_position);

} // namespace Qor::Chart::Types
