#include "framework/model/PropertyChecks.h"

#include <QColor>

namespace Qor::Chart::Model::Detail {

std::string CheckColor(QColor const& p_color) {
    return p_color.isValid() ? "" : "the colour is invalid; give a valid one, or reset the property.";
}

std::string CheckOptionalColor(std::optional<QColor> const& p_color) {
    return p_color ? CheckColor(*p_color) : std::string();
}

std::string CheckSide(double const& p_pixels) {
    constexpr double Largest = 4096;
    return p_pixels >= 0 && p_pixels <= Largest
        ? std::string()
        : "give a number of pixels from 0, which is as large as needed, to 4096.";
}

std::string CheckFinite(Types::Vector3_Base<double> const& p_vector) {
    return IsFinite(p_vector) ? "" : "a coordinate is infinite or not a number; give three finite numbers.";
}

} // namespace Qor::Chart::Model::Detail
