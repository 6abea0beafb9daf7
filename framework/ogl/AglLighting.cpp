#include "framework/ogl/Agl.h"

#include "framework/ogl/TokenChecks.h"

// Lights and materials.

namespace Qor::Chart::Ogl {

using namespace Tokens;

namespace {

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

} // namespace Qor::Chart::Ogl
