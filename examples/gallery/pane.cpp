// Pane and camera: a rectangle with a view, a background and a title bar of its own; panes may stand in panes.
#include "framework/model/Pane.h"
#include "framework/model/SimpleObject.h"
#include "host/CameraNode.h"
#include "host/Offscreen.h"

#include <iostream>

using namespace Qor::Chart;

int main(int p_argc, char** p_argv) try {
    Host::Offscreen picture({640, 400});
    auto const symbol = Core::MakeNode<Model::Symbol>(Model::SymbolShape::Cone);
    auto const add = [&](Core::Ptr<Model::ModelNode> const& p_parent, wchar_t const* p_title,
                         Types::Viewport<1> const& p_place, Host::Camera::View p_view) {
        auto pane = Core::MakeNode<Model::Pane>();
        pane->SetViewport(p_place);
        pane->SetTitle(p_title);
        pane->SetTitlePinned(true);
        pane->SetBorderColor(Qt::gray);
        pane->SetBackgroundColor(QColor(232, 238, 245));
        pane->SetBackgroundTopColor(QColor(Qt::white));
        auto const object = Core::MakeNode<Model::SimpleObject>(symbol);
        object->SetColor(QColor(220, 120, 60));
        pane->Add(object);

        auto const view = Core::MakeNode<Host::CameraNode>();
        Host::Camera camera;
        camera.SetUpAxis(Host::Camera::UpAxis::Z);
        camera.Look(p_view);
        view->SetCamera(camera);
        view->Add(pane);
        p_parent->Add(view);
        return pane;
    };
    using View = Host::Camera::View;
    auto const& scene = picture.GetScene().Model();
    auto const perspective = add(scene, L"Perspective", {0, 0, 0.6F, 1}, View::Isometric);
    perspective->SetProjectionMode(Model::Pane::ProjectionMode::Perspective);
    add(scene, L"Front", {0.6F, 0, 0.4F, 1}, View::Front);
    add(perspective, L"Top", {0.67F, 0.63F, 0.3F, 0.28F}, View::Top); // a pane in a pane
    return picture.Render().save(p_argc > 1 ? p_argv[1] : "pane.png") ? 0 : 1;
} catch (std::exception const& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
