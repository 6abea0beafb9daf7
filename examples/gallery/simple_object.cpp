// Simple object: a built-in shape or a model file, placed by a matrix, in a colour of its own.
#include "framework/model/SimpleObject.h"
#include "host/Offscreen.h"

#include <iostream>

using namespace Qor::Chart;

int main(int p_argc, char** p_argv) try {
    Host::Offscreen picture({640, 400});
    picture.GetCamera().Look(20, 25);
    for (int shape = 1; shape <= 8; ++shape) {
        auto const symbol = Core::MakeNode<Model::Symbol>(static_cast<Model::SymbolShape>(shape));
        auto const object = Core::MakeNode<Model::SimpleObject>(symbol);
        object->SetTransform(Types::Matrix4::Translation({1.5 * ((shape - 1) % 4), shape > 4 ? 0.0 : 1.5, 0}));
        object->SetColor(QColor::fromHsv(45 * (shape - 1), 150, 225));
        picture.GetScene().Add(object);
    }
    return picture.Render().save(p_argc > 1 ? p_argv[1] : "simple_object.png") ? 0 : 1;
} catch (std::exception const& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
