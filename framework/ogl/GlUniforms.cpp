#include "framework/ogl/GlUniforms.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Qor::Chart::Ogl {

namespace {

Float4 Of(Types::Color4f const& p_color) {
    return {p_color.red, p_color.green, p_color.blue, p_color.alpha};
}

LightUniforms MakeLight(LightState const& p_light, std::array<double, 3> const& p_origin) {
    LightUniforms light;
    light.ambient = Of(p_light.ambient);
    light.diffuse = Of(p_light.diffuse);
    light.specular = Of(p_light.specular);
    auto const shifted = [&](float p_coordinate, std::size_t p_axis) {
        return static_cast<float>(
            static_cast<double>(p_coordinate) - p_origin[p_axis] * static_cast<double>(p_light.position.w));
    };
    light.position = {shifted(p_light.position.x, 0), shifted(p_light.position.y, 1), shifted(p_light.position.z, 2),
        p_light.position.w};
    Types::Vector3_Base<float> const direction = Normalized(p_light.spotDirection);
    bool const isSpot = p_light.spotCutoff != 180;
    float const cosine = isSpot ? std::cos(p_light.spotCutoff * std::numbers::pi_v<float> / 180) : -2;
    light.spot = {direction.x, direction.y, direction.z, cosine};
    light.attenuation = {
        p_light.constantAttenuation, p_light.linearAttenuation, p_light.quadraticAttenuation, p_light.spotExponent};
    return light;
}

MaterialUniforms MakeMaterial(MaterialFace const& p_face) {
    return {
        Of(p_face.ambient), Of(p_face.diffuse), Of(p_face.specular), Of(p_face.emission), {p_face.shininess, 0, 0, 0}};
}

/// The place of a constant among others.
template <std::size_t N>
std::uint32_t Place(std::array<Token, N> const& p_tokens, Token p_token) {
    return static_cast<std::uint32_t>(std::find(p_tokens.begin(), p_tokens.end(), p_token) - p_tokens.begin());
}

std::uint32_t Pack(CombinerState const& p_combiner) {
    using namespace Tokens;
    constexpr std::array<Token, 8> functions = {
        AGL_REPLACE, AGL_MODULATE, AGL_ADD, AGL_ADD_SIGNED, AGL_INTERPOLATE, AGL_SUBTRACT, AGL_DOT3_RGB, AGL_DOT3_RGBA};
    constexpr std::array<Token, 8> sources = {AGL_TEXTURE0, AGL_TEXTURE1, AGL_TEXTURE2, AGL_TEXTURE3, AGL_TEXTURE,
        AGL_CONSTANT, AGL_PRIMARY_COLOR, AGL_PREVIOUS};
    std::uint32_t bits = Place(functions, p_combiner.function);
    for (std::uint32_t i = 0; i < 3; ++i) {
        std::uint32_t const argument =
            Place(sources, p_combiner.sources[i]) | ((p_combiner.operands[i] - AGL_SRC_COLOR) << 3);
        bits |= argument << (3 + 5 * i);
    }
    std::uint32_t const scale = p_combiner.scale == 4 ? 2 : p_combiner.scale == 2 ? 1 : 0;
    return bits | (scale << 18);
}

/// Window depths run over the depth range, device depths from -1 to 1. The smallest step is that of 24 bits.
Float4 MakeOffset(State const& p_state) {
    constexpr float step = 1.0F / (1 << 24);
    float const range = p_state.viewport.farDepth - p_state.viewport.nearDepth;
    float const constant = range != 0 ? 2 * step * p_state.polygon.offsetUnits / range : 0;
    return {range < 0 ? -p_state.polygon.offsetFactor : p_state.polygon.offsetFactor, constant, 0, 0};
}

} // namespace

SceneUniforms MakeSceneUniforms(State const& p_state) {
    SceneUniforms scene;
    auto const& origin = p_state.projection.origin;
    scene.projection = p_state.projection.matrix;
    scene.viewer = p_state.projection.viewer;
    scene.eyePoint = {
        static_cast<float>(-origin[0]), static_cast<float>(-origin[1]), static_cast<float>(-origin[2]), 1};
    PixelRectangle const& viewport = p_state.viewport.rectangle;
    scene.viewport = {static_cast<float>(viewport.x), static_cast<float>(viewport.y),
        static_cast<float>(viewport.width), static_cast<float>(viewport.height)};
    for (std::size_t i = 0; i < ClipPlaneCount; ++i) {
        Types::Vector4_Base<double> const& plane = p_state.clipPlanes.planes[i];
        double const offset = plane.w + plane.x * origin[0] + plane.y * origin[1] + plane.z * origin[2];
        scene.clipPlanes[i] = {static_cast<float>(plane.x), static_cast<float>(plane.y), static_cast<float>(plane.z),
            static_cast<float>(offset)};
    }
    for (std::size_t i = 0; i < LightCount; ++i) {
        scene.lights[i] = MakeLight(p_state.lights[i], origin);
    }
    for (std::size_t i = 0; i < 32; ++i) {
        scene.stipple[i / 4][i % 4] = p_state.polygonStipple.rows[i];
    }
    return scene;
}

DrawUniforms MakeDrawUniforms(State const& p_state) {
    DrawUniforms draw;
    draw.materials = {MakeMaterial(p_state.material.front), MakeMaterial(p_state.material.back)};
    draw.sceneAmbient = Of(p_state.lightModel.ambient);
    draw.perspectiveRow = p_state.perspectiveRow.row;
    draw.sizes = {p_state.point.size, p_state.line.width, static_cast<float>(p_state.line.stippleFactor),
        static_cast<float>(p_state.line.stipplePattern)};
    draw.offset = MakeOffset(p_state);
    bool const tracks = p_state.IsEnabled(EnableBit::ColorMaterial);
    Token const face = p_state.lightModel.colorMaterialFace;
    draw.modes = {static_cast<std::int32_t>((p_state.enables & EnableBit::Lights) / EnableBit::Light0),
        static_cast<std::int32_t>(p_state.enables), static_cast<std::int32_t>(p_state.lightModel.localViewer),
        static_cast<std::int32_t>(p_state.lightModel.colorMaterialMode)};
    draw.colorFaces = {tracks && face != Tokens::AGL_BACK, tracks && face != Tokens::AGL_FRONT,
        static_cast<std::int32_t>((p_state.enables & EnableBit::ClipPlanes) / EnableBit::ClipPlane0), 0};
    return draw;
}

TextureUniforms MakeTextureUniforms(State const& p_state) {
    TextureUniforms textures;
    for (std::size_t i = 0; i < TextureUnitCount; ++i) {
        TextureUnitState const& unit = p_state.textures[i];
        textures.matrices[i] = p_state.textureMatrices[i].matrix;
        textures.environmentColors[i] = Of(unit.environmentColor);
        textures.environment[i] = p_state.IsTextured(i) ? static_cast<std::int32_t>(unit.environment) : 0;
        textures.combineRgb[i] = Pack(unit.combineRgb);
        textures.combineAlpha[i] = Pack(unit.combineAlpha);
    }
    return textures;
}

} // namespace Qor::Chart::Ogl
