// Colour picker: hue, saturation and value, alpha, hexadecimal text and recent colours; a node may follow it.
#include "framework/model/ColorPicker.h"
#include "framework/model/Pane.h"
#include "framework/model/SimpleObject.h"
#include "host/Offscreen.h"

#include <iostream>

using namespace Qor::Chart;

int main(int p_argc, char** p_argv) try {
    Host::Offscreen picture({640, 400});
    auto const pane = Core::MakeNode<Model::Pane>();
    auto const object = Core::MakeNode<Model::SimpleObject>(Core::MakeNode<Model::Symbol>(Model::SymbolShape::Sphere));
    pane->Add(object);
    auto const picker = Core::MakeNode<Model::ColorPicker>();
    picker->SetTarget(object, Model::SimpleObject::ColorProperty);
    picker->SetColor(QColor(235, 120, 70));
    picker->SetRecentColors({QColor(70, 130, 180), QColor(60, 160, 90), QColor(200, 60, 60)});
    picker->SetXPosition({Types::DefinedAs::Pixels, Types::XEdge::Left, 12});
    picker->SetYPosition({Types::DefinedAs::Pixels, Types::YEdge::Top, 12});
    pane->Add(picker);
    picture.GetScene().Add(pane);
    return picture.Render().save(p_argc > 1 ? p_argv[1] : "color_picker.png") ? 0 : 1;
} catch (std::exception const& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
