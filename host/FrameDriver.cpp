#include "host/FrameDriver.h"

#include "framework/core/Exceptions.h"
#include "framework/model/Light.h"
#include "framework/ogl/PushAttribScope.h"
#include "framework/qordebug/highrestimer.h"
#include "framework/types/Color4f.h"
#include "framework/types/Vector4.h"
#include "framework/utility/Logger.h"
#include "framework/utility/Scoped.h"
#include "framework/utility/Unscoped.h"
#include "host/HostError.h"
#include "host/Scene.h"
#include "render/loops/UpdateLoop.h"
#include "render/loops/UpdateNodePathLoop.h"

#include <string>
#include <utility>

namespace Qor::Chart::Host {

using namespace Ogl::Tokens;
using Render::DrawContext;
using Render::RenderLoop;

namespace {

constexpr std::size_t MaxLights = 8;

class StopWatch {
public:
    /// Milliseconds since the last lap.
    double Lap() noexcept {
        std::uint64_t const now = qordebug::now();
        std::uint64_t const before = std::exchange(_last, now);
        return static_cast<double>(now - before) / 1e6;
    }

private:
    std::uint64_t _last = qordebug::now();
};

/// Gives what only a broken tree can throw as one sentence.
template <class Stage>
void Guarded(Stage const& p_stage) {
    try {
        p_stage();
    } catch (Core::CyclicDependencyFoundExcept const& error) {
        throw HostError(std::string("The scene contains itself: ") + error.what());
    } catch (Core::TreeTooDeepExcept const& error) {
        throw HostError(std::string("The scene cannot be shown: ") + error.what());
    }
}

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

FrameDriver::FrameDriver(Scene& p_scene)
    : _scene(p_scene)
    , _loops{RenderLoop(Render::LayerBase, DrawContext::DrawMode::Draw),
          RenderLoop(Render::LayerBase, DrawContext::DrawMode::Highlight),
          RenderLoop(Render::LayerOverlay, DrawContext::DrawMode::Draw),
          RenderLoop(Render::LayerOverlay, DrawContext::DrawMode::Highlight)} {}

void FrameDriver::Update() {
    _statistics.visited = 0;
    _statistics.updated = 0;
    Core::Ptr<Render::Vis> const root = _scene.Visual();
    _scene.Dispatcher().TakeUpdateRequest();
    Guarded([&] {
        StopWatch watch;
        Render::UpdateContext const context = _scene.MakeUpdateContext();
        Render::UpdateLoop()(root, context, _statistics.visited, _statistics.updated);
        _statistics.updateMilliseconds = watch.Lap();
        Render::UpdateNodePathLoop()(root);
        _statistics.pathMilliseconds = watch.Lap();
    });
    _scene.Dispatcher().DeliverEvents();
}

void FrameDriver::Draw(Camera const& p_camera, Types::Viewport<0> const& p_viewport) {
    ++_statistics.frame;
    _statistics.passes = {};
    _statistics.finishMilliseconds = 0;
    _statistics.graphics = {};
    if (p_viewport.IsEmpty())
        return;

    Utility::Scoped<Ogl::Agl> agl{Utility::Unscoped<Ogl::Agl>(_scene.Graphics())};
    agl->ResetStatistics();
    agl->BeginFrame();
    StopWatch watch;
    try {
        Guarded([&] { DrawPasses(p_camera, p_viewport); });
    } catch (...) {
        agl->EndFrame();
        throw;
    }
    watch.Lap();
    agl->EndFrame();
    _statistics.finishMilliseconds = watch.Lap();
    _statistics.graphics = agl->GetStatistics();
}

void FrameDriver::DrawPasses(Camera const& p_camera, Types::Viewport<0> const& p_viewport) {
    Ogl::PushAttribScope const saved(_scene.Graphics(), AGL_ALL_ATTRIB_BITS);
    DrawContext draw = _scene.MakeDrawContext(DrawContext::DrawMode::Draw);
    draw.SetFrameNumber(_statistics.frame);
    draw.SetShowBounds(_showBounds);
    PrepareView(p_camera, p_viewport, draw);
    LoadView(draw);
    ClearTarget();
    SetUpLights(draw);
    DrawContext highlight(draw, DrawContext::DrawInfo{DrawContext::DrawMode::Highlight, draw.Flags()});

    RunPass(FrameStatistics::BaseDraw, draw);
    RunPass(FrameStatistics::BaseHighlight, highlight);
    _scene.Graphics().Clear(AGL_DEPTH_BUFFER_BIT);
    RunPass(FrameStatistics::OverlayDraw, draw);
    RunPass(FrameStatistics::OverlayHighlight, highlight);
}

void FrameDriver::ClearTarget() {
    Ogl::Agl& agl = _scene.Graphics();
    agl.Disable(AGL_SCISSOR_TEST);
    agl.DepthMask(true);
    agl.ColorMask(true, true, true, true);
    agl.StencilMask(~std::uint32_t{0});
    agl.ClearColor(_scene.Schema().clearColor);
    agl.ClearDepth(1.0);
    agl.ClearStencil(0);
    agl.Clear(AGL_COLOR_BUFFER_BIT | AGL_DEPTH_BUFFER_BIT | AGL_STENCIL_BUFFER_BIT);
    agl.Enable(AGL_DEPTH_TEST);
    agl.DepthFunc(AGL_LEQUAL);
    agl.PointSize(_scene.Schema().pointSize);
    agl.LineWidth(_scene.Schema().lineWidth);
}

void FrameDriver::PrepareView(Camera const& p_camera, Types::Viewport<0> const& p_viewport, DrawContext& p_context) {
    Types::BoundingBox_Base<double> const box = _scene.Bounds().IsDefined() ? _scene.Bounds() : p_camera.FocusBox();
    Types::Matrix4 const camera = p_camera.Matrix(box);
    Ogl::Agl& agl = _scene.Graphics();
    agl.MatrixMode(AGL_PROJECTION);
    agl.LoadIdentity();
    if (p_camera.GetProjectionMode() == Render::ProjectionMode::Perspective)
        agl.Perspective(p_viewport, box, camera);
    else
        agl.Ortho(p_viewport, box, camera);
    _projection = agl.Get(AGL_PROJECTION_MATRIX);

    p_context.Viewport().Set(p_viewport);
    p_context.ModelView().Set(Types::Matrix4());
    p_context.Camera().Set(camera);
    p_context.Projection().Set(_projection);
    p_context.ProjectionMode().Set(p_camera.GetProjectionMode());
}

void FrameDriver::LoadView(DrawContext const& p_context) {
    Ogl::Agl& agl = _scene.Graphics();
    agl.Viewport(p_context.Viewport().Top());
    agl.MatrixMode(AGL_PROJECTION);
    agl.LoadMatrix(p_context.Projection().Top());
    agl.MatrixMode(AGL_MODELVIEW);
    agl.LoadMatrix(p_context.ModelView().Top());
}

// Without a light the shader of the scene lights by itself. Positions are scene coordinates, because the model-view matrix
// is the identity and the projection holds the whole view.
void FrameDriver::SetUpLights(DrawContext& p_context) {
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

void FrameDriver::RunPass(FrameStatistics::PassName p_pass, DrawContext& p_context) {
    StopWatch watch;
    RenderLoop& loop = _loops[p_pass];
    LoadView(p_context);
    loop(_scene.Visual(), p_context);
    _statistics.passes[p_pass] = {loop.VisitedCount(), loop.DrawnCount(), watch.Lap()};
}

} // namespace Qor::Chart::Host
