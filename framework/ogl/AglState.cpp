#include "framework/ogl/Agl.h"

#include "framework/ogl/TokenChecks.h"

#include <algorithm>
#include <cmath>

// What sets and reads the groups of the state, but for lights, materials and textures.

namespace Qor::Chart::Ogl {

using namespace Tokens;

namespace {

bool IsComparison(Token p_token) {
    return p_token >= AGL_NEVER && p_token <= AGL_ALWAYS;
}

bool IsBlendFactor(Token p_token) {
    return p_token == AGL_ZERO || p_token == AGL_ONE || (p_token >= AGL_SRC_COLOR && p_token <= AGL_SRC_ALPHA_SATURATE);
}

bool IsStencilOperation(Token p_token) {
    return IsOneOf(
        p_token, {AGL_KEEP, AGL_ZERO, AGL_REPLACE, AGL_INCR, AGL_DECR, AGL_INVERT, AGL_INCR_WRAP, AGL_DECR_WRAP});
}

/// The nearest whole number, far from any overflow; 0 for NaN.
std::int32_t Round(double p_value) {
    constexpr double limit = 1 << 28;
    return std::isnan(p_value) ? 0 : static_cast<std::int32_t>(std::floor(std::clamp(p_value, -limit, limit) + 0.5));
}

} // namespace

// Sides are rounded rather than lengths, so that neighbours leave no gap.
PixelRectangle Agl::RoundToPixels(Types::Viewport<0> const& p_rectangle) {
    PixelRectangle result;
    result.x = Round(static_cast<double>(p_rectangle.x));
    result.y = Round(static_cast<double>(p_rectangle.y));
    result.width = Round(static_cast<double>(p_rectangle.x) + static_cast<double>(p_rectangle.width)) - result.x;
    result.height = Round(static_cast<double>(p_rectangle.y) + static_cast<double>(p_rectangle.height)) - result.y;
    return result;
}

EnableBit::Type Agl::BitOf(Token p_capability) const {
    switch (p_capability) {
    case AGL_LIGHTING:
        return EnableBit::Lighting;
    case AGL_COLOR_MATERIAL:
        return EnableBit::ColorMaterial;
    case AGL_NORMALIZE:
        return EnableBit::Normalize;
    case AGL_RESCALE_NORMAL:
        return EnableBit::RescaleNormal;
    case AGL_CULL_FACE:
        return EnableBit::CullFace;
    case AGL_POLYGON_STIPPLE:
        return EnableBit::PolygonStipple;
    case AGL_POINT_SMOOTH:
        return EnableBit::PointSmooth;
    case AGL_LINE_SMOOTH:
        return EnableBit::LineSmooth;
    case AGL_LINE_STIPPLE:
        return EnableBit::LineStipple;
    case AGL_POLYGON_OFFSET_FILL:
        return EnableBit::OffsetFill;
    case AGL_POLYGON_OFFSET_LINE:
        return EnableBit::OffsetLine;
    case AGL_POLYGON_OFFSET_POINT:
        return EnableBit::OffsetPoint;
    case AGL_DEPTH_TEST:
        return EnableBit::DepthTest;
    case AGL_STENCIL_TEST:
        return EnableBit::StencilTest;
    case AGL_SCISSOR_TEST:
        return EnableBit::ScissorTest;
    case AGL_BLEND:
        return EnableBit::Blend;
    case AGL_TRANSPARENCY:
        return EnableBit::Transparency;
    case AGL_TEXTURE_2D:
        return EnableBit::Texture0 << _state.textureSelect.activeUnit;
    default:
        break;
    }
    if (p_capability >= AGL_LIGHT0 && p_capability < AGL_LIGHT0 + LightCount) {
        return EnableBit::Light0 << (p_capability - AGL_LIGHT0);
    }
    if (p_capability >= AGL_CLIP_PLANE0 && p_capability < AGL_CLIP_PLANE0 + ClipPlaneCount) {
        return EnableBit::ClipPlane0 << (p_capability - AGL_CLIP_PLANE0);
    }
    return 0;
}

void Agl::SetEnable(char const* p_operation, Token p_capability, bool p_on) {
    if (!CheckOutside(p_operation)) {
        return;
    }
    EnableBit::Type const bit = BitOf(p_capability);
    if (bit == 0) {
        ErrorToken(p_operation, p_capability);
        return;
    }
    if (_state.IsEnabled(bit) == p_on) {
        return;
    }
    if (bit == EnableBit::ColorMaterial && !p_on) {
        CommitColorMaterial();
    }
    SetEnables(bit, p_on);
}

void Agl::Enable(Token p_capability) {
    SetEnable("Enable", p_capability, true);
}

void Agl::Disable(Token p_capability) {
    SetEnable("Disable", p_capability, false);
}

bool Agl::IsEnabled(Token p_capability) const {
    return _state.IsEnabled(BitOf(p_capability));
}

void Agl::Viewport(Types::Viewport<0> const& p_viewport) {
    if (!CheckOutside("Viewport")) {
        return;
    }
    PixelRectangle const rectangle = RoundToPixels(p_viewport);
    if (rectangle.width < 0 || rectangle.height < 0) {
        Error("Viewport: width and height must not be negative; nothing is changed.");
        return;
    }
    Assign(StateItem::Viewport, _state.viewport.rectangle, rectangle);
}

void Agl::DepthRange(double p_near, double p_far) {
    if (!CheckOutside("DepthRange")) {
        return;
    }
    Assign(StateItem::Viewport, _state.viewport.nearDepth, static_cast<float>(std::clamp(p_near, 0.0, 1.0)));
    Assign(StateItem::Viewport, _state.viewport.farDepth, static_cast<float>(std::clamp(p_far, 0.0, 1.0)));
}

void Agl::ClearColor(Types::Color4f const& p_color) {
    if (CheckOutside("ClearColor")) {
        Assign(StateItem::ColorBuffer, _state.colorBuffer.clearColor, p_color);
    }
}

void Agl::ClearColor(QColor const& p_color) {
    ClearColor(Types::Color4f(p_color));
}

void Agl::ClearDepth(double p_depth) {
    if (CheckOutside("ClearDepth")) {
        Assign(StateItem::Depth, _state.depth.clearValue, static_cast<float>(std::clamp(p_depth, 0.0, 1.0)));
    }
}

void Agl::ClearStencil(int p_value) {
    if (CheckOutside("ClearStencil")) {
        Assign(StateItem::Stencil, _state.stencil.clearValue, std::int32_t(p_value));
    }
}

void Agl::PointSize(float p_pixels) {
    if (!CheckOutside("PointSize")) {
        return;
    }
    if (!(p_pixels > 0)) {
        Error("PointSize: the size must be greater than 0; nothing is changed.");
        return;
    }
    Assign(StateItem::Point, _state.point.size, p_pixels);
}

void Agl::LineWidth(float p_pixels) {
    if (!CheckOutside("LineWidth")) {
        return;
    }
    if (!(p_pixels > 0)) {
        Error("LineWidth: the width must be greater than 0; nothing is changed.");
        return;
    }
    Assign(StateItem::Line, _state.line.width, p_pixels);
}

void Agl::LineStipple(int p_factor, std::uint16_t p_pattern) {
    if (CheckOutside("LineStipple")) {
        Assign(StateItem::Line, _state.line.stippleFactor, static_cast<std::uint32_t>(std::clamp(p_factor, 1, 256)));
        Assign(StateItem::Line, _state.line.stipplePattern, std::uint32_t(p_pattern));
    }
}

void Agl::PolygonMode(Token p_face, Token p_mode) {
    if (!CheckOutside("PolygonMode")) {
        return;
    }
    if (!IsFace(p_face) || !IsOneOf(p_mode, {AGL_POINT, AGL_LINE, AGL_FILL})) {
        ErrorToken("PolygonMode", IsFace(p_face) ? p_mode : p_face);
        return;
    }
    if (p_face != AGL_BACK) {
        Assign(StateItem::Polygon, _state.polygon.frontMode, p_mode);
    }
    if (p_face != AGL_FRONT) {
        Assign(StateItem::Polygon, _state.polygon.backMode, p_mode);
    }
}

void Agl::PolygonStipple(std::array<std::uint32_t, 32> const& p_rows) {
    if (CheckOutside("PolygonStipple")) {
        Assign(StateItem::PolygonStipple, _state.polygonStipple.rows, p_rows);
    }
}

void Agl::PolygonStipple(unsigned char const* p_pattern) {
    std::array<std::uint32_t, 32> rows{};
    for (std::size_t i = 0; i < 128; ++i) {
        rows[i / 4] = (rows[i / 4] << 8) | p_pattern[i];
    }
    PolygonStipple(rows);
}

void Agl::PolygonOffset(float p_factor, float p_units) {
    if (!CheckOutside("PolygonOffset")) {
        return;
    }
    if (!std::isfinite(p_factor) || !std::isfinite(p_units)) {
        Error("PolygonOffset: factor and units must be finite; nothing is changed.");
        return;
    }
    Assign(StateItem::Polygon, _state.polygon.offsetFactor, p_factor);
    Assign(StateItem::Polygon, _state.polygon.offsetUnits, p_units);
}

void Agl::CullFace(Token p_face) {
    if (!CheckOutside("CullFace")) {
        return;
    }
    if (!IsFace(p_face)) {
        ErrorToken("CullFace", p_face);
        return;
    }
    Assign(StateItem::Polygon, _state.polygon.cullFace, p_face);
}

void Agl::FrontFace(Token p_winding) {
    if (!CheckOutside("FrontFace")) {
        return;
    }
    if (!IsOneOf(p_winding, {AGL_CW, AGL_CCW})) {
        ErrorToken("FrontFace", p_winding);
        return;
    }
    Assign(StateItem::Polygon, _state.polygon.frontFace, p_winding);
}

void Agl::ShadeModel(Token p_model) {
    if (!CheckOutside("ShadeModel")) {
        return;
    }
    if (!IsOneOf(p_model, {AGL_FLAT, AGL_SMOOTH})) {
        ErrorToken("ShadeModel", p_model);
        return;
    }
    Assign(StateItem::LightModel, _state.lightModel.shadeModel, p_model);
}

void Agl::BlendFunc(Token p_source, Token p_destination) {
    if (!CheckOutside("BlendFunc")) {
        return;
    }
    if (!IsBlendFactor(p_source) || !IsBlendFactor(p_destination)) {
        ErrorToken("BlendFunc", IsBlendFactor(p_source) ? p_destination : p_source);
        return;
    }
    Assign(StateItem::ColorBuffer, _state.colorBuffer.sourceFactor, p_source);
    Assign(StateItem::ColorBuffer, _state.colorBuffer.destinationFactor, p_destination);
}

void Agl::BlendEquation(Token p_equation) {
    if (!CheckOutside("BlendEquation")) {
        return;
    }
    if (!IsOneOf(p_equation, {AGL_FUNC_ADD, AGL_FUNC_SUBTRACT, AGL_FUNC_REVERSE_SUBTRACT, AGL_MIN, AGL_MAX})) {
        ErrorToken("BlendEquation", p_equation);
        return;
    }
    Assign(StateItem::ColorBuffer, _state.colorBuffer.equation, p_equation);
}

void Agl::ColorMask(bool p_red, bool p_green, bool p_blue, bool p_alpha) {
    if (CheckOutside("ColorMask")) {
        Assign(StateItem::ColorBuffer, _state.colorBuffer.mask, {p_red, p_green, p_blue, p_alpha});
    }
}

void Agl::DepthFunc(Token p_function) {
    if (!CheckOutside("DepthFunc")) {
        return;
    }
    if (!IsComparison(p_function)) {
        ErrorToken("DepthFunc", p_function);
        return;
    }
    Assign(StateItem::Depth, _state.depth.function, p_function);
}

void Agl::DepthMask(bool p_write) {
    if (CheckOutside("DepthMask")) {
        Assign(StateItem::Depth, _state.depth.mask, std::uint32_t(p_write));
    }
}

void Agl::StencilFunc(Token p_function, int p_reference, std::uint32_t p_mask) {
    if (!CheckOutside("StencilFunc")) {
        return;
    }
    if (!IsComparison(p_function)) {
        ErrorToken("StencilFunc", p_function);
        return;
    }
    Assign(StateItem::Stencil, _state.stencil.function, p_function);
    Assign(StateItem::Stencil, _state.stencil.reference, std::int32_t(p_reference));
    Assign(StateItem::Stencil, _state.stencil.valueMask, p_mask);
}

void Agl::StencilOp(Token p_fail, Token p_depthFail, Token p_depthPass) {
    if (!CheckOutside("StencilOp")) {
        return;
    }
    for (Token const operation : {p_fail, p_depthFail, p_depthPass}) {
        if (!IsStencilOperation(operation)) {
            ErrorToken("StencilOp", operation);
            return;
        }
    }
    Assign(StateItem::Stencil, _state.stencil.fail, p_fail);
    Assign(StateItem::Stencil, _state.stencil.depthFail, p_depthFail);
    Assign(StateItem::Stencil, _state.stencil.depthPass, p_depthPass);
}

void Agl::StencilMask(std::uint32_t p_mask) {
    if (CheckOutside("StencilMask")) {
        Assign(StateItem::Stencil, _state.stencil.writeMask, p_mask);
    }
}

void Agl::ClipPlane(Token p_plane, Vector4 const& p_equation) {
    if (!CheckOutside("ClipPlane")) {
        return;
    }
    if (p_plane < AGL_CLIP_PLANE0 || p_plane >= AGL_CLIP_PLANE0 + ClipPlaneCount) {
        ErrorToken("ClipPlane", p_plane);
        return;
    }
    std::optional<Types::Matrix4> const inverse = _modelView.back().Inverse();
    if (!inverse) {
        Error("ClipPlane: the model-view matrix has no inverse, so the plane is nowhere; nothing is changed.");
        return;
    }
    Assign(
        StateItem::ClipPlanes, _state.clipPlanes.planes[p_plane - AGL_CLIP_PLANE0], inverse->Transposed() * p_equation);
}

} // namespace Qor::Chart::Ogl
