#pragma once

#include "framework/Export.h"
#include "framework/types/Vector3.h"
#include "framework/types/Vector4.h"

#include <array>
#include <cstddef>
#include <iosfwd>
#include <optional>

namespace Qor::Chart::Types {

/// A 4 by 4 matrix of doubles in the layout of OpenGL: columns one after the other, vectors as columns on the right,
/// so that in A * B the transformation B comes first. Default-constructed it is the identity. A plain value of 128
/// bytes; no operation throws.
class QOR_FRAMEWORK_API Matrix4 {
public:
    constexpr Matrix4() = default;

    /// Takes sixteen numbers, columns one after the other.
    static Matrix4 FromColumnMajor(double const* p_elements);
    static Matrix4 FromColumnMajor(float const* p_elements);
    /// Takes sixteen numbers, rows one after the other.
    static Matrix4 FromRowMajor(double const* p_elements);

    static Matrix4 Translation(Vector3_Base<double> const& p_offset);
    static Matrix4 Scaling(Vector3_Base<double> const& p_factors);
    static Matrix4 Scaling(double p_factor);
    /// Rotation by p_degrees around p_axis through the origin, counter-clockwise when the axis points at the viewer.
    /// An axis without a direction gives the identity.
    static Matrix4 Rotation(double p_degrees, Vector3_Base<double> const& p_axis);

    /// Parallel projection of the box onto the cube of normalised device coordinates, as OpenGL's glOrtho: p_near and
    /// p_far are distances along the negative z axis. An empty interval gives the identity for its axis.
    static Matrix4 Ortho(double p_left, double p_right, double p_bottom, double p_top, double p_near, double p_far);
    /// Perspective projection as OpenGL's glFrustum, with 0 < p_near < p_far. Unusable arguments give the identity.
    static Matrix4 Frustum(double p_left, double p_right, double p_bottom, double p_top, double p_near, double p_far);
    /// Symmetric perspective projection, p_fovY being the full vertical angle in degrees and p_aspect width to height.
    static Matrix4 Perspective(double p_fovY, double p_aspect, double p_near, double p_far);
    /// View transformation of an eye at p_eye that looks at p_center. When the three arguments name no direction the
    /// result is the translation of p_eye to the origin.
    static Matrix4 LookAt(
        Vector3_Base<double> const& p_eye, Vector3_Base<double> const& p_center, Vector3_Base<double> const& p_up);

    /// Multiplies on the right: what is applied to a vector first is p_right.
    Matrix4& operator*=(Matrix4 const& p_right);
    friend Matrix4 operator*(Matrix4 p_left, Matrix4 const& p_right) { return p_left *= p_right; }
    Vector4_Base<double> operator*(Vector4_Base<double> const& p_vector) const;

    constexpr bool operator==(Matrix4 const&) const = default;

    constexpr double const* Data() const { return _elements.data(); }
    constexpr double* Data() { return _elements.data(); }
    /// The element in a row and a column, both 0 to 3 (other indices are undefined).
    constexpr double At(int p_row, int p_column) const { return _elements[Index(p_row, p_column)]; }
    constexpr void Set(int p_row, int p_column, double p_value) { _elements[Index(p_row, p_column)] = p_value; }
    /// The fourth column without its last element: where the origin goes.
    constexpr Vector3_Base<double> TranslationPart() const { return {_elements[12], _elements[13], _elements[14]}; }
    constexpr void SetTranslationPart(Vector3_Base<double> const& p_offset) {
        Set(0, 3, p_offset.x);
        Set(1, 3, p_offset.y);
        Set(2, 3, p_offset.z);
    }

    Matrix4 Transposed() const;
    double Determinant() const;
    /// The inverse, or nothing when the matrix is singular to working precision or has an element that is not finite.
    /// The test is independent of the matrix's scale: a uniform scaling by 1e-30 can be inverted.
    std::optional<Matrix4> Inverse() const;

    bool IsIdentity() const;
    bool IsFinite() const;
    /// True when the last row is (0, 0, 0, 1): the matrix maps parallel lines to parallel lines.
    constexpr bool IsAffine() const {
        return _elements[3] == 0.0 && _elements[7] == 0.0 && _elements[11] == 0.0 && _elements[15] == 1.0;
    }

private:
    static constexpr std::size_t Index(int p_row, int p_column) {
        return static_cast<std::size_t>(p_column) * 4 + static_cast<std::size_t>(p_row);
    }

    std::array<double, 16> _elements{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
};

/// Writes the four rows as "[a b c d; e f g h; i j k l; m n o p]".
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, Matrix4 const& p_matrix);

} // namespace Qor::Chart::Types
