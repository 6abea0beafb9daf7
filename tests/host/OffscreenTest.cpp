#include "host/Offscreen.h"

#include "tests/host/PictureTest.h"
#include "tests/render/support/Models.h"
#include "framework/model/Group.h"
#include "framework/model/Light.h"
#include "host/HostError.h"

#include <gmock/gmock.h>

namespace Qor::Chart::Host {
namespace {

Core::Ptr<Model::Pane> Pane(int p_x, int p_y, int p_width, int p_height, QColor const& p_background) {
    auto pane = Core::MakeNode<Model::Pane>();
    pane->SetViewport(Render::Fixtures::PixelViewport(p_x, p_y, p_width, p_height));
    pane->SetBackgroundColor(p_background);
    return pane;
}

using OffscreenTest = PictureTest;

TEST_F(OffscreenTest, theTopRowIsUpOverTheBackgroundAndMirrorsAndShearsAreLitLikeEverythingElse) {
    QColor const background(10, 20, 200);
    Make({120, 80}, 4);
    picture->GetScene().Schema().clearColor = background;
    picture->GetCamera().SetProjectionMode(Render::ProjectionMode::Orthographic);
    picture->GetCamera().Look(0, 0);
    auto const upper = MakeShape(Model::SymbolShape::Cube, Qt::red);
    Types::Matrix4 mirroredAndSheared = Types::Matrix4::Translation({0, 2, 0}) * Types::Matrix4::Scaling({-1, 1, 1});
    mirroredAndSheared.Set(0, 1, 0.2);
    upper->SetTransform(mirroredAndSheared);
    picture->GetScene().Add(upper);
    picture->GetScene().Add(MakeShape(Model::SymbolShape::Cube, Qt::blue));
    QImage const image = picture->Render();
    ASSERT_EQ(image.size(), QSize(120, 80));
    ExpectSamples(image,
        {{1, 78, background}, {118, 78, background}, {1, 1, background}, {60, 64, Qt::red}, {60, 14, Qt::blue}}, 8);
}

TEST_F(OffscreenTest, panesInPanesShowTheirScenesBackgroundsAndFramesCutByThoseAround) {
    Make({200, 150});
    auto const outer = Pane(20, 10, 150, 130, Qt::black);
    auto const inner = Pane(50, 40, 150, 60, Qt::yellow);
    auto const innermost = Pane(-10, 10, 50, 80, QColor(0, 0, 0, 0));
    auto const cube = MakeShape(Model::SymbolShape::Cube, Qt::red);
    outer->SetBackgroundTopColor(QColor(Qt::white));
    outer->SetBorderColor(Qt::blue);
    inner->SetTitlePinned(true);
    innermost->SetBorderColor(Qt::green);
    for (auto const& [parent, child] : {std::pair(outer, inner), {inner, innermost}}) {
        parent->Add(cube);
        parent->Add(child);
    }
    QColor const background(10, 20, 30);
    picture->GetScene().Schema().clearColor = background;
    picture->GetScene().Add(outer);
    picture->GetCamera().Look(0, 0);
    ExpectSamples(picture->Render(),
        {
            {19, 75, background}, {20, 75, Qt::blue}, {170, 75, background}, {95, 139, Qt::blue},
            {95, 140, background}, // the frame of the outer pane
            {22, 12, QColor(2, 2, 2)}, {22, 75, QColor(129, 129, 129)}, {22, 137, QColor(252, 252, 252)}, // it fades
            {60, 75, Qt::red}, {71, 52, Qt::yellow}, {145, 70, Qt::red}, // cubes, the second over the first pane
            {80, 89, Qt::darkGray}, {120, 100, QColor(198, 208, 220)}, // a title bar
            {69, 80, Qt::red}, {70, 80, Qt::yellow}, {109, 80, Qt::green}, {110, 80, Qt::yellow}, // cut on the left
        },
        8);
}

TEST_F(OffscreenTest, aLightOfTheModelTakesThePlaceOfTheHeadlight) {
    Make({120, 80}, 4);
    Offscreen other({64, 64}, 0);
    picture->GetCamera().Look(0, 0);
    picture->GetScene().Add(MakeShape(Model::SymbolShape::Sphere, Qt::white));
    QImage const headlight = picture->Render();
    auto const light = Core::MakeNode<Model::Light>();
    light->SetDirection({-1, 0, 0});
    light->SetDiffuse(QColor(255, 255, 0));
    auto const lamp = Core::MakeNode<Model::Group>();
    lamp->Add(light);
    picture->GetScene().Add(lamp);
    QImage const lit = picture->Render();
    QColor const right = lit.pixelColor(75, 40);
    EXPECT_GT(right.red(), lit.pixelColor(45, 40).red() + 60) << "from the right";
    EXPECT_LT(right.blue(), right.red()) << "in yellow";
    lamp->SetEnabled(false);
    other.Render();
    EXPECT_EQ(picture->Render(), headlight) << "with another picture drawn in between";
}

TEST(OffscreenSizeTest, impossibleSizesAreOneSentence) {
    for (Types::Size const size : {Types::Size(0, 0), Types::Size(-1, 5), Types::Size(16384, 16384)}) {
        std::string const text = std::to_string(size.width) + "x" + std::to_string(size.height);
        EXPECT_THAT([&] { Offscreen(size, 0, Offscreen::Device::Recorder); },
            testing::ThrowsMessage<HostError>(testing::AllOf(testing::HasSubstr(text), testing::EndsWith("."))));
    }
}

} // namespace
} // namespace Qor::Chart::Host
