// Statistics: what frames cost, over any scene.
#include "framework/model/Group.h"
#include "framework/model/SimpleObject.h"
#include "framework/model/Statistics.h"
#include "host/Offscreen.h"

#include <iostream>

using namespace Qor::Chart;

int main(int p_argc, char** p_argv) try {
    Host::Offscreen picture({640, 400});
    auto const group = Core::MakeNode<Model::Group>();
    auto const symbol = Core::MakeNode<Model::Symbol>(Model::SymbolShape::Cube);
    for (int i = 0; i < 8000; ++i) {
        auto const object = Core::MakeNode<Model::SimpleObject>(symbol);
        int const row = i / 20 % 20;
        int const layer = i / 400;
        object->SetTransform(Types::Matrix4::Translation({1.3 * (i % 20), 1.3 * row, 1.3 * layer}));
        object->SetColor(QColor::fromHsv(i % 360, 120, 230));
        group->Add(object);
    }
    picture.GetScene().Add(group);
    auto const statistics = Core::MakeNode<Model::Statistics>();
    statistics->SetInterval(0); // a still picture does not wait
    picture.GetScene().Add(statistics);
    for (int i = 0; i < 10; ++i)
        picture.Frame();
    return picture.Render().save(p_argc > 1 ? p_argv[1] : "statistics.png") ? 0 : 1;
} catch (std::exception const& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
