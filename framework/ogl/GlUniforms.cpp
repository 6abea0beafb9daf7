#include "framework/ogl/GlUniforms.h"

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
    for (std::size_t i = 0; i < TextureUnitCount; ++i) {
        scene.textureMatrices[i] = p_state.textureMatrices[i].matrix;
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
    draw.sizes = {p_state.point.size, p_state.line.width, 0, 0};
    bool const tracks = p_state.IsEnabled(EnableBit::ColorMaterial);
    Token const face = p_state.lightModel.colorMaterialFace;
    draw.modes = {static_cast<std::int32_t>((p_state.enables & EnableBit::Lights) / EnableBit::Light0),
        static_cast<std::int32_t>(p_state.enables), static_cast<std::int32_t>(p_state.lightModel.localViewer),
        static_cast<std::int32_t>(p_state.lightModel.colorMaterialMode)};
    draw.colorFaces = {tracks && face != Tokens::AGL_BACK, tracks && face != Tokens::AGL_FRONT,
        static_cast<std::int32_t>((p_state.enables & EnableBit::ClipPlanes) / EnableBit::ClipPlane0), 0};
    draw.environment = {};
    for (std::size_t i = 0; i < TextureUnitCount; ++i) {
        bool const isOn = p_state.IsEnabled(EnableBit::Texture0 << i) && p_state.textures[i].texture != 0;
        draw.environment[i] = isOn ? static_cast<std::int32_t>(p_state.textures[i].environment) : 0;
        draw.environmentColors[i] = Of(p_state.textures[i].environmentColor);
    }
    return draw;
}

} // namespace Qor::Chart::Ogl
