// Text box: a text that the user edits, with caret, selection, clipboard and input methods, or only reads.
#include "framework/model/Pane.h"
#include "framework/model/SimpleObject.h"
#include "framework/model/TextBox.h"
#include "host/InputDispatcher.h"
#include "host/Offscreen.h"

#include <iostream>

using namespace Qor::Chart;

int main(int p_argc, char** p_argv) try {
    Host::Offscreen picture({640, 400});
    auto const pane = Core::MakeNode<Model::Pane>();
    auto const object = Core::MakeNode<Model::SimpleObject>(Core::MakeNode<Model::Symbol>(Model::SymbolShape::Arrow));
    object->SetColor(QColor(80, 160, 120));
    pane->Add(object);
    auto const box = [&](double p_up) {
        auto node = Core::MakeNode<Model::TextBox>();
        node->SetWidth(220);
        node->SetMode(Model::TextBox::Mode::Editable);
        node->SetXPosition({Types::DefinedAs::Pixels, Types::XEdge::Left, 16});
        node->SetYPosition({Types::DefinedAs::Pixels, Types::YEdge::Top, p_up});
        pane->Add(node);
        return node;
    };
    auto const label = box(16);
    label->SetText(L"Wind at the harbour");
    label->SetMode(Model::TextBox::Mode::Label);
    auto const field = box(48);
    field->SetText(L"north-west, 12 knots");
    auto const empty = box(80);
    empty->SetPlaceholder(L"Remarks");
    picture.GetScene().Add(pane);
    picture.Frame();

    Host::InputDispatcher input(picture.GetScene());
    input.SetView(picture.GetCamera(), picture.Viewport());
    for (int press = 0; press < 2; ++press) { // the user double-clicks a word
        input.PointerPressed({30, 340});
        input.PointerReleased({30, 340});
    }
    return picture.Render().save(p_argc > 1 ? p_argv[1] : "text_box.png") ? 0 : 1;
} catch (std::exception const& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
