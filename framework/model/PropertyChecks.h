#pragma once

#include "framework/types/Vector3.h"

#include <cmath>
#include <optional>
#include <string>

class QColor;

namespace Qor::Chart::Model::Detail {

/// What properties of several classes ask of their values: an empty text for one that is allowed, else a sentence.
std::string CheckColor(QColor const& p_color);
std::string CheckOptionalColor(std::optional<QColor> const& p_color);
std::string CheckSide(double const& p_pixels); ///< of what lies in a pane; 0 is as large as needed
std::string CheckFinite(Types::Vector3_Base<double> const& p_vector);

/// The same for a place inside a pane, horizontal or vertical.
template <class Position>
std::string CheckPosition(Position const& p_position) {
    return std::isfinite(p_position.distance) ? std::string()
                                              : "the distance is infinite or not a number; give a finite one.";
}

} // namespace Qor::Chart::Model::Detail
