// Transparency: below a style of some opacity things shine through, farthest first, whatever their order in the tree.
#include "framework/model/RenderStyle.h"
#include "framework/model/SimpleObject.h"
#include "host/Offscreen.h"

#include <iostream>

using namespace Qor::Chart;

int main(int p_argc, char** p_argv) try {
    Host::Offscreen picture({640, 400});
    auto const glass = Core::MakeNode<Model::RenderStyle>();
    glass->SetOpacity(0.35);
    picture.GetScene().Add(glass);
    auto const core = Core::MakeNode<Model::Symbol>(Model::SymbolShape::Octahedron);
    auto const shell = Core::MakeNode<Model::Symbol>(Model::SymbolShape::Sphere);
    for (int i = 0; i < 4; ++i) {
        auto const inside = Core::MakeNode<Model::SimpleObject>(core);
        inside->SetTransform(Types::Matrix4::Translation({1.1 * i, 0, 0}));
        inside->SetColor(QColor::fromHsv(90 * i, 180, 220));
        picture.GetScene().Add(inside);
        auto const outside = Core::MakeNode<Model::SimpleObject>(shell);
        outside->SetTransform(Types::Matrix4::Translation({1.1 * i, 0, 0}) * Types::Matrix4::Scaling({1.6, 1.6, 1.6}));
        outside->SetColor(QColor(120, 170, 220));
        glass->Add(outside);
    }
    return picture.Render().save(p_argc > 1 ? p_argv[1] : "transparency.png") ? 0 : 1;
} catch (std::exception const& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
