#include "host/View.h"

#include "framework/model/Light.h"
#include "framework/ogl/Agl.h"
#include "framework/types/Vector4.h"
#include "framework/utility/Logger.h"
#include "host/Scene.h"

#include <string>
#include <utility>
#include <vector>

namespace Qor::Chart::Host {

using namespace Ogl::Tokens;
using Render::DrawContext;

namespace {

constexpr std::size_t MaxLights = 8;

void SetUpLight(Ogl::Agl& p_agl, Ogl::Token p_name, Model::Light const& p_light) {
    using Kind = Model::Light::Kind;
    bool const isDirectional = p_light.GetKind() == Kind::Directional;
    p_agl.Light(p_name, AGL_AMBIENT, p_light.Ambient());
    p_agl.Light(p_name, AGL_DIFFUSE, p_light.Diffuse());
    p_agl.Light(p_name, AGL_SPECULAR, p_light.Specular());
    p_agl.Light(p_name, AGL_POSITION,
        isDirectional ? Types::Vector4_Base<double>(-p_light.Direction(), 0)
                      : Types::Vector4_Base<double>(p_light.Position(), 1));
    Types::Vector3_Base<double> const fading =
        isDirectional ? Types::Vector3_Base<double>(1, 0, 0) : p_light.Attenuation();
    p_agl.Light(p_name, AGL_CONSTANT_ATTENUATION, static_cast<float>(fading.x));
    p_agl.Light(p_name, AGL_LINEAR_ATTENUATION, static_cast<float>(fading.y));
    p_agl.Light(p_name, AGL_QUADRATIC_ATTENUATION, static_cast<float>(fading.z));
    bool const isSpot = p_light.GetKind() == Kind::Spot;
    if (isSpot)
        p_agl.Light(p_name, AGL_SPOT_DIRECTION, p_light.Direction());
    p_agl.Light(p_name, AGL_SPOT_CUTOFF, isSpot ? static_cast<float>(p_light.SpotCutoff()) : 180.0F);
    p_agl.Light(p_name, AGL_SPOT_EXPONENT, isSpot ? static_cast<float>(p_light.SpotExponent()) : 0.0F);
    p_agl.Enable(p_name);
}

} // namespace

void View::Prepare(Camera const& p_camera, Types::Viewport<0> const& p_window, DrawContext& p_context) {
    SetUpProjection(p_camera, p_window, p_context);
    Load(p_context);
    SetUpDefaults();
    SetUpLights(p_context);
}

void View::Load(DrawContext const& p_context) const {
    Ogl::Agl& agl = _scene.Graphics();
    agl.Viewport(p_context.Viewport().Top());
    agl.MatrixMode(AGL_PROJECTION);
    agl.LoadMatrix(p_context.Projection().Top());
    agl.MatrixMode(AGL_MODELVIEW);
    agl.LoadMatrix(p_context.ModelView().Top());
}

void View::SetUpProjection(Camera const& p_camera, Types::Viewport<0> const& p_window, DrawContext& p_context) {
    Types::BoundingBox_Base<double> const box = _scene.Bounds().IsDefined() ? _scene.Bounds() : p_camera.FocusBox();
    Types::Matrix4 const camera = p_camera.Matrix(box);
    Ogl::Agl& agl = _scene.Graphics();
    agl.MatrixMode(AGL_PROJECTION);
    agl.LoadIdentity();
    if (p_camera.GetProjectionMode() == Render::ProjectionMode::Perspective)
        agl.Perspective(p_window, box, camera);
    else
        agl.Ortho(p_window, box, camera);
    _projection = agl.Get(AGL_PROJECTION_MATRIX);

    p_context.Viewport().Set(p_window);
    p_context.ModelView().Set(Types::Matrix4());
    p_context.Camera().Set(camera);
    p_context.Projection().Set(_projection);
    p_context.ProjectionMode().Set(p_camera.GetProjectionMode());
}

void View::SetUpDefaults() const {
    Ogl::Agl& agl = _scene.Graphics();
    agl.Disable(AGL_SCISSOR_TEST);
    agl.DepthMask(true);
    agl.ColorMask(true, true, true, true);
    agl.StencilMask(~std::uint32_t{0});
    agl.Enable(AGL_DEPTH_TEST);
    agl.DepthFunc(AGL_LEQUAL);
    agl.PointSize(_scene.Schema().pointSize);
    agl.LineWidth(_scene.Schema().lineWidth);
}

// Without a light the shader of the scene lights by itself. Positions are scene coordinates, because the model-view matrix
// is the identity and the projection holds the whole view.
void View::SetUpLights(DrawContext& p_context) {
    Ogl::Agl& agl = _scene.Graphics();
    std::vector<Core::Ptr<Model::Light>> lights = _scene.Lights();
    if (lights.size() > MaxLights) {
        if (!_hasReportedLights)
            Utility::GetLogger().warning("The scene has " + std::to_string(lights.size()) +
                " lights; only the first 8 of the tree shine. Disable those that are not needed.");
        _hasReportedLights = true;
        lights.resize(MaxLights);
    }
    if (lights.empty())
        return;
    DrawContext::LightList inForce;
    for (Core::Ptr<Model::Light> const& light : lights) {
        SetUpLight(agl, AGL_LIGHT0 + static_cast<Ogl::Token>(inForce.size()), *light);
        inForce.emplace_back(light);
    }
    agl.Enable(AGL_LIGHTING);
    p_context.LightCount().Set(static_cast<std::uint32_t>(inForce.size()));
    p_context.Lights().Set(std::move(inForce));
}

} // namespace Qor::Chart::Host
