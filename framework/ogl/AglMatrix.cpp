#include "framework/ogl/Agl.h"

#include <algorithm>
#include <cmath>

// The matrix stacks and the projections.

namespace Qor::Chart::Ogl {

namespace {

/// Half of the opening angle of `Agl::Perspective` along the shorter side, as tangent and sine of 22.5 degrees.
constexpr double TanHalfAngle = 0.41421356237309503;
constexpr double SinHalfAngle = 0.38268343236508978;
/// How much nearer than the far plane the near plane may be: a depth buffer of 24 bits still tells depths apart.
constexpr double MinNearToFar = 1e-4;

struct Interval {
    double low = 0;
    double high = 0;
};

/// The depths of the corners of a box along the negative z axis.
Interval DepthsOf(Agl::Box const& p_box, Types::Matrix4 const& p_view) {
    Interval depths{std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};
    for (unsigned i = 0; i < 8; ++i) {
        Agl::Vector4 const corner = p_view * Agl::Vector4(p_box.Corner(i), 1);
        double const depth = corner.w != 0 ? -corner.z / corner.w : -corner.z;
        depths.low = std::fmin(depths.low, depth);
        depths.high = std::fmax(depths.high, depth);
    }
    return depths;
}

/// A point after a projective transformation.
std::optional<Agl::Vector3> Project(Types::Matrix4 const& p_matrix, Agl::Vector4 const& p_point) {
    Agl::Vector4 const result = p_matrix * p_point;
    Agl::Vector3 const point = result.XYZ() / result.w;
    return IsFinite(point) ? std::optional(point) : std::nullopt;
}

/// Where lines of sight come from, in the coordinates that the projection takes: the eye, or with w = 0 the direction to it.
std::array<float, 4> ViewerOf(Types::Matrix4 const& p_inverseProjection) {
    Agl::Vector4 viewer = p_inverseProjection * Agl::Vector4(0, 0, -1, 0);
    viewer /= std::max(Length(viewer.XYZ()), std::fabs(viewer.w));
    if (std::fabs(viewer.w) < 1e-12) {
        viewer.w = 0;
    } else if (viewer.w < 0) {
        viewer = -viewer;
    }
    if (!IsFinite(viewer)) {
        return ProjectionState().viewer;
    }
    return {static_cast<float>(viewer.x), static_cast<float>(viewer.y), static_cast<float>(viewer.z),
        static_cast<float>(viewer.w)};
}

} // namespace

std::vector<Types::Matrix4>& Agl::CurrentStack() {
    switch (_state.transform.matrixMode) {
    case Tokens::AGL_PROJECTION:
        return _projection;
    case Tokens::AGL_TEXTURE:
        return _textureMatrices[_state.textureSelect.activeUnit];
    default:
        return _modelView;
    }
}

std::uint32_t& Agl::CurrentStackDepth() {
    switch (_state.transform.matrixMode) {
    case Tokens::AGL_PROJECTION:
        return _depths.projection;
    case Tokens::AGL_TEXTURE:
        return _depths.texture[_state.textureSelect.activeUnit];
    default:
        return _depths.modelView;
    }
}

StateMask Agl::CurrentMatrixBit() const {
    switch (_state.transform.matrixMode) {
    case Tokens::AGL_PROJECTION:
        return StateBit(StateItem::Projection);
    case Tokens::AGL_TEXTURE:
        return StateBit(StateItem::TextureMatrix0 + _state.textureSelect.activeUnit);
    default:
        return 0;
    }
}

Types::Matrix4& Agl::WriteMatrix() {
    _dirty |= CurrentMatrixBit();
    return CurrentStack().back();
}

void Agl::PushOn(std::vector<Types::Matrix4>& p_stack, std::uint32_t& p_depth) {
    p_stack.push_back(p_stack.back());
    ++p_depth;
    ++_statistics.pushes;
}

void Agl::PopFrom(std::vector<Types::Matrix4>& p_stack, std::uint32_t& p_depth, StateMask p_dirty) {
    p_stack.pop_back();
    --p_depth;
    ++_statistics.pops;
    _dirty |= p_dirty;
}

void Agl::MatrixMode(Token p_mode) {
    if (!CheckOutside("MatrixMode")) {
        return;
    }
    if (p_mode != Tokens::AGL_MODELVIEW && p_mode != Tokens::AGL_PROJECTION && p_mode != Tokens::AGL_TEXTURE) {
        ErrorToken("MatrixMode", p_mode);
        return;
    }
    Write(StateItem::Transform);
    _state.transform.matrixMode = p_mode;
}

void Agl::LoadIdentity() {
    LoadMatrix(Types::Matrix4());
}

void Agl::LoadMatrix(Types::Matrix4 const& p_matrix) {
    if (CheckOutside("LoadMatrix")) {
        WriteMatrix() = p_matrix;
    }
}

void Agl::MultMatrix(Types::Matrix4 const& p_matrix) {
    if (CheckOutside("MultMatrix")) {
        WriteMatrix() *= p_matrix;
    }
}

void Agl::PushMatrix() {
    if (CheckOutside("PushMatrix")) {
        PushOn(CurrentStack(), CurrentStackDepth());
    }
}

void Agl::PopMatrix() {
    if (!CheckOutside("PopMatrix")) {
        return;
    }
    if (CurrentStack().size() == 1) {
        Error("PopMatrix: there is no PushMatrix in this matrix mode that it belongs to; nothing is changed.");
        return;
    }
    PopFrom(CurrentStack(), CurrentStackDepth(), CurrentMatrixBit());
}

void Agl::Translate(Vector3 const& p_offset) {
    if (!CheckOutside("Translate")) {
        return;
    }
    double* const m = WriteMatrix().Data();
    for (std::size_t row = 0; row < 4; ++row) {
        m[12 + row] += m[row] * p_offset.x + m[4 + row] * p_offset.y + m[8 + row] * p_offset.z;
    }
}

void Agl::Scale(Vector3 const& p_factors) {
    if (!CheckOutside("Scale")) {
        return;
    }
    double* const m = WriteMatrix().Data();
    for (std::size_t row = 0; row < 4; ++row) {
        m[row] *= p_factors.x;
        m[4 + row] *= p_factors.y;
        m[8 + row] *= p_factors.z;
    }
}

void Agl::Rotate(double p_degrees, Vector3 const& p_axis) {
    MultMatrix(Types::Matrix4::Rotation(p_degrees, p_axis));
}

Types::Matrix4 const& Agl::Get(Token p_matrix) const {
    switch (p_matrix) {
    case Tokens::AGL_PROJECTION_MATRIX:
        return _projection.back();
    case Tokens::AGL_TEXTURE_MATRIX:
        return _textureMatrices[_state.textureSelect.activeUnit].back();
    default:
        return _modelView.back();
    }
}

void Agl::Ortho(Types::Viewport<0> const& p_viewport, Box const& p_box, Types::Matrix4 const& p_camera) {
    MultMatrix(Fit(p_viewport, p_box, p_camera, false));
}

void Agl::Perspective(Types::Viewport<0> const& p_viewport, Box const& p_box, Types::Matrix4 const& p_camera) {
    MultMatrix(Fit(p_viewport, p_box, p_camera, true));
}

void Agl::Ortho2D(Types::Viewport<0> const& p_viewport) {
    double const width = p_viewport.width > 0 ? static_cast<double>(p_viewport.width) : 1.0;
    double const height = p_viewport.height > 0 ? static_cast<double>(p_viewport.height) : 1.0;
    MultMatrix(Types::Matrix4::Ortho(0, width, 0, height, -1, 1));
}

Types::Matrix4 Agl::Fit(
    Types::Viewport<0> const& p_viewport, Box const& p_box, Types::Matrix4 const& p_camera, bool p_perspective) {
    Box const box = p_box.IsDefined() ? p_box : Box(Vector3(-0.5, -0.5, -0.5), Vector3(0.5, 0.5, 0.5));
    Types::Matrix4 const camera = p_camera.IsFinite() ? p_camera : Types::Matrix4();
    double const diagonal = Length(box.Extents());
    double const radius = diagonal > 0 ? diagonal / 2 : 1.0;
    double const width = p_viewport.IsEmpty() ? 1.0 : static_cast<double>(p_viewport.width);
    double const height = p_viewport.IsEmpty() ? 1.0 : static_cast<double>(p_viewport.height);
    double const shorter = std::min(width, height);
    double const halfWidth = radius * width / shorter;
    double const halfHeight = radius * height / shorter;

    Types::Matrix4 view = camera * Types::Matrix4::Translation(-box.Center());
    if (p_perspective) {
        view = Types::Matrix4::Translation({0, 0, -radius / SinHalfAngle}) * view;
    }
    Interval const depths = DepthsOf(box, view);
    double const margin = 1e-3 * (depths.high - depths.low + radius);
    double const far = depths.high + margin;
    if (!p_perspective) {
        return Types::Matrix4::Ortho(-halfWidth, halfWidth, -halfHeight, halfHeight, depths.low - margin, far) * view;
    }
    double const usedFar = far > 0 ? far : radius;
    double const near = std::max(depths.low - margin, usedFar * MinNearToFar);
    double const scale = near * TanHalfAngle / radius;
    return Types::Matrix4::Frustum(
               -halfWidth * scale, halfWidth * scale, -halfHeight * scale, halfHeight * scale, near, usedFar) *
        view;
}

std::optional<Agl::Vector3> Agl::UnProject(Vector3 const& p_window, Types::Matrix4 const& p_modelView,
    Types::Matrix4 const& p_projection, Types::Viewport<0> const& p_viewport) {
    std::optional<Types::Matrix4> const inverse = (p_projection * p_modelView).Inverse();
    if (!inverse || p_viewport.IsEmpty()) {
        return std::nullopt;
    }
    Vector4 const device(
        (p_window.x - static_cast<double>(p_viewport.x)) / static_cast<double>(p_viewport.width) * 2 - 1,
        (p_window.y - static_cast<double>(p_viewport.y)) / static_cast<double>(p_viewport.height) * 2 - 1,
        p_window.z * 2 - 1, 1);
    return Project(*inverse, device);
}

// Floats hold seven digits. A scene far from the origin would jitter, so the middle of the view volume is taken as the
// origin of everything that is sent, wherever it is many times its own size away.
void Agl::ResolveProjection() {
    constexpr double farAway = 32;
    Types::Matrix4 const& projection = _projection.back();
    std::optional<Types::Matrix4> inverse = projection.Inverse();
    ProjectionState& state = _state.projection;
    state = {};
    Types::Matrix4 shifted = projection;
    if (inverse) {
        std::optional<Vector3> const center = Project(*inverse, {0, 0, 0, 1});
        std::optional<Vector3> const corner = Project(*inverse, {1, 1, 0, 1});
        if (center && corner && Length(*center) > farAway * Length(*corner - *center)) {
            state.origin = {center->x, center->y, center->z};
            shifted *= Types::Matrix4::Translation(*center);
            inverse = shifted.Inverse();
        }
    }
    std::transform(
        shifted.Data(), shifted.Data() + 16, state.matrix.begin(), [](double p) { return static_cast<float>(p); });
    if (inverse) {
        state.viewer = ViewerOf(*inverse);
    }
}

} // namespace Qor::Chart::Ogl
