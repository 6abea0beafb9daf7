#include "host/Offscreen.h"

#include "framework/model/Pane.h"
#include "framework/model/SimpleObject.h"
#include "framework/ogl/Context.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <utility>

namespace Qor::Chart::Host {
namespace {

using Types::RelativeLength;

Core::Ptr<Model::Pane> Pane(int p_x, int p_y, int p_width, int p_height, QColor const& p_background) {
    auto pane = Core::MakeNode<Model::Pane>();
    pane->SetViewport({RelativeLength::Pixels(p_x), RelativeLength::Pixels(p_y), RelativeLength::Pixels(p_width),
        RelativeLength::Pixels(p_height)});
    pane->SetBackgroundColor(p_background);
    return pane;
}

TEST(PanePictureTest, panesInPanesShowTheirScenesBackgroundsAndFramesCutByThoseAround) {
    std::optional<Offscreen> picture;
    try {
        picture.emplace(Types::Size(200, 150), 0);
    } catch (Ogl::ContextError const& error) {
        GTEST_SKIP() << error.what();
    }
    auto const outer = Pane(20, 10, 150, 130, Qt::black);
    auto const inner = Pane(50, 40, 150, 60, Qt::yellow);
    auto const innermost = Pane(-10, 10, 50, 80, QColor(0, 0, 0, 0));
    auto const cube = Core::MakeNode<Model::SimpleObject>(Core::MakeNode<Model::Symbol>(Model::SymbolShape::Cube));
    cube->SetColor(Qt::red);
    outer->SetBackgroundTopColor(QColor(Qt::white));
    outer->SetBorderColor(Qt::blue);
    inner->SetTitlePinned(true);
    innermost->SetBorderColor(Qt::green);
    for (auto const& [parent, child] : {std::pair(outer, inner), {inner, innermost}}) {
        parent->Add(cube);
        parent->Add(child);
    }
    picture->GetScene().Schema().clearColor = QColor(10, 20, 30);
    picture->GetScene().Add(outer);
    picture->GetCamera().Look(0, 0);
    QImage const image = picture->Render();

    struct Sample {
        int x, y; ///< from the lower left corner
        QColor color;
    };
    for (Sample const& sample : {
             Sample{19, 75, QColor(10, 20, 30)}, {20, 75, Qt::blue}, {170, 75, QColor(10, 20, 30)}, {95, 139, Qt::blue},
             {95, 140, QColor(10, 20, 30)}, // the frame of the outer pane
             {22, 12, QColor(2, 2, 2)}, {22, 75, QColor(129, 129, 129)}, {22, 137, QColor(252, 252, 252)}, // it fades
             {60, 75, Qt::red}, {71, 52, Qt::yellow}, {145, 70, Qt::red}, // cubes, the second over the first pane
             {80, 89, Qt::darkGray}, {120, 100, QColor(198, 208, 220)}, // a title bar
             {69, 80, Qt::red}, {70, 80, Qt::yellow}, {109, 80, Qt::green}, {110, 80, Qt::yellow}, // cut on the left
         }) {
        QColor const color = image.pixelColor(sample.x, image.height() - 1 - sample.y);
        int const difference = std::max({std::abs(color.red() - sample.color.red()),
            std::abs(color.green() - sample.color.green()), std::abs(color.blue() - sample.color.blue())});
        EXPECT_LE(difference, 8) << sample.x << ", " << sample.y << ": " << color.name().toStdString();
    }
}

} // namespace
} // namespace Qor::Chart::Host
