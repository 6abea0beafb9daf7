#include "framework/types/Matrix4.h"

#include <glm/gtc/matrix_transform.hpp>
#include <glm/gtc/type_ptr.hpp>
#include <glm/mat4x4.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <ostream>
#include <utility>

namespace Qor::Chart::Types {

namespace {

glm::dmat4 ToGlm(Matrix4 const& p_matrix) {
    return glm::make_mat4(p_matrix.Data());
}

Matrix4 FromGlm(glm::dmat4 const& p_matrix) {
    return Matrix4::FromColumnMajor(glm::value_ptr(p_matrix));
}

glm::dvec3 ToGlm(Vector3_Base<double> const& p_vector) {
    return {p_vector.x, p_vector.y, p_vector.z};
}

Matrix4 FiniteOr(Matrix4 const& p_matrix, Matrix4 const& p_otherwise) {
    return p_matrix.IsFinite() ? p_matrix : p_otherwise;
}

/// The factor, a power of two, that brings the largest magnitude close to 1; 0 when all are zero.
double Equalizer(double p_largest) {
    if (p_largest == 0.0) {
        return 0.0;
    }
    int exponent = 0;
    std::frexp(p_largest, &exponent);
    return std::ldexp(1.0, std::clamp(-exponent, -1022, 1022));
}

/// Solves for the inverse of one matrix. Rows and columns are first brought to one magnitude, so that whether a pivot
/// counts as zero does not depend on units; then elimination with the largest pivot left.
class Inverter {
public:
    explicit Inverter(Matrix4 const& p_matrix) {
        for (int row = 0; row < 4; ++row) {
            for (int column = 0; column < 4; ++column) {
                _left[row][column] = p_matrix.At(row, column);
                _right[row][column] = row == column ? 1.0 : 0.0;
            }
            _pivotRow[row] = row;
        }
    }

    std::optional<Matrix4> Solve() {
        if (!Equalize()) {
            return std::nullopt;
        }
        for (int step = 0; step < 4; ++step) {
            if (!Eliminate()) {
                return std::nullopt;
            }
        }
        Matrix4 inverse;
        for (int column = 0; column < 4; ++column) {
            int const row = _pivotRow[column];
            for (int other = 0; other < 4; ++other) {
                inverse.Set(column, other, _right[row][other] * _rowFactor[other] * _columnFactor[column]);
            }
        }
        return inverse.IsFinite() ? std::optional(inverse) : std::nullopt;
    }

private:
    bool Equalize() {
        for (int row = 0; row < 4; ++row) {
            double largest = 0.0;
            for (int column = 0; column < 4; ++column) {
                largest = std::max(largest, std::abs(_left[row][column]));
            }
            _rowFactor[row] = Equalizer(largest);
            for (double& element : _left[row]) {
                element *= _rowFactor[row];
            }
        }
        for (int column = 0; column < 4; ++column) {
            double largest = 0.0;
            for (auto const& row : _left) {
                largest = std::max(largest, std::abs(row[column]));
            }
            _columnFactor[column] = Equalizer(largest);
            for (auto& row : _left) {
                row[column] *= _columnFactor[column];
            }
        }
        auto const usable = [](double p_factor) { return p_factor != 0.0; };
        return std::all_of(_rowFactor, _rowFactor + 4, usable) && std::all_of(_columnFactor, _columnFactor + 4, usable);
    }

    bool Eliminate() {
        constexpr double Negligible = 16 * std::numeric_limits<double>::epsilon();
        int pivotRow = -1;
        int pivotColumn = -1;
        double largest = Negligible;
        for (int row = 0; row < 4; ++row) {
            for (int column = 0; column < 4 && !_rowDone[row]; ++column) {
                if (!_columnDone[column] && std::abs(_left[row][column]) > largest) {
                    largest = std::abs(_left[row][column]);
                    pivotRow = row;
                    pivotColumn = column;
                }
            }
        }
        if (pivotRow < 0) {
            return false;
        }
        _rowDone[pivotRow] = true;
        _columnDone[pivotColumn] = true;
        _pivotRow[pivotColumn] = pivotRow;
        ScaleRow(pivotRow, _left[pivotRow][pivotColumn]);
        for (int row = 0; row < 4; ++row) {
            if (row != pivotRow && _left[row][pivotColumn] != 0.0) {
                SubtractRow(row, pivotRow, _left[row][pivotColumn]);
            }
        }
        return true;
    }

    void ScaleRow(int p_row, double p_divisor) {
        for (int column = 0; column < 4; ++column) {
            _left[p_row][column] /= p_divisor;
            _right[p_row][column] /= p_divisor;
        }
    }

    void SubtractRow(int p_row, int p_pivotRow, double p_factor) {
        for (int column = 0; column < 4; ++column) {
            _left[p_row][column] -= p_factor * _left[p_pivotRow][column];
            _right[p_row][column] -= p_factor * _right[p_pivotRow][column];
        }
    }

