#include "host/FrameDriver.h"

#include "framework/ogl/PushAttribScope.h"
#include "framework/qordebug/highrestimer.h"
#include "framework/utility/Scoped.h"
#include "framework/utility/Unscoped.h"
#include "host/Scene.h"
#include "host/TreeGuard.h"
#include "render/loops/UpdateLoop.h"
#include "render/loops/UpdateNodePathLoop.h"
#include "render/nodes/SelectionLists.h"

#include <utility>

namespace Qor::Chart::Host {

using namespace Ogl::Tokens;
using Render::DrawContext;
using Render::FrameStatistics;
using Render::RenderLoop;

namespace {

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

} // namespace

FrameDriver::FrameDriver(Scene& p_scene)
    : _scene(p_scene)
    , _view(p_scene)
    , _loops{RenderLoop(Render::LayerBase, DrawContext::DrawMode::Draw),
          RenderLoop(Render::LayerBase, DrawContext::DrawMode::Highlight),
          RenderLoop(Render::LayerOverlay, DrawContext::DrawMode::Draw),
          RenderLoop(Render::LayerOverlay, DrawContext::DrawMode::Highlight)} {}

void FrameDriver::Update() {
    _statistics.visited = 0;
    _statistics.updated = 0;
    _statistics.updateMilliseconds = 0;
    _statistics.pathMilliseconds = 0;
    _scene.Dispatcher().TakeUpdateRequest();
    GuardTree([&] {
        auto lists = Render::SelectionLists::Of(_scene.Registrar());
        if (lists)
            lists->Show();
        UpdateTree();
        if (!lists) // the first one may just have come
            lists = Render::SelectionLists::Of(_scene.Registrar());
        if (lists && lists->Show()) // on what has just come, and no longer for lists that have gone
            UpdateTree();
    });
    _scene.Dispatcher().DeliverEvents();
}

void FrameDriver::UpdateTree() {
    Core::Ptr<Render::Vis> const root = _scene.Visual();
    StopWatch watch;
    Render::UpdateContext const context = _scene.MakeUpdateContext();
    Render::UpdateLoop()(root, context, _statistics.visited, _statistics.updated);
    _statistics.updateMilliseconds += watch.Lap();
    Render::UpdateNodePathLoop()(root);
    _statistics.pathMilliseconds += watch.Lap();
}

void FrameDriver::Draw(Camera const& p_camera, Types::Viewport<0> const& p_viewport) {
    ++_statistics.frame;
    _statistics.passes = {};
    _statistics.finishMilliseconds = 0;
    _statistics.framesPerSecond = 0;
    _statistics.graphics = {};
    if (p_viewport.IsEmpty())
        return;
    _statistics.framesPerSecond = _lastFrame.framesPerSecond = _rate.Begin();

    Utility::Scoped<Ogl::Agl> agl{Utility::Unscoped<Ogl::Agl>(_scene.Graphics())};
    agl->ResetStatistics();
    agl->BeginFrame();
    StopWatch watch;
    try {
        GuardTree([&] { DrawPasses(p_camera, p_viewport); });
    } catch (...) {
        agl->EndFrame();
        throw;
    }
    watch.Lap();
    agl->EndFrame();
    _statistics.finishMilliseconds = watch.Lap();
    _statistics.graphics = agl->GetStatistics();
    _lastFrame = _statistics;
    _rate.End();
}

void FrameDriver::DrawPasses(Camera const& p_camera, Types::Viewport<0> const& p_viewport) {
    Ogl::PushAttribScope const saved(_scene.Graphics(), AGL_ALL_ATTRIB_BITS);
    DrawContext draw = _scene.MakeDrawContext(DrawContext::DrawMode::Draw);
    draw.SetFrameNumber(_statistics.frame);
    draw.SetLastFrame(_lastFrame.frame > 0 ? &_lastFrame : nullptr);
    draw.SetShowBounds(_showBounds);
    _view.Prepare(p_camera, p_viewport, draw);
    ClearTarget();
    DrawContext highlight(draw, DrawContext::DrawInfo{DrawContext::DrawMode::Highlight, draw.Flags()});

    RunPass(FrameStatistics::BaseDraw, draw);
    RunPass(FrameStatistics::BaseHighlight, highlight);
    _scene.Graphics().Clear(AGL_DEPTH_BUFFER_BIT);
    RunPass(FrameStatistics::OverlayDraw, draw);
    RunPass(FrameStatistics::OverlayHighlight, highlight);
}

void FrameDriver::ClearTarget() {
    Ogl::Agl& agl = _scene.Graphics();
    agl.ClearColor(_scene.Schema().clearColor);
    agl.ClearDepth(1.0);
    agl.ClearStencil(0);
    agl.Clear(AGL_COLOR_BUFFER_BIT | AGL_DEPTH_BUFFER_BIT | AGL_STENCIL_BUFFER_BIT);
}

void FrameDriver::RunPass(FrameStatistics::PassName p_pass, DrawContext& p_context) {
    StopWatch watch;
    RenderLoop& loop = _loops[p_pass];
    _view.Load(p_context);
    loop(_scene.Visual(), p_context);
    _statistics.passes[p_pass] = {loop.VisitedCount(), loop.DrawnCount(), watch.Lap()};
}

} // namespace Qor::Chart::Host
