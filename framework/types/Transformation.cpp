#include "framework/types/Transformation.h"

namespace Qor::Chart::Types {

Transformation::Transformation(Matrix4 const& p_matrix) : _matrix(p_matrix) {}

Vector3_Base<double> Transformation::Point(Vector3_Base<double> const& p_point) const {
    Vector4_Base<double> const image = _matrix * Vector4_Base<double>(p_point, 1.0);
    return image.w == 0.0 || image.w == 1.0 ? image.XYZ() : image.XYZ() / image.w;
}

Vector3_Base<double> Transformation::Direction(Vector3_Base<double> const& p_direction) const {
    return (_matrix * Vector4_Base<double>(p_direction, 0.0)).XYZ();
}

Vector3_Base<double> Transformation::Normal(Vector3_Base<double> const& p_normal) const {
    auto const column = [&](int p_column) {
        return Vector3_Base<double>(_matrix.At(0, p_column), _matrix.At(1, p_column), _matrix.At(2, p_column));
    };
    // The cofactors are the inverse transposed times the determinant: they exist where the inverse does not.
    Vector3_Base<double> const x = Cross(column(1), column(2));
    Vector3_Base<double> const y = Cross(column(2), column(0));
    Vector3_Base<double> const z = Cross(column(0), column(1));
    double const mirror = Dot(column(0), x) < 0.0 ? -1.0 : 1.0;
    return Normalized((x * p_normal.x + y * p_normal.y + z * p_normal.z) * mirror);
}

BoundingBox_Base<double> Transformation::Box(BoundingBox_Base<double> const& p_box) const {
    return p_box.Transformed(_matrix);
}

Ray_Base<double> Transformation::Ray(Ray_Base<double> const& p_ray) const {
    return p_ray.Transformed(_matrix);
}

} // namespace Qor::Chart::Types
