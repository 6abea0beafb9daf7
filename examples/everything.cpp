// One scene with every kind of node but lights, which do not shine into panes: stations around a harbour, with a legend, a
// selection, panes, buttons and figures. Writes everything.png, or the file that is named.
#include "framework/library/ColorMap.h"
#include "framework/model/Bitmap.h"
#include "framework/model/ColorPicker.h"
#include "framework/model/Group.h"
#include "framework/model/ImageButton.h"
#include "framework/model/Legend.h"
#include "framework/model/LegendEntry.h"
#include "framework/model/Pane.h"
#include "framework/model/RenderStyle.h"
#include "framework/model/SelectionList.h"
#include "framework/model/SimpleObject.h"
#include "framework/model/Statistics.h"
#include "framework/model/TextBox.h"
#include "framework/model/Toolbar.h"
#include "host/CameraNode.h"
#include "host/Importer.h"
#include "host/Offscreen.h"

#include <cmath>
#include <iostream>
#include <vector>

using namespace Qor::Chart;

namespace {

using Types::Matrix4;
using Types::XEdge;
using Types::YEdge;
constexpr double Highest = 12;

template <class Node>
Core::Ptr<Node> Placed(Core::Ptr<Node> const& p_node, XEdge p_xEdge, double p_x, YEdge p_yEdge, double p_y) {
    p_node->SetXPosition({Types::DefinedAs::Pixels, p_xEdge, p_x});
    p_node->SetYPosition({Types::DefinedAs::Pixels, p_yEdge, p_y});
    return p_node;
}

Core::Ptr<Model::SimpleObject> Object(Model::SymbolShape p_shape, Matrix4 const& p_place, QColor const& p_color) {
    auto object = Core::MakeNode<Model::SimpleObject>(Core::MakeNode<Model::Symbol>(p_shape));
    object->SetTransform(p_place);
    object->SetColor(p_color);
    return object;
}

/// A pane with a title, for what is seen from some direction.
Core::Ptr<Model::Pane> PaneAt(Types::Viewport<1> const& p_place, wchar_t const* p_title) {
    auto pane = Core::MakeNode<Model::Pane>();
    pane->SetViewport(p_place);
    pane->SetTitle(p_title);
    pane->SetTitlePinned(true);
    pane->SetBorderColor(QColor(150, 160, 170));
    pane->SetBackgroundColor(QColor(206, 222, 234));
    pane->SetBackgroundTopColor(QColor(250, 252, 254));
    pane->SetProjectionMode(Model::Pane::ProjectionMode::Perspective);
    return pane;
}

/// Puts a camera above a pane once its content is known.
void Look(Host::Offscreen& p_picture, Core::Ptr<Host::CameraNode> const& p_view,
    Types::BoundingBox_Base<double> const& p_box, Types::Viewport<0> const& p_viewport, double p_azimuth,
    double p_elevation) {
    Host::Camera camera;
    camera.Look(p_azimuth, p_elevation);
    camera.Fit(p_box, p_viewport);
    p_view->SetCamera(camera);
    p_picture.Frame();
}

/// Buoys on a ring, in the colours of a map, each the higher the rougher the sea is there.
std::vector<Core::Ptr<Model::SimpleObject>> Buoys(Model::SymbolShape p_shape, int p_first) {
    Library::ColorMap map;
    map.SetRange(0, Highest);
    std::vector<Core::Ptr<Model::SimpleObject>> buoys;
    for (int i = p_first; i < 36; i += 2) {
        double const turn = i * 0.1745;
        double const height = Highest * (0.5 + 0.5 * std::sin(3 * turn));
        auto const place = Matrix4::Translation({7 * std::cos(turn), 0.3 + height / 8, 7 * std::sin(turn)});
        buoys.push_back(Object(p_shape, place * Matrix4::Scaling({0.8, 0.8, 0.8}), map.At(height).ToQColor()));
    }
    return buoys;
}

} // namespace

