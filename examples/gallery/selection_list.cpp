// Selection list: what the user has selected, in order, by click, by rubber band or by the program.
#include "framework/model/Events.h"
#include "framework/model/SelectionList.h"
#include "framework/model/SimpleObject.h"
#include "host/InputDispatcher.h"
#include "host/Offscreen.h"

#include <iostream>
#include <vector>

using namespace Qor::Chart;

int main(int p_argc, char** p_argv) try {
    Host::Offscreen picture({640, 400});
    auto const list = Core::MakeNode<Model::SelectionList>();
    auto const listening = list->Delegate().Connect<Model::Events::SelectionChangedArgs>([](auto const& p_event) {
        std::cout << p_event.Added().size() << " added, " << p_event.Removed().size() << " removed\n";
    });
    picture.GetScene().Add(list);
    auto const symbol = Core::MakeNode<Model::Symbol>(Model::SymbolShape::Cube);
    std::vector<Core::Ptr<Model::SimpleObject>> cubes;
    for (int i = 0; i < 15; ++i) {
        auto const cube = Core::MakeNode<Model::SimpleObject>(symbol);
        int const row = i / 5;
        cube->SetTransform(Types::Matrix4::Translation({1.5 * (i % 5), 1.5 * row, 0}));
        cube->SetColor(QColor(205, 205, 200));
        cubes.push_back(cube);
        picture.GetScene().Add(cube);
    }
    picture.Frame();

    Host::InputDispatcher input(picture.GetScene());
    input.SetView(picture.GetCamera(), picture.Viewport());
    input.PointerMoved({320, 200}); // the user clicks in the middle
    input.PointerPressed({320, 200});
    input.PointerReleased({320, 200});
    list->Select(cubes[1]); // and the program adds to that
    list->Select(cubes[13]);
    return picture.Render().save(p_argc > 1 ? p_argv[1] : "selection_list.png") ? 0 : 1;
} catch (std::exception const& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
