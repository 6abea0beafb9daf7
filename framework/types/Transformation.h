#pragma once

#include "framework/Export.h"
#include "framework/types/BoundingBox.h"
#include "framework/types/Matrix4.h"
#include "framework/types/Ray.h"
#include "framework/types/Vector3.h"

namespace Qor::Chart::Types {

/// Applies a matrix to what lives in space. Points are divided by their resulting w, unless it is 0; directions are not
/// moved; normals stay perpendicular to their surface under shears and mirrors.
class QOR_FRAMEWORK_API Transformation {
public:
    /// The identity.
    Transformation() = default;
    explicit Transformation(Matrix4 const& p_matrix);

    Matrix4 const& Matrix() const { return _matrix; }

    Vector3_Base<double> Point(Vector3_Base<double> const& p_point) const;
    Vector3_Base<double> Direction(Vector3_Base<double> const& p_direction) const;
    /// A normal of length 1, whatever the length of the argument; zero where the matrix leaves no normal.
    Vector3_Base<double> Normal(Vector3_Base<double> const& p_normal) const;
    BoundingBox_Base<double> Box(BoundingBox_Base<double> const& p_box) const;
    Ray_Base<double> Ray(Ray_Base<double> const& p_ray) const;

    Vector3_Base<double> operator()(Vector3_Base<double> const& p_point) const { return Point(p_point); }

private:
    Matrix4 _matrix;
};

} // namespace Qor::Chart::Types