int main(int p_argc, char** p_argv) try {
    Host::Offscreen picture({1280, 800});
    Host::Scene& scene = picture.GetScene();

    // In the first pane a model file, buoys of two kinds and a dome of glass.
    auto const main = PaneAt({0, 0, 0.7F, 1}, L"Harbour");
    Host::Importer importer(scene.Symbols());
    main->Add(importer.Import(qorfile::filepath(QOR_EXAMPLE_DATA "/demo.glb")).root);
    auto const wind = Core::MakeNode<Model::Group>();
    auto const water = Core::MakeNode<Model::Group>();
    auto const windBuoys = Buoys(Model::SymbolShape::Sphere, 0);
    auto const waterBuoys = Buoys(Model::SymbolShape::Octahedron, 1);
    for (auto const& buoy : windBuoys)
        wind->Add(buoy);
    for (auto const& buoy : waterBuoys)
        water->Add(buoy);
    auto const glass = Core::MakeNode<Model::RenderStyle>();
    glass->SetOpacity(0.25);
    auto const dome = Object(Model::SymbolShape::Sphere, Matrix4::Scaling({11, 9, 11}), QColor(120, 190, 235));
    glass->Add(dome);
    for (Core::Ptr<Model::ModelNode> const& node :
        {Core::Ptr<Model::ModelNode>(wind), Core::Ptr<Model::ModelNode>(water), Core::Ptr<Model::ModelNode>(glass)})
        main->Add(node);

    // Over it a legend, a toolbar, a field for text and the figures; two buoys are selected.
    auto const legend = Core::MakeNode<Model::Legend>();
    legend->SetTitle(L"Buoys");
    auto const windEntry = Core::MakeNode<Model::LegendEntry>(L"Wind", wind);
    windEntry->SetSymbol(windBuoys.front()->GetSymbol());
    auto const waterEntry = Core::MakeNode<Model::LegendEntry>(L"Water level", water);
    waterEntry->SetSymbol(waterBuoys.front()->GetSymbol());
    auto const domeEntry = Core::MakeNode<Model::LegendEntry>(L"Radio range", dome);
    auto const heights = Core::MakeNode<Model::LegendEntry>(L"Waves");
    heights->SetColorMap("Viridis");
    heights->SetRange(0, Highest);
    heights->SetUnit({L"Length", L"m"});
    for (auto const& entry : {windEntry, waterEntry, domeEntry, heights})
        legend->Add(entry);
    main->Add(legend);

    auto const toolbar = Placed(Core::MakeNode<Model::Toolbar>(), XEdge::Left, 12, YEdge::Top, 34);
    for (wchar_t const* const label : {L"Measure", L"Follow", L"Print"})
        toolbar->Add(Core::MakeNode<Model::Action>("action", label));
    main->Add(toolbar);
    auto const search = Placed(Core::MakeNode<Model::TextBox>(), XEdge::Left, 12, YEdge::Top, 66);
    search->SetMode(Model::TextBox::Mode::Editable);
    search->SetPlaceholder(L"Find a buoy");
    search->SetWidth(150);
    main->Add(search);
    auto const figures = Core::MakeNode<Model::Statistics>();
    figures->SetInterval(0); // a still picture does not wait
    main->Add(figures);
    auto const selection = Core::MakeNode<Model::SelectionList>();
    main->Add(selection);
    selection->Select(windBuoys[4]);
    selection->Select(waterBuoys[5]);

    // In the second pane a textured model, with a button and a sign; in the third a colour that the dome follows.
    auto const cargo = PaneAt({0.7F, 0.5F, 0.3F, 0.5F}, L"Cargo");
    cargo->Add(importer.Import(qorfile::filepath(QOR_EXAMPLE_DATA "/display.glb")).root);
    auto const button = Core::MakeNode<Model::ImageButton>("load", L"Load");
    cargo->Add(Placed(button, XEdge::Left, 12, YEdge::Bottom, 12));
    auto const corner = Core::MakeNode<Model::Pane>();
    corner->SetViewport({0.8F, 0.04F, 0.18F, 0.18F});
    corner->SetBackgroundColor(Qt::transparent);
    auto const sign = Core::MakeNode<Model::Bitmap>();
    sign->SetImageFile(QOR_EXAMPLE_DATA "/sign.png");
    corner->Add(sign);
    cargo->Add(corner);

    auto const colors = PaneAt({0.7F, 0, 0.3F, 0.5F}, L"Colour of the dome");
    auto const picker = Placed(Core::MakeNode<Model::ColorPicker>(), XEdge::Left, 84, YEdge::Bottom, 90);
    picker->SetTarget(dome, Model::SimpleObject::ColorProperty);
    colors->Add(picker);

    auto const mainView = Core::MakeNode<Host::CameraNode>();
    mainView->Add(main);
    auto const cargoView = Core::MakeNode<Host::CameraNode>();
    cargoView->Add(cargo);
    scene.Add(mainView);
    scene.Add(cargoView);
    scene.Add(colors);
    picture.Frame();
    using Box = Types::BoundingBox_Base<double>;
    Look(picture, mainView, Box({-8, -1, -8}, {8, 7, 8}), {0, 0, 896, 800}, 30, 24);
    Look(picture, cargoView, Box({-1.7, -0.2, -1.4}, {1.7, 1.9, 1.4}), {896, 400, 384, 400}, 25, 20);
    return picture.Render().save(p_argc > 1 ? p_argv[1] : "everything.png") ? 0 : 1;
} catch (std::exception const& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
