#pragma once

#include "framework/types/Vector3.h"

#include <string>

class QColor;

namespace Qor::Chart::Model::Detail {

/// What properties of several classes ask of their values: an empty text for one that is allowed, else a sentence.
std::string CheckColor(QColor const& p_color);
std::string CheckFinite(Types::Vector3_Base<double> const& p_vector);

} // namespace Qor::Chart::Model::Detail
