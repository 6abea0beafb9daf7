#include "framework/types/UniformSpatialDomain.h"

#include <algorithm>
#include <cmath>
#include <ostream>
#include <utility>

namespace Qor::Chart::Types {

UniformSpatialDomain::UniformSpatialDomain(QuantityUnit p_quantityUnit, double p_scale)
    : _quantityUnit(std::move(p_quantityUnit)) {
    SetScale(p_scale);
}

void UniformSpatialDomain::SetQuantityUnit(QuantityUnit p_quantityUnit) {
    _quantityUnit = std::move(p_quantityUnit);
}

bool UniformSpatialDomain::SetRange(Axis p_axis, double p_bound, double p_other) {
    if (!std::isfinite(p_bound) || !std::isfinite(p_other)) {
        ClearRange(p_axis);
        return false;
    }
    _ranges[static_cast<std::size_t>(p_axis)] = {std::min(p_bound, p_other), std::max(p_bound, p_other)};
    return true;
}

void UniformSpatialDomain::ClearRange(Axis p_axis) {
    _ranges[static_cast<std::size_t>(p_axis)] = {};
}

BoundingBox_Base<double> UniformSpatialDomain::Ranges() const {
    if (!std::all_of(_ranges.begin(), _ranges.end(), [](Range const& p_range) { return p_range.IsDefined(); })) {
        return {};
    }
    return {{_ranges[0].low, _ranges[1].low, _ranges[2].low}, {_ranges[0].high, _ranges[1].high, _ranges[2].high}};
}

void UniformSpatialDomain::SetRanges(BoundingBox_Base<double> const& p_box) {
    _ranges = {};
    if (!p_box.IsDefined()) {
        return;
    }
    Vector3_Base<double> const low = p_box.Min();
    Vector3_Base<double> const high = p_box.Max();
    SetRange(Axis::X, low.x, high.x);
    SetRange(Axis::Y, low.y, high.y);
    SetRange(Axis::Z, low.z, high.z);
}

bool UniformSpatialDomain::SetScale(double p_scale) {
    if (!std::isfinite(p_scale) || !(p_scale > 0.0)) {
        return false;
    }
    _scale = p_scale;
    return true;
}

std::ostream& operator<<(std::ostream& p_stream, UniformSpatialDomain const& p_domain) {
    using Axis = UniformSpatialDomain::Axis;
    p_stream << p_domain.GetQuantityUnit() << ", scale " << p_domain.Scale();
    for (auto const& [axis, name] : {std::pair(Axis::X, "x"), std::pair(Axis::Y, "y"), std::pair(Axis::Z, "z")}) {
        auto const& range = p_domain.GetRange(axis);
        p_stream << ", " << name << ' ';
        if (range.IsDefined()) {
            p_stream << range.low << " to " << range.high;
        } else {
            p_stream << "undefined";
        }
    }
    return p_stream;
}

} // namespace Qor::Chart::Types
