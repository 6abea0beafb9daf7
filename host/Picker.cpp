#include "host/Picker.h"

#include "framework/ogl/PushAttribScope.h"
#include "host/Scene.h"
#include "host/TreeGuard.h"
#include "render/pick/HitBoxLoop.h"
#include "render/pick/HitTopLoop.h"

namespace Qor::Chart::Host {

using Render::DrawContext;
using Render::HitRecord;

namespace {

using namespace Ogl::Tokens;

/// Brings the matrices that a view loads back at its end. The matrix mode is among the attributes.
class MatrixScope {
public:
    explicit MatrixScope(Ogl::Agl& p_agl)
        : _agl(p_agl), _projection(p_agl.Get(AGL_PROJECTION_MATRIX)), _modelView(p_agl.Get(AGL_MODELVIEW_MATRIX)) {}
    ~MatrixScope() {
        _agl.MatrixMode(AGL_PROJECTION);
        _agl.LoadMatrix(_projection);
        _agl.MatrixMode(AGL_MODELVIEW);
        _agl.LoadMatrix(_modelView);
    }
    MatrixScope(MatrixScope const&) = delete;
    MatrixScope& operator=(MatrixScope const&) = delete;

private:
    Ogl::Agl& _agl;
    Types::Matrix4 _projection;
    Types::Matrix4 _modelView;
};

} // namespace

Picker::Picker(Scene& p_scene) : _scene(p_scene), _view(p_scene) {}

std::vector<HitRecord> Picker::Pick(Camera const& p_camera, Types::Viewport<0> const& p_window,
    Render::PickPoint const& p_point, Render::Layer p_layers) {
    return Run(p_camera, p_window, [&](DrawContext& p_context) {
        return Render::HitTopLoop()(_scene.Visual(), p_context, p_point, _visited, _tested, p_layers);
    });
}

std::vector<HitRecord> Picker::Pick(
    Camera const& p_camera, Types::Viewport<0> const& p_window, Render::BoxSelection const& p_box) {
    return Run(p_camera, p_window, [&](DrawContext& p_context) {
        return Render::HitBoxLoop()(_scene.Visual(), p_context, p_box, _visited, _tested);
    });
}

// The mode is that of drawing: in highlight mode panes would draw their decoration.
template <class Loop>
std::vector<HitRecord> Picker::Run(Camera const& p_camera, Types::Viewport<0> const& p_window, Loop const& p_loop) {
    _visited = 0;
    _tested = 0;
    std::vector<HitRecord> hits;
    if (p_window.IsEmpty())
        return hits;
    Ogl::PushAttribScope const saved(_scene.Graphics(), AGL_ALL_ATTRIB_BITS);
    MatrixScope const matrices(_scene.Graphics());
    DrawContext context = _scene.MakeDrawContext(DrawContext::DrawMode::Draw);
    _view.Prepare(p_camera, p_window, context);
    GuardTree([&] { hits = p_loop(context); });
    return hits;
}

} // namespace Qor::Chart::Host
