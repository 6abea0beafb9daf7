// Scene graph and group: they hold what belongs together; a group that is hidden hides all of it.
#include "framework/model/Group.h"
#include "framework/model/SceneGraph.h"
#include "framework/model/SimpleObject.h"
#include "host/Offscreen.h"

#include <cmath>
#include <iostream>

using namespace Qor::Chart;

int main(int p_argc, char** p_argv) try {
    Host::Offscreen picture({640, 400});
    auto const scene = Core::MakeNode<Model::SceneGraph>();
    auto const ball = Core::MakeNode<Model::Symbol>(Model::SymbolShape::Sphere);
    for (int ring = 0; ring < 4; ++ring) {
        auto const group = Core::MakeNode<Model::Group>();
        group->SetName("ring " + std::to_string(ring));
        group->SetVisible(ring != 2);
        for (int i = 0; i < 12 * (ring + 1); ++i) {
            double const turn = i * 6.283185307 / (12 * (ring + 1));
            auto const object = Core::MakeNode<Model::SimpleObject>(ball);
            object->SetTransform(
                Types::Matrix4::Translation({3 * (ring + 1) * std::cos(turn), 0, 3 * (ring + 1) * std::sin(turn)}));
            object->SetColor(QColor::fromHsv(80 * ring, 140, 220));
            group->Add(object);
        }
        scene->Add(group);
    }
    picture.GetScene().SetModel(scene);
    return picture.Render().save(p_argc > 1 ? p_argv[1] : "group.png") ? 0 : 1;
} catch (std::exception const& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
