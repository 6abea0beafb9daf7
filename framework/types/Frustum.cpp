#include "framework/types/Frustum.h"

#include "framework/types/Matrix4.h"

#include <algorithm>
#include <ostream>

namespace Qor::Chart::Types {

namespace {

Vector4_Base<double> Row(Matrix4 const& p_matrix, int p_row) {
    return {p_matrix.At(p_row, 0), p_matrix.At(p_row, 1), p_matrix.At(p_row, 2), p_matrix.At(p_row, 3)};
}

/// The plane with a normal of length 1. A plane without a direction bounds nothing: an infinite far side is one.
Vector4_Base<double> Scaled(Vector4_Base<double> const& p_plane) {
    double const length = Length(p_plane.XYZ());
    return length > 0.0 ? p_plane / length : Vector4_Base<double>();
}

template <class T>
T Distance(Vector4_Base<T> const& p_plane, Vector3_Base<T> const& p_point) {
    return Dot(p_plane.XYZ(), p_point) + p_plane.w;
}

/// The corner of the box that lies furthest along the direction.
template <class T>
Vector3_Base<T> Furthest(BoundingBox_Base<T> const& p_box, Vector3_Base<T> const& p_direction) {
    return p_box.Corner(
        (p_direction.x >= 0 ? 1U : 0U) | (p_direction.y >= 0 ? 2U : 0U) | (p_direction.z >= 0 ? 4U : 0U));
}

} // namespace

template <class T>
Matrix4 Frustum_Base<T>::PickMatrix(Viewport<0> const& p_rectangle, Viewport<0> const& p_viewport) {
    if (p_rectangle.IsEmpty() || p_viewport.IsEmpty()) {
        return {};
    }
    double const width = p_rectangle.width;
    double const height = p_rectangle.height;
    double const centerX = p_rectangle.x + width / 2.0;
    double const centerY = p_rectangle.y + height / 2.0;
    Matrix4 matrix;
    matrix.Set(0, 0, p_viewport.width / width);
    matrix.Set(1, 1, p_viewport.height / height);
    matrix.Set(0, 3, (p_viewport.width - 2.0 * (centerX - p_viewport.x)) / width);
    matrix.Set(1, 3, (p_viewport.height - 2.0 * (centerY - p_viewport.y)) / height);
    return matrix;
}

template <class T>
Frustum_Base<T>::Frustum_Base(Viewport<0> const& p_rectangle, Matrix4 const& p_modelView, Matrix4 const& p_projection,
    Viewport<0> const& p_viewport) {
    if (p_rectangle.IsEmpty() || p_viewport.IsEmpty()) {
        return;
    }
    Matrix4 const clip = PickMatrix(p_rectangle, p_viewport) * p_projection * p_modelView;
    if (!clip.IsFinite()) {
        return;
    }
    Vector4_Base<double> const w = Row(clip, 3);
    for (int axis = 0; axis < 3; ++axis) {
        auto const side = static_cast<std::size_t>(axis) * 2;
        _planes[side] = Vector4_Base<T>(Scaled(w + Row(clip, axis)));
        _planes[side + 1] = Vector4_Base<T>(Scaled(w - Row(clip, axis)));
    }
    _defined = true;
}

template <class T>
bool Frustum_Base<T>::Contains(Vector3_Base<T> const& p_point) const {
    return _defined && std::all_of(_planes.begin(), _planes.end(), [&](auto const& p_plane) {
        return Distance(p_plane, p_point) >= T(0);
    });
}

template <class T>
bool Frustum_Base<T>::MayIntersect(BoundingBox_Base<T> const& p_box) const {
    return _defined && p_box.IsDefined() && std::all_of(_planes.begin(), _planes.end(), [&](auto const& p_plane) {
        return Distance(p_plane, Furthest(p_box, p_plane.XYZ())) >= T(0);
    });
}

template <class T>
bool Frustum_Base<T>::Contains(BoundingBox_Base<T> const& p_box) const {
    return _defined && p_box.IsDefined() && std::all_of(_planes.begin(), _planes.end(), [&](auto const& p_plane) {
        return Distance(p_plane, Furthest(p_box, -p_plane.XYZ())) >= T(0);
    });
}

template <class T>
std::ostream& operator<<(std::ostream& p_stream, Frustum_Base<T> const& p_frustum) {
    using Side = typename Frustum_Base<T>::Side;
    if (!p_frustum.IsDefined()) {
        return p_stream << "[undefined]";
    }
    return p_stream << "[left " << p_frustum.Plane(Side::Left) << ", right " << p_frustum.Plane(Side::Right)
                    << ", bottom " << p_frustum.Plane(Side::Bottom) << ", top " << p_frustum.Plane(Side::Top)
                    << ", near " << p_frustum.Plane(Side::Near) << ", far " << p_frustum.Plane(Side::Far) << ']';
}

template class Frustum_Base<float>;
template class Frustum_Base<double>;
template std::ostream& operator<<(std::ostream&, Frustum_Base<float> const&);
template std::ostream& operator<<(std::ostream&, Frustum_Base<double> const&);

} // namespace Qor::Chart::Types
