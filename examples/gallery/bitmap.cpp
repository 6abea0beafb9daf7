// Bitmap: an image in front of what its pane shows, as large as fits.
#include "framework/model/Bitmap.h"
#include "framework/model/Pane.h"
#include "framework/model/SimpleObject.h"
#include "host/Offscreen.h"

#include <iostream>

using namespace Qor::Chart;

int main(int p_argc, char** p_argv) try {
    Host::Offscreen picture({640, 400});
    auto const scene = Core::MakeNode<Model::Pane>();
    auto const ball = Core::MakeNode<Model::SimpleObject>(Core::MakeNode<Model::Symbol>(Model::SymbolShape::Sphere));
    ball->SetColor(QColor(90, 150, 210));
    scene->Add(ball);
    auto const corner = Core::MakeNode<Model::Pane>(); // a pane of its own says where the image goes
    corner->SetViewport(Types::Viewport<1>(0.76F, 0.04F, 0.2F, 0.32F));
    corner->SetBackgroundColor(Qt::transparent);
    auto const sign = Core::MakeNode<Model::Bitmap>();
    sign->SetImageFile(QOR_EXAMPLE_DATA "/sign.png");
    corner->Add(sign);
    scene->Add(corner);
    picture.GetScene().Add(scene);
    return picture.Render().save(p_argc > 1 ? p_argv[1] : "bitmap.png") ? 0 : 1;
} catch (std::exception const& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
