#pragma once

#include "framework/Export.h"
#include "framework/types/BoundingBox.h"
#include "framework/types/QuantityUnit.h"
#include "framework/types/Vector3.h"

#include <array>
#include <cstddef>
#include <iosfwd>

namespace Qor::Chart::Types {

/// The space in which a subtree places its data: three axes that measure the same quantity in the same unit, the range
/// of values along each, and one scale from domain values to scene coordinates. Uniform means that a length is the same
/// along every axis. A plain value.
class QOR_FRAMEWORK_API UniformSpatialDomain {
public:
    enum class Axis : std::size_t { X, Y, Z };

    /// The values between two bounds; default-constructed it is undefined: nothing is known of the axis.
    struct QOR_FRAMEWORK_API Range {
        double low = 1;
        double high = 0;

        constexpr bool operator==(Range const&) const = default;
        constexpr bool IsDefined() const { return low <= high; }
        constexpr double Length() const { return IsDefined() ? high - low : 0.0; }
    };

    /// A plain number on each axis, ranges undefined, scale 1.
    UniformSpatialDomain() = default;
    explicit UniformSpatialDomain(QuantityUnit p_quantityUnit, double p_scale = 1.0);

    QuantityUnit const& GetQuantityUnit() const { return _quantityUnit; }
    void SetQuantityUnit(QuantityUnit p_quantityUnit);

    Range const& GetRange(Axis p_axis) const { return _ranges[static_cast<std::size_t>(p_axis)]; }
    /// Bounds may come in any order. A bound that is not finite makes the axis undefined and gives false.
    bool SetRange(Axis p_axis, double p_bound, double p_other);
    void ClearRange(Axis p_axis);
    /// The ranges of all axes as a box in domain values; undefined unless every axis has a range.
    BoundingBox_Base<double> Ranges() const;
    /// Sets every axis from a box in domain values; an undefined box clears them all.
    void SetRanges(BoundingBox_Base<double> const& p_box);

    /// Scene units per domain unit.
    double Scale() const { return _scale; }
    /// Refuses, with false, a scale that is not finite or not greater than zero.
    bool SetScale(double p_scale);

    Vector3_Base<double> ToScene(Vector3_Base<double> const& p_domain) const { return p_domain * _scale; }
    Vector3_Base<double> ToDomain(Vector3_Base<double> const& p_scene) const { return p_scene / _scale; }

    bool operator==(UniformSpatialDomain const&) const = default;

private:
    QuantityUnit _quantityUnit;
    std::array<Range, 3> _ranges{};
    double _scale = 1.0;
};

/// Writes the quantity and unit, the scale and the three ranges.
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, UniformSpatialDomain const& p_domain);

} // namespace Qor::Chart::Types
