#include "framework/ogl/LineStippleCounter.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Qor::Chart::Ogl {

namespace {

constexpr double MaxCoordinate = 1e9;

/// Cuts [p_low, p_high] of a line to where the distance to a plane, p_a at its beginning and p_b at its end, is not
/// negative.
void Cut(double p_a, double p_b, double& p_low, double& p_high) {
    if (p_a < 0 && p_b < 0) {
        p_low = 1;
        p_high = 0;
    } else if (p_a < 0) {
        p_low = std::max(p_low, p_a / (p_a - p_b));
    } else if (p_b < 0) {
        p_high = std::min(p_high, p_a / (p_a - p_b));
    }
}

/// The first column that a line towards growing x draws when it comes by a point: that of the point, unless the line has
/// left the diamond in it already.
double FirstColumn(double p_x, double p_y) {
    double const column = std::floor(p_x);
    double const beyond = p_x - column - 0.5;
    bool const isInside = beyond + std::fabs(p_y - std::floor(p_y) - 0.5) < 0.5;
    return beyond <= 0 || isInside ? column : column + 1;
}

} // namespace

LineStippleCounter::LineStippleCounter(State const& p_state)
    : _projection(p_state.projection)
    , _viewport(p_state.viewport.rectangle)
    , _isSmooth(p_state.IsEnabled(EnableBit::LineSmooth)) {}

LineStippleCounter::Vector4 LineStippleCounter::Project(Types::Vector4_Base<float> const& p_point) const {
    auto const row = [&](std::size_t p_row) {
        auto const m = [&](std::size_t p_column) {
            return static_cast<double>(_projection.matrix[4 * p_column + p_row]);
        };
        return m(0) * static_cast<double>(p_point.x) + m(1) * static_cast<double>(p_point.y) +
            m(2) * static_cast<double>(p_point.z) + m(3) * static_cast<double>(p_point.w);
    };
    return {row(0), row(1), row(2), row(3)};
}

LineStippleCounter::Vector2 LineStippleCounter::Window(Vector4 const& p_point) const {
    auto const pixel = [&](double p_value, std::int32_t p_origin, std::int32_t p_size) {
        double const coordinate = p_origin + (p_value / p_point.w + 1) / 2 * p_size;
        return std::clamp(coordinate, -MaxCoordinate, MaxCoordinate);
    };
    return {pixel(p_point.x, _viewport.x, _viewport.width), pixel(p_point.y, _viewport.y, _viewport.height)};
}

void LineStippleCounter::Advance(Types::Vector4_Base<float> const& p_from, Types::Vector4_Base<float> const& p_to) {
    Vector4 const a = Project(p_from);
    Vector4 const b = Project(p_to);
    double low = 0;
    double high = 1;
    Cut(a.z + a.w, b.z + b.w, low, high);
    Cut(a.w - a.z, b.w - b.z, low, high);
    Vector4 const first = a + (b - a) * low;
    Vector4 const last = a + (b - a) * high;
    if (!(low <= high) || !(first.w > 0) || !(last.w > 0)) {
        return;
    }
    Vector2 from = Window(first);
    Vector2 to = Window(last);
    Vector2 const along = to - from;
    if (_isSmooth) {
        _pixels += std::ceil(std::hypot(along.x, along.y));
    } else {
        if (std::fabs(along.x) < std::fabs(along.y)) {
            std::swap(from.x, from.y);
            std::swap(to.x, to.y);
        }
        double const sign = to.x < from.x ? -1 : 1;
        _pixels += FirstColumn(sign * to.x, to.y) - FirstColumn(sign * from.x, from.y);
    }
    _pixels = std::isfinite(_pixels) ? _pixels : 0;
}

} // namespace Qor::Chart::Ogl
