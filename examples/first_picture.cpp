// Builds a small model from code, draws it with no display and writes first_picture.png (or the file that is named).
#include "framework/model/SimpleObject.h"
#include "host/Offscreen.h"

#include <QColor>

#include <cmath>
#include <exception>
#include <iostream>
#include <stdexcept>

using namespace Qor::Chart;

int main(int p_argc, char** p_argv) {
    QString const file = p_argc > 1 ? QString::fromLocal8Bit(p_argv[1]) : QStringLiteral("first_picture.png");
    try {
        auto const ball = Core::MakeNode<Model::Symbol>(Model::SymbolShape::Sphere);
        auto const cone = Core::MakeNode<Model::Symbol>(Model::SymbolShape::Cone);

        Host::Offscreen picture({960, 600});
        picture.GetCamera().SetUpAxis(Host::Camera::UpAxis::Z);
        for (int i = 0; i < 24; ++i) {
            double const turn = i / 24.0 * 6.283185307;
            auto const object = Core::MakeNode<Model::SimpleObject>(i % 2 == 0 ? ball : cone);
            object->SetTransform(
                Types::Matrix4::Translation({5 * std::cos(turn), 5 * std::sin(turn), std::sin(3 * turn)}));
            object->SetColor(QColor::fromHsv(15 * i, 170, 235));
            picture.GetScene().Add(object);
        }
        if (!picture.Render().save(file, "PNG"))
            throw std::runtime_error("The picture cannot be written; name another file.");
        Render::FrameStatistics const& frame = picture.Driver().Statistics();
        std::cout << file.toStdString() << ": " << frame.updated << " nodes updated, " << frame.Drawn() << " drawn\n";
    } catch (std::exception const& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
