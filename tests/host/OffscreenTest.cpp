#include "host/Offscreen.h"

#include "framework/model/Light.h"
#include "framework/model/SimpleObject.h"
#include "framework/ogl/Context.h"
#include "host/HostError.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <optional>
#include <string>

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
    static bool IsClose(QColor const& p_a, QColor const& p_b, int p_tolerance) {
        return std::abs(p_a.red() - p_b.red()) <= p_tolerance && std::abs(p_a.green() - p_b.green()) <= p_tolerance &&
            std::abs(p_a.blue() - p_b.blue()) <= p_tolerance;
    }

    std::optional<Offscreen> picture;
};

TEST_F(OffscreenTest, theTopRowIsUpOverTheBackgroundAndMirrorsAndShearsAreLitLikeEverythingElse) {
    picture->GetScene().Schema().clearColor = QColor(10, 20, 200);
    picture->GetCamera().SetProjectionMode(Render::ProjectionMode::Orthographic);
    picture->GetCamera().Look(0, 0);
    auto const upper = Shape(Model::SymbolShape::Cube, Qt::red);
    auto const lower = Shape(Model::SymbolShape::Cube, Qt::blue);
    Types::Matrix4 mirroredAndSheared = Types::Matrix4::Translation({0, 2, 0}) * Types::Matrix4::Scaling({-1, 1, 1});
    mirroredAndSheared.Set(0, 1, 0.2);
    upper->SetTransform(mirroredAndSheared);
    picture->GetScene().Add(upper);
    picture->GetScene().Add(lower);
    QImage const image = picture->Render();
    ASSERT_EQ(image.size(), QSize(120, 80));
    for (QPoint const corner : {QPoint(1, 1), QPoint(118, 1), QPoint(1, 78), QPoint(118, 78)})
        EXPECT_TRUE(IsClose(image.pixelColor(corner), QColor(10, 20, 200), 1));
    EXPECT_TRUE(IsClose(image.pixelColor(60, 15), Qt::red, 8)) << image.pixelColor(60, 15).name().toStdString();
    EXPECT_TRUE(IsClose(image.pixelColor(60, 65), Qt::blue, 8)) << image.pixelColor(60, 65).name().toStdString();
}

TEST_F(OffscreenTest, aLightOfTheModelTakesThePlaceOfTheHeadlight) {
    picture->GetCamera().Look(0, 0);
    picture->GetScene().Add(Shape(Model::SymbolShape::Sphere, Qt::white));
    QImage const headlight = picture->Render();
    auto const light = Core::MakeNode<Model::Light>();
    light->SetDirection({-1, 0, 0});
    light->SetDiffuse(QColor(255, 255, 0));
    picture->GetScene().Add(light);
    QImage const lit = picture->Render();
    QColor const right = lit.pixelColor(75, 40);
    QColor const left = lit.pixelColor(45, 40);
    EXPECT_GT(right.red(), left.red() + 60) << "from the right";
    EXPECT_LT(right.blue(), right.red()) << "in yellow";
    light->SetEnabled(false);
    EXPECT_EQ(picture->Render(), headlight);
}

TEST_F(OffscreenTest, picturesMayTakeTurns) {
    Offscreen other({64, 64}, 0);
    picture->GetScene().Add(Shape(Model::SymbolShape::Cone, Qt::darkGreen));
    QImage const first = picture->Render();
    other.Render();
    EXPECT_EQ(picture->Render(), first);
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

TEST(OffscreenRecorderTest, drawsWithoutOpenGl) {
    Offscreen picture({100, 100}, 4, Offscreen::Device::Recorder);
    picture.GetScene().Add(Shape(Model::SymbolShape::Cube, Qt::red));
    EXPECT_TRUE(picture.Render().isNull());
    EXPECT_EQ(picture.Driver().Statistics().graphics.primitives, 12U);
}

} // namespace
} // namespace Qor::Chart::Host
