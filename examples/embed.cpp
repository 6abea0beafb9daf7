// A scene in a widget of an application: drag to turn, wheel to zoom, click to be told what was hit.
#include "framework/model/SceneGraph.h"
#include "framework/model/SimpleObject.h"
#include "host/qt/SceneWidget.h"

#include <QApplication>
#include <QLabel>
#include <QVBoxLayout>

using namespace Qor::Chart;

int main(int p_argc, char** p_argv) {
    QApplication const application(p_argc, p_argv);
    auto const scene = Core::MakeNode<Model::SceneGraph>();
    auto const symbol = Core::MakeNode<Model::Symbol>(Model::SymbolShape::Cube);
    for (int i = 0; i < 3; ++i) {
        auto const cube = Core::MakeNode<Model::SimpleObject>(symbol);
        cube->SetName("cube " + std::to_string(i));
        cube->SetTransform(Types::Matrix4::Translation({1.5 * i, 0, 0}));
        scene->Add(cube);
    }

    QWidget window;
    auto* const layout = new QVBoxLayout(&window);
    auto* const widget = new Host::SceneWidget;
    auto* const label = new QLabel("Click a cube.");
    layout->addWidget(widget, 1);
    layout->addWidget(label);

    widget->View().SetModel(scene);
    widget->View().Input().Callbacks().click = [label](auto const&, auto const& p_hits, bool) {
        auto const node = p_hits.empty() ? nullptr : p_hits.front().node.Lock();
        auto const model = node ? node->SourceModel().Lock() : nullptr;
        label->setText(model ? QString::fromStdString(model->Name()) : QString("Nothing there."));
    };
    window.resize(640, 480);
    window.show();
    return QApplication::exec();
}