    double _left[4][4];
    double _right[4][4];
    double _rowFactor[4];
    double _columnFactor[4];
    bool _rowDone[4] = {};
    bool _columnDone[4] = {};
    int _pivotRow[4];
};

} // namespace

Matrix4 Matrix4::FromColumnMajor(double const* p_elements) {
    Matrix4 matrix;
    std::copy_n(p_elements, 16, matrix._elements.begin());
    return matrix;
}

Matrix4 Matrix4::FromColumnMajor(float const* p_elements) {
    Matrix4 matrix;
    std::copy_n(p_elements, 16, matrix._elements.begin());
    return matrix;
}

Matrix4 Matrix4::FromRowMajor(double const* p_elements) {
    return FromColumnMajor(p_elements).Transposed();
}

Matrix4 Matrix4::Translation(Vector3_Base<double> const& p_offset) {
    Matrix4 matrix;
    matrix.SetTranslationPart(p_offset);
    return matrix;
}

Matrix4 Matrix4::Scaling(Vector3_Base<double> const& p_factors) {
    Matrix4 matrix;
    matrix.Set(0, 0, p_factors.x);
    matrix.Set(1, 1, p_factors.y);
    matrix.Set(2, 2, p_factors.z);
    return matrix;
}

Matrix4 Matrix4::Scaling(double p_factor) {
    return Scaling({p_factor, p_factor, p_factor});
}

Matrix4 Matrix4::Rotation(double p_degrees, Vector3_Base<double> const& p_axis) {
    Vector3_Base<double> const axis = Normalized(p_axis);
    if (axis == Vector3_Base<double>() || !std::isfinite(p_degrees)) {
        return {};
    }
    return FromGlm(glm::rotate(glm::dmat4(1.0), glm::radians(p_degrees), ToGlm(axis)));
}

Matrix4 Matrix4::Ortho(double p_left, double p_right, double p_bottom, double p_top, double p_near, double p_far) {
    Matrix4 matrix;
    auto const axis = [&](int p_axis, double p_low, double p_high, double p_sign) {
        double const extent = p_high - p_low;
        double const factor = p_sign * 2.0 / extent;
        double const offset = -(p_high + p_low) / extent;
        if (extent != 0.0 && std::isfinite(factor) && std::isfinite(offset)) {
            matrix.Set(p_axis, p_axis, factor);
            matrix.Set(p_axis, 3, offset);
        }
    };
    axis(0, p_left, p_right, 1.0);
    axis(1, p_bottom, p_top, 1.0);
    axis(2, p_near, p_far, -1.0);
    return matrix;
}

Matrix4 Matrix4::Frustum(double p_left, double p_right, double p_bottom, double p_top, double p_near, double p_far) {
    if (!(p_near > 0.0) || !(p_far > p_near) || p_left == p_right || p_bottom == p_top) {
        return {};
    }
    return FiniteOr(FromGlm(glm::frustumRH_NO(p_left, p_right, p_bottom, p_top, p_near, p_far)), {});
}

Matrix4 Matrix4::Perspective(double p_fovY, double p_aspect, double p_near, double p_far) {
    if (!(p_fovY > 0.0) || !(p_fovY < 180.0) || !(p_aspect > 0.0)) {
        return {};
    }
    double const top = p_near * std::tan(glm::radians(p_fovY) / 2.0);
    return Frustum(-top * p_aspect, top * p_aspect, -top, top, p_near, p_far);
}

Matrix4 Matrix4::LookAt(
    Vector3_Base<double> const& p_eye, Vector3_Base<double> const& p_center, Vector3_Base<double> const& p_up) {
    Vector3_Base<double> const forward = Normalized(p_center - p_eye);
    Vector3_Base<double> const side = Normalized(Cross(forward, Normalized(p_up)));
    if (side == Vector3_Base<double>()) {
        return Translation(-p_eye);
    }
    return FromGlm(glm::lookAtRH(ToGlm(p_eye), ToGlm(p_center), ToGlm(p_up)));
}

Matrix4& Matrix4::operator*=(Matrix4 const& p_right) {
    // In place of glm's, which the compiler does not take four rows at a time.
    std::array<double, 16> product;
    double const* const left = Data();
    for (std::size_t column = 0; column < 16; column += 4) {
        double const* const right = p_right.Data() + column;
        for (std::size_t row = 0; row < 4; ++row) {
            product[column + row] =
                left[row] * right[0] + left[4 + row] * right[1] + left[8 + row] * right[2] + left[12 + row] * right[3];
        }
    }
    _elements = product;
    return *this;
}

Vector4_Base<double> Matrix4::operator*(Vector4_Base<double> const& p_vector) const {
    auto const row = [&](int p_row) {
        return At(p_row, 0) * p_vector.x + At(p_row, 1) * p_vector.y + At(p_row, 2) * p_vector.z +
            At(p_row, 3) * p_vector.w;
    };
    return {row(0), row(1), row(2), row(3)};
}

Matrix4 Matrix4::Transposed() const {
    return FromGlm(glm::transpose(ToGlm(*this)));
}

double Matrix4::Determinant() const {
    return glm::determinant(ToGlm(*this));
}

std::optional<Matrix4> Matrix4::Inverse() const {
    if (!IsFinite()) {
        return std::nullopt;
    }
    if (!IsAffine()) {
        return Inverter(*this).Solve();
    }
    // A translation says nothing about whether there is an inverse, and would only cost precision.
    Matrix4 linear = *this;
    linear.SetTranslationPart({});
    auto inverse = Inverter(linear).Solve();
    if (inverse) {
        inverse->SetTranslationPart(-(*inverse * Vector4_Base<double>(TranslationPart(), 0.0)).XYZ());
    }
    return inverse && inverse->IsFinite() ? inverse : std::nullopt;
}

bool Matrix4::IsIdentity() const {
    return *this == Matrix4();
}

bool Matrix4::IsFinite() const {
    return std::all_of(_elements.begin(), _elements.end(), [](double p_element) { return std::isfinite(p_element); });
}

std::ostream& operator<<(std::ostream& p_stream, Matrix4 const& p_matrix) {
    p_stream << '[';
    for (int row = 0; row < 4; ++row) {
        p_stream << (row == 0 ? "" : "; ");
        for (int column = 0; column < 4; ++column) {
            p_stream << (column == 0 ? "" : " ") << p_matrix.At(row, column);
        }
    }
    return p_stream << ']';
}

} // namespace Qor::Chart::Types
