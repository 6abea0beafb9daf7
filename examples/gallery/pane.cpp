// Pane: a rectangle with a view, a background and a title bar of its own; panes may stand in panes.
#include "framework/model/Pane.h"
#include "framework/model/SimpleObject.h"
#include "host/CameraNode.h"
#include "host/Offscreen.h"

#include <iostream>

using namespace Qor::Chart;

int main(int p_argc, char** p_argv) try {
    Host::Offscreen picture({640, 400});
    auto const symbol = Core::MakeNode<Model::Symbol>(Model::SymbolShape::Cone);
    Host::Camera::View const views[] = {
        Host::Camera::View::Isometric, Host::Camera::View::Front, Host::Camera::View::Top};
    wchar_t const* const titles[] = {L"Perspective", L"Front", L"Top"};
    for (int i = 0; i < 3; ++i) {
        auto const pane = Core::MakeNode<Model::Pane>();
        pane->SetViewport(
            i == 0 ? Types::Viewport<1>(0, 0, 0.6F, 1) : Types::Viewport<1>(0.6F, i == 1 ? 0.5F : 0, 0.4F, 0.5F));
        pane->SetTitle(titles[i]);
        pane->SetTitlePinned(true);
        pane->SetBorderColor(Qt::gray);
        pane->SetBackgroundColor(QColor(232, 238, 245));
        pane->SetBackgroundTopColor(QColor(Qt::white));
        if (i == 0)
            pane->SetProjectionMode(Model::Pane::ProjectionMode::Perspective);
        auto const object = Core::MakeNode<Model::SimpleObject>(symbol);
        object->SetColor(QColor(220, 120, 60));
        pane->Add(object);

        auto const view = Core::MakeNode<Host::CameraNode>();
        Host::Camera camera;
        camera.SetUpAxis(Host::Camera::UpAxis::Z);
        camera.Look(views[i]);
        if (i == 0)
            camera.SetProjectionMode(Render::ProjectionMode::Perspective);
        else
            camera.SetProjectionMode(Render::ProjectionMode::Orthographic);
        view->SetCamera(camera);
        view->Add(pane);
        picture.GetScene().Add(view);
    }
    return picture.Render().save(p_argc > 1 ? p_argv[1] : "pane.png") ? 0 : 1;
} catch (std::exception const& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
