#include "apps/qorview/PaneGrid.h"

#include "framework/model/SceneGraph.h"
#include "render/core/Vis.h"

#include <array>
#include <string>
#include <utility>

namespace Qor::Chart::QorView {

namespace {

using Render::ProjectionMode;
using View = Host::Camera::View;

constexpr std::array<std::pair<View, wchar_t const*>, 7> Views{
    {{View::Front, L"Front"}, {View::Right, L"Right"}, {View::Top, L"Top"}, {View::Back, L"Back"},
        {View::Left, L"Left"}, {View::Bottom, L"Bottom"}, {View::Isometric, L"Isometric"}}};

} // namespace

PaneGrid::PaneGrid(Host::Scene& p_scene, Options const& p_options)
    : _scene(p_scene), _background(p_options.background), _content(Core::MakeNode<Model::SceneGraph>()) {
    _content->SetName("content");
    Host::Camera camera;
    camera.SetUpAxis(p_options.up);
    camera.SetProjectionMode(p_options.projection);
    camera.Look(p_options.azimuth, p_options.elevation);
    std::wstring title = p_options.projection == ProjectionMode::Perspective ? L"Perspective" : L"Orthographic";
    std::size_t next = 0;
    double const width = 1.0 / p_options.panes->width;
    double const height = 1.0 / p_options.panes->height;
    for (int row = 0; row < p_options.panes->height; ++row) {
        for (int column = 0; column < p_options.panes->width; ++column) {
            AddCell({column * width, 1 - (row + 1) * height, width, height}, camera, title);
            auto const& [view, name] = Views[next++ % Views.size()];
            camera.SetProjectionMode(ProjectionMode::Orthographic);
            camera.Look(view);
            title = name;
        }
    }
}

void PaneGrid::AddCell(Types::Viewport<1> const& p_place, Host::Camera const& p_camera, std::wstring const& p_title) {
    Cell const cell{Core::MakeNode<Host::CameraNode>(), Core::MakeNode<Model::Pane>()};
    Model::Pane& pane = *cell.pane;
    pane.SetName("pane " + std::to_string(_cells.size() + 1));
    pane.SetViewport(p_place);
    pane.SetTitle(p_title);
    pane.SetMovable(true);
    pane.SetResizable(true);
    pane.SetKeepInsideParent(true);
    pane.SetBackgroundColor(_background);
    pane.SetBorderColor(QColor(128, 128, 128));
    pane.SetProjectionMode(p_camera.GetProjectionMode() == ProjectionMode::Perspective
            ? Model::Pane::ProjectionMode::Perspective
            : Model::Pane::ProjectionMode::Orthographic);
    pane.Add(_content);
    cell.camera->SetCamera(p_camera);
    cell.camera->Add(cell.pane);
    _scene.Add(cell.camera);
    _cells.push_back(cell);
}

void PaneGrid::Fit(Types::Viewport<0> const& p_window) {
    for (Core::Ptr<Render::Vis> const& camera : *_scene.Visual()) {
        for (Cell const& cell : _cells) {
            if (camera->SourceModel().Peek() == cell.camera.Get() && !camera->Empty())
                FitCell(cell, **camera->begin(), p_window);
        }
    }
}

void PaneGrid::FitCell(Cell const& p_cell, Render::Vis const& p_pane, Types::Viewport<0> const& p_window) const {
    Host::Camera camera = p_cell.camera->GetCamera();
    Types::Viewport<0> const viewport(p_cell.pane->GetViewport(), p_window);
    camera.Fit(p_pane.BoundingBox(), viewport, Host::Scene::PartsOf(p_pane));
    p_cell.camera->SetCamera(camera);
}

void PaneGrid::Orbit(double p_degrees) {
    for (Cell const& cell : _cells) {
        Host::Camera camera = cell.camera->GetCamera();
        camera.Orbit(p_degrees, 0);
        cell.camera->SetCamera(camera);
    }
}

} // namespace Qor::Chart::QorView
