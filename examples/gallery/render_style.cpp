// Render style: textures, colours, lines, lighting for everything below it; inner styles override outer ones.
#include "framework/model/RenderStyle.h"
#include "framework/model/SimpleObject.h"
#include "host/Offscreen.h"

#include <iostream>

using namespace Qor::Chart;

int main(int p_argc, char** p_argv) try {
    Host::Offscreen picture({640, 400});
    picture.GetCamera().Look(20, 25);
    auto const object = [](Model::SymbolShape p_shape, double p_x) {
        auto node = Core::MakeNode<Model::SimpleObject>(Core::MakeNode<Model::Symbol>(p_shape));
        node->SetTransform(Types::Matrix4::Translation({p_x, 0, 0}) * Types::Matrix4::Rotation(-90, {1, 0, 0}));
        return node;
    };
    auto const textured = Core::MakeNode<Model::RenderStyle>();
    textured->SetTexture(QOR_EXAMPLE_DATA "/crate.png");
    textured->Add(object(Model::SymbolShape::Cube, 0));
    textured->Add(object(Model::SymbolShape::Sphere, 1.5));

    auto const outlined = Core::MakeNode<Model::RenderStyle>();
    outlined->SetPolygonMode(Model::RenderStyle::PolygonMode::Outlines);
    outlined->SetForegroundColor(QColor(0, 90, 160));
    outlined->SetLighting(false);
    outlined->Add(object(Model::SymbolShape::Cylinder, 3));
    auto const dotted = Core::MakeNode<Model::RenderStyle>(); // everything but the points is as around it
    dotted->SetPolygonMode(Model::RenderStyle::PolygonMode::Points);
    dotted->SetPointSize(5);
    dotted->SetRoundPoints(true);
    dotted->Add(object(Model::SymbolShape::Cone, 4.5));
    outlined->Add(dotted);
    for (auto const& style : {textured, outlined})
        picture.GetScene().Add(style);
    return picture.Render().save(p_argc > 1 ? p_argv[1] : "render_style.png") ? 0 : 1;
} catch (std::exception const& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
