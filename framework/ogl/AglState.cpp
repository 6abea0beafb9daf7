#include "framework/ogl/Agl.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

// What sets and reads the groups of the state.

namespace Qor::Chart::Ogl {

using namespace Tokens;

namespace {

constexpr std::size_t MaxForgottenTextures = 256;

bool IsOneOf(Token p_token, std::initializer_list<Token> p_tokens) {
    return std::find(p_tokens.begin(), p_tokens.end(), p_token) != p_tokens.end();
}

bool IsFace(Token p_token) {
    return IsOneOf(p_token, {AGL_FRONT, AGL_BACK, AGL_FRONT_AND_BACK});
}

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

Types::Vector4_Base<float> ToFloat(Agl::Vector4 const& p_vector) {
    return Types::Vector4_Base<float>(p_vector);
}

/// The colours of a material face that a parameter names.
void SetMaterialColor(MaterialFace& p_face, Token p_parameter, Types::Color4f const& p_color) {
    switch (p_parameter) {
    case AGL_AMBIENT:
        p_face.ambient = p_color;
        break;
    case AGL_DIFFUSE:
        p_face.diffuse = p_color;
        break;
    case AGL_AMBIENT_AND_DIFFUSE:
        p_face.ambient = p_color;
        p_face.diffuse = p_color;
        break;
    case AGL_SPECULAR:
        p_face.specular = p_color;
        break;
    default:
        p_face.emission = p_color;
        break;
    }
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
    case AGL_DEPTH_TEST:
        return EnableBit::DepthTest;
    case AGL_STENCIL_TEST:
        return EnableBit::StencilTest;
    case AGL_SCISSOR_TEST:
        return EnableBit::ScissorTest;
    case AGL_BLEND:
        return EnableBit::Blend;
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

LightState* Agl::FindLight(Token p_light) {
    if (!CheckOutside("Light")) {
        return nullptr;
    }
    if (p_light < AGL_LIGHT0 || p_light >= AGL_LIGHT0 + LightCount) {
        ErrorToken("Light", p_light);
        return nullptr;
    }
    return &_state.lights[p_light - AGL_LIGHT0];
}

void Agl::Light(Token p_light, Token p_parameter, Types::Color4f const& p_color) {
    LightState* const light = FindLight(p_light);
    if (light == nullptr) {
        return;
    }
    std::size_t const item = StateItem::Light0 + (p_light - AGL_LIGHT0);
    switch (p_parameter) {
    case AGL_AMBIENT:
        Assign(item, light->ambient, p_color);
        break;
    case AGL_DIFFUSE:
        Assign(item, light->diffuse, p_color);
        break;
    case AGL_SPECULAR:
        Assign(item, light->specular, p_color);
        break;
    default:
        ErrorToken("Light", p_parameter);
    }
}

void Agl::Light(Token p_light, Token p_parameter, QColor const& p_color) {
    Light(p_light, p_parameter, Types::Color4f(p_color));
}

void Agl::Light(Token p_light, Token p_parameter, Vector4 const& p_position) {
    LightState* const light = FindLight(p_light);
    if (light == nullptr) {
        return;
    }
    if (p_parameter != AGL_POSITION) {
        ErrorToken("Light", p_parameter);
        return;
    }
    Assign(StateItem::Light0 + (p_light - AGL_LIGHT0), light->position, ToFloat(_modelView.back() * p_position));
}

void Agl::Light(Token p_light, Token p_parameter, Vector3 const& p_direction) {
    LightState* const light = FindLight(p_light);
    if (light == nullptr) {
        return;
    }
    if (p_parameter != AGL_SPOT_DIRECTION) {
        ErrorToken("Light", p_parameter);
        return;
    }
    Types::Vector4_Base<float> const eye = ToFloat(_modelView.back() * Vector4(p_direction, 0));
    Assign(StateItem::Light0 + (p_light - AGL_LIGHT0), light->spotDirection, eye.XYZ());
}

void Agl::Light(Token p_light, Token p_parameter, float p_value) {
    LightState* const light = FindLight(p_light);
    if (light == nullptr) {
        return;
    }
    std::size_t const item = StateItem::Light0 + (p_light - AGL_LIGHT0);
    bool const isCutoff = p_parameter == AGL_SPOT_CUTOFF;
    bool const inRange = isCutoff ? (p_value >= 0 && p_value <= 90) || p_value == 180
                                  : p_value >= 0 && (p_parameter != AGL_SPOT_EXPONENT || p_value <= 128);
    if (!inRange) {
        Error("Light: the value is out of range (spot exponents run from 0 to 128, cutoffs from 0 to 90 or are 180, "
              "attenuations are not negative); nothing is changed.");
        return;
    }
    switch (p_parameter) {
    case AGL_SPOT_EXPONENT:
        Assign(item, light->spotExponent, p_value);
        break;
    case AGL_SPOT_CUTOFF:
        Assign(item, light->spotCutoff, p_value);
        break;
    case AGL_CONSTANT_ATTENUATION:
        Assign(item, light->constantAttenuation, p_value);
        break;
    case AGL_LINEAR_ATTENUATION:
        Assign(item, light->linearAttenuation, p_value);
        break;
    case AGL_QUADRATIC_ATTENUATION:
        Assign(item, light->quadraticAttenuation, p_value);
        break;
    default:
        ErrorToken("Light", p_parameter);
    }
}

void Agl::LightModel(Token p_parameter, Types::Color4f const& p_ambient) {
    if (!CheckOutside("LightModel")) {
        return;
    }
    if (p_parameter != AGL_LIGHT_MODEL_AMBIENT) {
        ErrorToken("LightModel", p_parameter);
        return;
    }
    Assign(StateItem::LightModel, _state.lightModel.ambient, p_ambient);
}

void Agl::LightModel(Token p_parameter, bool p_value) {
    if (!CheckOutside("LightModel")) {
        return;
    }
    switch (p_parameter) {
    case AGL_LIGHT_MODEL_LOCAL_VIEWER:
        Assign(StateItem::LightModel, _state.lightModel.localViewer, std::uint32_t(p_value));
        break;
    case AGL_LIGHT_MODEL_TWO_SIDE:
        Assign(StateItem::LightModel, _state.lightModel.twoSide, std::uint32_t(p_value));
        break;
    default:
        ErrorToken("LightModel", p_parameter);
    }
}

// Unlike other state, a material may change between Begin and End in OpenGL. Here it may not: vertices carry a colour, and
// AGL_COLOR_MATERIAL makes it the material's.
template <class Change>
void Agl::ChangeMaterial(Token p_face, Change const& p_change) {
    if (!CheckOutside("Material")) {
        return;
    }
    if (!IsFace(p_face)) {
        ErrorToken("Material", p_face);
        return;
    }
    Write(StateItem::Material);
    if (p_face != AGL_BACK) {
        p_change(_state.material.front);
    }
    if (p_face != AGL_FRONT) {
        p_change(_state.material.back);
    }
}

void Agl::Material(Token p_face, Token p_parameter, Types::Color4f const& p_color) {
    if (!IsOneOf(p_parameter, {AGL_AMBIENT, AGL_DIFFUSE, AGL_AMBIENT_AND_DIFFUSE, AGL_SPECULAR, AGL_EMISSION})) {
        ErrorToken("Material", p_parameter);
        return;
    }
    ChangeMaterial(p_face, [&](MaterialFace& p_material) { SetMaterialColor(p_material, p_parameter, p_color); });
}

void Agl::Material(Token p_face, Token p_parameter, QColor const& p_color) {
    Material(p_face, p_parameter, Types::Color4f(p_color));
}

void Agl::Material(Token p_face, Token p_parameter, float p_shininess) {
    if (p_parameter != AGL_SHININESS) {
        ErrorToken("Material", p_parameter);
        return;
    }
    if (!(p_shininess >= 0 && p_shininess <= 128)) {
        Error("Material: the shininess must lie between 0 and 128; nothing is changed.");
        return;
    }
    ChangeMaterial(p_face, [&](MaterialFace& p_material) { p_material.shininess = p_shininess; });
}

void Agl::ColorMaterial(Token p_face, Token p_parameter) {
    if (!CheckOutside("ColorMaterial")) {
        return;
    }
    bool const isColor =
        IsOneOf(p_parameter, {AGL_AMBIENT, AGL_DIFFUSE, AGL_AMBIENT_AND_DIFFUSE, AGL_SPECULAR, AGL_EMISSION});
    if (!IsFace(p_face) || !isColor) {
        ErrorToken("ColorMaterial", IsFace(p_face) ? p_parameter : p_face);
        return;
    }
    if (TracksColor()) {
        CommitColorMaterial();
    }
    Assign(StateItem::LightModel, _state.lightModel.colorMaterialFace, p_face);
    Assign(StateItem::LightModel, _state.lightModel.colorMaterialMode, p_parameter);
}

bool Agl::TracksColor() const {
    return _state.IsEnabled(EnableBit::ColorMaterial);
}

// While material colours follow the current colour, shaders read the colour of the draw, so that draws of many colours
// still merge. The material itself takes the last one when it stops to follow.
void Agl::CommitColorMaterial() {
    ChangeMaterial(_state.lightModel.colorMaterialFace, [this](MaterialFace& p_material) {
        SetMaterialColor(p_material, _state.lightModel.colorMaterialMode, _state.currentColor.color);
    });
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

void Agl::ActiveTexture(Token p_unit) {
    if (!CheckOutside("ActiveTexture")) {
        return;
    }
    if (p_unit < AGL_TEXTURE0 || p_unit >= AGL_TEXTURE0 + TextureUnitCount) {
        ErrorToken("ActiveTexture", p_unit);
        return;
    }
    Assign(StateItem::TextureSelect, _state.textureSelect.activeUnit, std::uint32_t(p_unit - AGL_TEXTURE0));
}

void Agl::BindTexture(std::shared_ptr<Texture const> const& p_texture) {
    if (!CheckOutside("BindTexture")) {
        return;
    }
    std::uint32_t const unit = _state.textureSelect.activeUnit;
    bool const isUsable = p_texture && p_texture->IsValid();
    if (isUsable) {
        if (_boundTextures.size() >= MaxForgottenTextures) {
            std::erase_if(_boundTextures, [](auto const& p_entry) { return p_entry.second.expired(); });
        }
        _boundTextures[p_texture->Id()] = p_texture;
    }
    Assign(StateItem::Texture0 + unit, _state.textures[unit].texture, isUsable ? p_texture->Id() : std::uint64_t(0));
}

void Agl::TexEnv(Token p_parameter, Token p_mode) {
    if (!CheckOutside("TexEnv")) {
        return;
    }
    bool const isMode = IsOneOf(p_mode, {AGL_MODULATE, AGL_REPLACE, AGL_DECAL, AGL_BLEND, AGL_ADD});
    if (p_parameter != AGL_TEXTURE_ENV_MODE || !isMode) {
        ErrorToken("TexEnv", isMode ? p_parameter : p_mode);
        return;
    }
    std::uint32_t const unit = _state.textureSelect.activeUnit;
    Assign(StateItem::Texture0 + unit, _state.textures[unit].environment, p_mode);
}

void Agl::TexEnv(Token p_parameter, Types::Color4f const& p_color) {
    if (!CheckOutside("TexEnv")) {
        return;
    }
    if (p_parameter != AGL_TEXTURE_ENV_COLOR) {
        ErrorToken("TexEnv", p_parameter);
        return;
    }
    std::uint32_t const unit = _state.textureSelect.activeUnit;
    Assign(StateItem::Texture0 + unit, _state.textures[unit].environmentColor, p_color);
}

} // namespace Qor::Chart::Ogl
