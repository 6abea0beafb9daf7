// Image button: an action that stands alone in a pane, with an image or a label.
#include "framework/model/ImageButton.h"
#include "framework/model/Pane.h"
#include "framework/model/SimpleObject.h"
#include "host/Offscreen.h"

#include <iostream>

using namespace Qor::Chart;

int main(int p_argc, char** p_argv) try {
    Host::Offscreen picture({640, 400});
    auto const pane = Core::MakeNode<Model::Pane>();
    auto const object = Core::MakeNode<Model::SimpleObject>(Core::MakeNode<Model::Symbol>(Model::SymbolShape::Cross));
    object->SetColor(QColor(190, 110, 190));
    pane->Add(object);

    auto const place = [&](Core::Ptr<Model::ImageButton> const& p_button, double p_left) {
        p_button->SetXPosition({Types::DefinedAs::Pixels, Types::XEdge::Left, p_left});
        p_button->SetYPosition({Types::DefinedAs::Pixels, Types::YEdge::Bottom, 16});
        pane->Add(p_button);
    };
    auto const sign = Core::MakeNode<Model::ImageButton>("sign", L"Sign");
    sign->GetAction()->SetImageFile(QOR_EXAMPLE_DATA "/sign.png");
    sign->GetAction()->SetExecute([object] { object->SetVisible(!object->IsVisible()); });
    sign->SetWidth(48);
    sign->SetHeight(48);
    place(sign, 16);
    auto const labelled = Core::MakeNode<Model::ImageButton>("reset", L"Reset the view");
    place(labelled, 80);
    auto const pinned = Core::MakeNode<Model::ImageButton>("pin", L"Pinned");
    pinned->SetCheckable(true);
    pinned->Click();
    place(pinned, 200);
    picture.GetScene().Add(pane);
    return picture.Render().save(p_argc > 1 ? p_argv[1] : "image_button.png") ? 0 : 1;
} catch (std::exception const& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
