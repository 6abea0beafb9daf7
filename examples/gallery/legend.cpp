// Legend: what symbols, colours and colour maps stand for; a click on an entry hides and shows what it explains.
#include "framework/library/ColorMap.h"
#include "framework/model/Group.h"
#include "framework/model/Legend.h"
#include "framework/model/LegendEntry.h"
#include "framework/model/Pane.h"
#include "framework/model/SimpleObject.h"
#include "host/Offscreen.h"

#include <cmath>
#include <iostream>

using namespace Qor::Chart;

int main(int p_argc, char** p_argv) try {
    Host::Offscreen picture({640, 400});
    auto const pane = Core::MakeNode<Model::Pane>();
    auto const legend = Core::MakeNode<Model::Legend>();
    legend->SetTitle(L"Stations");
    Model::SymbolShape const shapes[] = {
        Model::SymbolShape::Sphere, Model::SymbolShape::Cube, Model::SymbolShape::Tetrahedron};
    wchar_t const* const texts[] = {L"Wind", L"Water level", L"Out of use"};
    for (int kind = 0; kind < 3; ++kind) {
        auto const group = Core::MakeNode<Model::Group>();
        auto const symbol = Core::MakeNode<Model::Symbol>(shapes[kind]);
        for (int i = kind; i < 60; i += 3) {
            auto const object = Core::MakeNode<Model::SimpleObject>(symbol);
            double const height = std::sin(0.7 * i) + 1;
            int const row = i / 10;
            object->SetTransform(Types::Matrix4::Translation({1.4 * (i % 10), height, 1.4 * row}));
            object->SetColor(Library::ColorMap().SetRange(0, 2).At(height).ToQColor());
            group->Add(object);
        }
        group->SetVisible(kind != 2);
        pane->Add(group);
        auto const entry = Core::MakeNode<Model::LegendEntry>(texts[kind], group);
        entry->SetSymbol(symbol);
        legend->Add(entry);
    }
    auto const heights = Core::MakeNode<Model::LegendEntry>(L"Height");
    heights->SetColorMap("Viridis");
    heights->SetRange(0, 2);
    heights->SetUnit({L"Length", L"m"});
    legend->Add(heights);
    pane->Add(legend);
    picture.GetScene().Add(pane);
    return picture.Render().save(p_argc > 1 ? p_argv[1] : "legend.png") ? 0 : 1;
} catch (std::exception const& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
