#include "framework/types/BoundingBox.h"

#include "framework/types/Matrix4.h"
#include "framework/types/Vector4.h"

#include <algorithm>
#include <ostream>

namespace Qor::Chart::Types {

namespace {

using Vector = Vector3_Base<double>;

/// Where a box ends up under an affine matrix. Each axis of the result is the sum of the smaller (or larger) of the two
/// contributions that each axis of the box can make: the same as the eight corners, without computing them.
BoundingBox_Base<double> TransformedAffine(Vector const& p_min, Vector const& p_max, Matrix4 const& p_matrix) {
    double low[3];
    double high[3];
    for (int row = 0; row < 3; ++row) {
        low[row] = high[row] = p_matrix.At(row, 3);
        for (int column = 0; column < 3; ++column) {
            double const a = p_matrix.At(row, column) * p_min[column];
            double const b = p_matrix.At(row, column) * p_max[column];
            low[row] += std::min(a, b);
            high[row] += std::max(a, b);
        }
    }
    return {Vector(low[0], low[1], low[2]), Vector(high[0], high[1], high[2])};
}

BoundingBox_Base<double> TransformedPerspective(BoundingBox_Base<double> const& p_box, Matrix4 const& p_matrix) {
    BoundingBox_Base<double> result;
    for (unsigned corner = 0; corner < 8; ++corner) {
        Vector4_Base<double> const image = p_matrix * Vector4_Base<double>(p_box.Corner(corner), 1.0);
        if (!(image.w > 0.0) || !result.Add(image.XYZ() / image.w)) {
            return {};
        }
    }
    return result;
}

} // namespace

template <class T>
bool BoundingBox_Base<T>::Grow(Point const& p_margin) {
    if (!IsFinite(p_margin) || !IsDefined()) {
        return IsFinite(p_margin);
    }
    Point low = _min - p_margin;
    Point high = _max + p_margin;
    Point const center = Center();
    auto const order = [](T& p_low, T& p_high, T p_center) {
        if (p_low > p_high) {
            p_low = p_high = p_center;
        }
    };
    order(low.x, high.x, center.x);
    order(low.y, high.y, center.y);
    order(low.z, high.z, center.z);
    if (!IsFinite(low) || !IsFinite(high)) {
        return false;
    }
    _min = low;
    _max = high;
    return true;
}

template <class T>
BoundingBox_Base<T> BoundingBox_Base<T>::Transformed(Matrix4 const& p_matrix) const {
    if (!IsDefined() || !p_matrix.IsFinite()) {
        return {};
    }
    Vector const low(_min);
    Vector const high(_max);
    auto const box =
        p_matrix.IsAffine() ? TransformedAffine(low, high, p_matrix) : TransformedPerspective({low, high}, p_matrix);
    return box.IsDefined() ? BoundingBox_Base(Point(box.Min()), Point(box.Max())) : BoundingBox_Base();
}

template <class T>
std::ostream& operator<<(std::ostream& p_stream, BoundingBox_Base<T> const& p_box) {
    if (!p_box.IsDefined()) {
        return p_stream << "[undefined]";
    }
    return p_stream << '[' << p_box.Min() << ", " << p_box.Max() << ']';
}

template class BoundingBox_Base<float>;
template class BoundingBox_Base<double>;
template std::ostream& operator<<(std::ostream&, BoundingBox_Base<float> const&);
template std::ostream& operator<<(std::ostream&, BoundingBox_Base<double> const&);

static_assert(sizeof(BoundingBox_Base<double>) == 48);

} // namespace Qor::Chart::Types
