// Light: the sun, lamps and spots for what stands in no pane; without any the light comes from the viewer.
#include "framework/model/Light.h"
#include "framework/model/SimpleObject.h"
#include "host/Offscreen.h"

#include <iostream>

using namespace Qor::Chart;

int main(int p_argc, char** p_argv) try {
    Host::Offscreen picture({640, 400});
    picture.GetCamera().Look(0, 55);
    auto const ball = Core::MakeNode<Model::Symbol>(Model::SymbolShape::Sphere);
    for (int i = 0; i < 9 * 5; ++i) {
        int const row = i / 9;
        auto const object = Core::MakeNode<Model::SimpleObject>(ball);
        object->SetTransform(Types::Matrix4::Translation({1.1 * (i % 9 - 4), 0, 1.1 * (row - 2)}));
        object->SetColor(QColor(230, 230, 230));
        picture.GetScene().Add(object);
    }
    auto const sun = Core::MakeNode<Model::Light>();
    sun->SetDirection({-1, -2, -1});
    sun->SetDiffuse(QColor(60, 65, 80));
    sun->SetAmbient(QColor(20, 22, 30));
    auto const lamp = Core::MakeNode<Model::Light>();
    lamp->SetKind(Model::Light::Kind::Positional);
    lamp->SetPosition({-2.5, 1.2, 0});
    lamp->SetDiffuse(QColor(255, 150, 60));
    lamp->SetAttenuation({0.4, 0, 0.25});
    auto const spot = Core::MakeNode<Model::Light>();
    spot->SetKind(Model::Light::Kind::Spot);
    spot->SetPosition({2.5, 4, 0});
    spot->SetDirection({0, -1, 0});
    spot->SetSpotCutoff(60);
    spot->SetSpotExponent(12);
    spot->SetDiffuse(QColor(80, 170, 255));
    for (auto const& light : {sun, lamp, spot})
        picture.GetScene().Add(light);
    return picture.Render().save(p_argc > 1 ? p_argv[1] : "light.png") ? 0 : 1;
} catch (std::exception const& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
