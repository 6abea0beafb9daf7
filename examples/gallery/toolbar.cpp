// Toolbar: a bar of buttons over a pane, one for each action; a click executes it.
#include "framework/model/Pane.h"
#include "framework/model/SimpleObject.h"
#include "framework/model/Toolbar.h"
#include "host/Offscreen.h"

#include <iostream>

using namespace Qor::Chart;

int main(int p_argc, char** p_argv) try {
    Host::Offscreen picture({640, 400});
    auto const pane = Core::MakeNode<Model::Pane>();
    auto const object = Core::MakeNode<Model::SimpleObject>(Core::MakeNode<Model::Symbol>(Model::SymbolShape::Sphere));
    object->SetColor(QColor(90, 150, 210));
    pane->Add(object);

    auto const bar = Core::MakeNode<Model::Toolbar>();
    bar->SetXPosition({Types::DefinedAs::Pixels, Types::XEdge::Left, 12});
    bar->SetYPosition({Types::DefinedAs::Pixels, Types::YEdge::Top, 12});
    auto const spin = Core::MakeNode<Model::Action>("spin", L"Spin");
    spin->SetExecute([object] { object->SetTransform(Types::Matrix4::Rotation(45, {0, 1, 0})); });
    auto const hide = Core::MakeNode<Model::Action>("hide", L"Hide");
    hide->SetExecute([object] { object->SetVisible(!object->IsVisible()); });
    hide->SetChecked(true);
    auto const save = Core::MakeNode<Model::Action>("save", L"Save");
    save->SetEnabled(false);
    for (auto const& action : {spin, hide, save})
        bar->Add(action);
    pane->Add(bar);
    picture.GetScene().Add(pane);
    return picture.Render().save(p_argc > 1 ? p_argv[1] : "toolbar.png") ? 0 : 1;
} catch (std::exception const& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
