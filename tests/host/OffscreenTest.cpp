#include "host/Offscreen.h"

#include "framework/model/Group.h"
#include "framework/model/Light.h"
#include "framework/model/SimpleObject.h"
#include "framework/ogl/Context.h"
#include "host/HostError.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <string>
#include <tuple>

namespace Qor::Chart::Host {
namespace {

Core::Ptr<Model::SimpleObject> Shape(Model::SymbolShape p_shape, QColor const& p_color) {
    auto object = Core::MakeNode<Model::SimpleObject>(Core::MakeNode<Model::Symbol>(p_shape));
    object->SetColor(p_color);
    return object;
}

/// A picture with OpenGL; the test is skipped on a machine without.
class OffscreenTest : public testing::Test {
protected:
    void SetUp() override {
        try {
            picture.emplace(Types::Size(120, 80));
        } catch (Ogl::ContextError const& error) {
            GTEST_SKIP() << error.what();
        }
    }
    std::optional<Offscreen> picture;
};

TEST_F(OffscreenTest, theTopRowIsUpOverTheBackgroundAndMirrorsAndShearsAreLitLikeEverythingElse) {
    picture->GetScene().Schema().clearColor = QColor(10, 20, 200);
    picture->GetCamera().SetProjectionMode(Render::ProjectionMode::Orthographic);
    picture->GetCamera().Look(0, 0);
    auto const upper = Shape(Model::SymbolShape::Cube, Qt::red);
    Types::Matrix4 mirroredAndSheared = Types::Matrix4::Translation({0, 2, 0}) * Types::Matrix4::Scaling({-1, 1, 1});
    mirroredAndSheared.Set(0, 1, 0.2);
    upper->SetTransform(mirroredAndSheared);
    picture->GetScene().Add(upper);
    picture->GetScene().Add(Shape(Model::SymbolShape::Cube, Qt::blue));
    QImage const image = picture->Render();
    ASSERT_EQ(image.size(), QSize(120, 80));
    for (auto const& [x, y, expected] : {std::tuple(1, 1, QColor(10, 20, 200)), {118, 1, QColor(10, 20, 200)},
             {1, 78, QColor(10, 20, 200)}, {60, 15, QColor(Qt::red)}, {60, 65, QColor(Qt::blue)}}) {
        QColor const color = image.pixelColor(x, y);
        int const difference = std::max({std::abs(color.red() - expected.red()),
            std::abs(color.green() - expected.green()), std::abs(color.blue() - expected.blue())});
        EXPECT_LE(difference, 8) << x << ", " << y << ": " << color.name().toStdString();
    }
}

TEST_F(OffscreenTest, aLightOfTheModelTakesThePlaceOfTheHeadlight) {
    Offscreen other({64, 64}, 0);
    picture->GetCamera().Look(0, 0);
    picture->GetScene().Add(Shape(Model::SymbolShape::Sphere, Qt::white));
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
    for (Types::Size const size :
        {Types::Size(0, 0), Types::Size(-1, 5), Types::Size(1, 16385), Types::Size(16384, 16384)}) {
        try {
            Offscreen const picture(size, 0, Offscreen::Device::Recorder);
            ADD_FAILURE() << size;
        } catch (HostError const& error) {
            std::string const text = std::to_string(size.width) + "x" + std::to_string(size.height);
            EXPECT_THAT(error.what(), testing::AllOf(testing::HasSubstr(text), testing::EndsWith(".")));
        }
    }
}

} // namespace
} // namespace Qor::Chart::Host
