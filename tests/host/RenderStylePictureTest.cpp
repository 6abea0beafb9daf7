#include "host/Offscreen.h"

#include "framework/model/RenderStyle.h"
#include "framework/model/SelectionList.h"
#include "framework/model/SimpleObject.h"
#include "framework/ogl/Context.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace Qor::Chart::Host {
namespace {

using Model::RenderStyle;
using Vector = Types::Vector3_Base<double>;

constexpr int Side = 200;

struct RenderStylePictureTest : ::testing::Test {
    void SetUp() override {
        try {
            picture.emplace(Types::Size(Side, Side), 0);
        } catch (Ogl::ContextError const& error) {
            GTEST_SKIP() << error.what();
        }
        picture->GetCamera().Look(0, 0);
        picture->GetCamera().SetProjectionMode(Render::ProjectionMode::Orthographic);
    }

    static Core::Ptr<Model::SimpleObject> Make(Model::SymbolShape p_shape, Vector const& p_at, double p_size) {
        auto const object = Core::MakeNode<Model::SimpleObject>(Core::MakeNode<Model::Symbol>(p_shape));
        object->SetTransform(Types::Matrix4::Translation(p_at) * Types::Matrix4::Scaling({p_size, p_size, p_size}));
        return object;
    }

    /// The colour where a point of the scene is seen.
    QColor At(QImage const& p_image, double p_x, double p_y) {
        Camera const& camera = picture->GetCamera();
        Vector const center = camera.FocusBox().Center();
        double const scale = Side * camera.Zoom() / Types::Length(camera.FocusBox().Extents());
        return p_image.pixelColor(static_cast<int>(std::floor(Side / 2.0 + scale * (p_x - center.x))),
            static_cast<int>(std::floor(Side / 2.0 - scale * (p_y - center.y))));
    }

    static bool AreAlike(QColor const& p_a, QColor const& p_b) {
        return std::max({std::abs(p_a.red() - p_b.red()), std::abs(p_a.green() - p_b.green()),
                   std::abs(p_a.blue() - p_b.blue())}) <= 3;
    }

    std::optional<Offscreen> picture;
};

QColor Over(QColor const& p_below, QColor const& p_above, double p_alpha) {
    auto const mix = [p_alpha](int p_a, int p_b) { return static_cast<int>(std::lround(p_a + (p_b - p_a) * p_alpha)); };
    return {
        mix(p_below.red(), p_above.red()), mix(p_below.green(), p_above.green()), mix(p_below.blue(), p_above.blue())};
}

/// Through a ball one sees its far side and its near one.
QColor Through(QColor const& p_below, QColor const& p_ball, double p_alpha) {
    return Over(Over(p_below, p_ball, p_alpha), p_ball, p_alpha);
}

TEST_F(RenderStylePictureTest, glassLooksTheSameWhereverItStandsInTheTree) {
    QColor const red(255, 0, 0), green(0, 255, 0), blue(0, 0, 255), gold(255, 200, 0);
    double const opacity = 0.4;
    double const ownAlpha = 128 / 255.0;
    // From far to near: red glass, a solid golden ball, green glass, blue glass of a colour that is not opaque itself.
    std::vector<std::size_t> order{0, 1, 2, 3};
    std::optional<QImage> first;
    do {
        SetUp();
        auto const flat = Core::MakeNode<RenderStyle>();
        flat->SetLighting(false);
        auto const solid = Make(Model::SymbolShape::Sphere, {0.5, 0, -1.5}, 2);
        auto const redBall = Make(Model::SymbolShape::Sphere, {0, 0, -4}, 2);
        auto const greenBall = Make(Model::SymbolShape::Sphere, {1, 0, 1}, 2);
        auto const blueBall = Make(Model::SymbolShape::Sphere, {1.6, 0, 4}, 2);
        solid->SetColor(gold);
        redBall->SetColor(red);
        greenBall->SetColor(green);
        blueBall->SetColor(QColor(0, 0, 255, 128));
        auto const redStyle = Core::MakeNode<RenderStyle>();
        redStyle->SetOpacity(opacity);
        redStyle->Add(redBall);
        auto const greenStyle = Core::MakeNode<RenderStyle>();
        greenStyle->SetOpacity(opacity);
        greenStyle->Add(greenBall);
        Core::Ptr<Model::ModelNode> const children[]{redStyle, solid, greenStyle, blueBall};
        for (std::size_t const place : order)
            flat->Add(children[place]);
        picture->GetScene().Add(flat);
        QImage const image = picture->Render();
        if (!first)
            first = image;
        ASSERT_EQ(image, *first) << order[0] << order[1] << order[2] << order[3];
    } while (std::next_permutation(order.begin(), order.end()));

    QColor const behind = first->pixelColor(2, 2);
    struct Sample {
        double x;
        QColor color;
    };
    QColor const goldThenGreen = Through(gold, green, opacity);
    for (Sample const& sample : {
             Sample{-0.8, Through(behind, red, opacity)}, // red alone
             Sample{-0.2, gold}, // solid in front of red
             Sample{0.3, goldThenGreen}, // green in front of solid in front of red
             Sample{1.2, Through(goldThenGreen, blue, ownAlpha)}, // all four
             Sample{1.8, Through(Through(behind, green, opacity), blue, ownAlpha)},
             Sample{2.3, Through(behind, blue, ownAlpha)},
         }) {
        QColor const color = At(*first, sample.x, 0);
        EXPECT_TRUE(AreAlike(color, sample.color))
            << sample.x << ": " << color.name().toStdString() << " for " << sample.color.name().toStdString();
    }
}

/// Four pixels: red, green, blue, and one of alpha 64.
std::string WriteImage(char const* p_name) {
    QImage image(2, 2, QImage::Format_RGBA8888);
    image.setPixelColor(0, 0, QColor(255, 0, 0));
    image.setPixelColor(1, 0, QColor(0, 255, 0));
    image.setPixelColor(0, 1, QColor(0, 0, 255));
    image.setPixelColor(1, 1, QColor(255, 255, 0, 64));
    std::string const path = (std::filesystem::path(::testing::TempDir()) / p_name).string();
    image.save(QString::fromStdString(path));
    return path;
}

TEST_F(RenderStylePictureTest, texturesLieOnShapesAsTheStyleSays) {
    std::string const file = WriteImage("qor-style-texture.png");
    auto const style = Core::MakeNode<RenderStyle>();
    auto const cube = Make(Model::SymbolShape::Cube, {}, 1);
    style->SetLighting(false);
    style->SetTexture(file);
    style->SetTextureFilters({Types::TextureUnit::Filter::Nearest, Types::TextureUnit::Filter::Nearest});
    style->Add(cube);
    picture->GetScene().Add(style);
    QColor const red(255, 0, 0), green(0, 255, 0), blue(0, 0, 255), yellow(255, 255, 0), black(0, 0, 0);
    auto const expect = [&](char const* p_what, std::array<QColor, 4> const& p_corners) {
        QImage const image = picture->Render();
        std::array<Vector, 4> const places{{{-0.25, 0.25, 0}, {0.25, 0.25, 0}, {-0.25, -0.25, 0}, {0.25, -0.25, 0}}};
        for (std::size_t i = 0; i < places.size(); ++i) {
            QColor const color = At(image, places[i].x, places[i].y);
            EXPECT_TRUE(AreAlike(color, p_corners[i]))
                << p_what << ", corner " << i << ": " << color.name().toStdString() << " for "
                << p_corners[i].name().toStdString();
        }
    };
    // Through the corner that is not opaque the far side of the cube is seen.
    expect("blended", {red, green, blue, Over(green, yellow, 64 / 255.0)});
    style->SetAlphaMode(RenderStyle::AlphaMode::Opaque);
    expect("opaque", {red, green, blue, yellow});
    style->SetAlphaMode(RenderStyle::AlphaMode::Cutout);
    expect("cut out", {red, green, blue, green});
    style->SetAlphaMode(RenderStyle::AlphaMode::Opaque);
    style->SetTextureOffset({0.5, 0});
    expect("moved", {green, red, yellow, blue});
    style->SetTextureOffset({0, 0});
    cube->SetColor(QColor(0, 255, 0));
    expect("modulated", {black, green, black, green});
    style->SetTextureEnvironment(RenderStyle::Environment::Replace);
    expect("replaced", {red, green, blue, yellow});
    style->SetSecondTexture(file);
    style->SetSecondTextureOffset({0, 0.5});
    style->SetSecondTextureFilters({Types::TextureUnit::Filter::Nearest, Types::TextureUnit::Filter::Nearest});
    expect("twice", {black, green, black, green});
    auto const inner = Core::MakeNode<RenderStyle>();
    inner->SetTexture("");
    inner->SetSecondTexture("");
    style->Remove(cube);
    inner->Add(cube);
    style->Add(inner);
    expect("taken away", {green, green, green, green});

    auto const decal = Core::MakeNode<RenderStyle>();
    auto const modulated = Core::MakeNode<RenderStyle>();
    decal->SetLighting(false);
    decal->SetTexture(file);
    decal->SetTextureFilters(style->GetTextureFilters());
    decal->SetTextureEnvironment(RenderStyle::Environment::Decal);
    modulated->SetTextureEnvironment(RenderStyle::Environment::Modulate);
    cube->SetColor(QColor(255, 255, 255));
    inner->Remove(cube);
    modulated->Add(cube);
    decal->Add(modulated);
    picture->GetScene().Add(decal);
    expect("no decal inside", {red, green, blue, Over(green, yellow, 64 / 255.0)});
}

TEST_F(RenderStylePictureTest, whatIsSelectedOrShimmersThroughKeepsItsTextureAndDensity) {
    auto const flat = Core::MakeNode<RenderStyle>();
    auto const style = Core::MakeNode<RenderStyle>();
    auto const cube = Make(Model::SymbolShape::Cube, {}, 1);
    auto const wall = Make(Model::SymbolShape::Cube, {0, 0, 5}, 2);
    auto const behind = Make(Model::SymbolShape::Cube, {0, 0, -5}, 2);
    auto const list = Core::MakeNode<Model::SelectionList>();
    flat->SetLighting(false);
    style->SetTexture(WriteImage("qor-selected-texture.png"));
    style->SetTextureFilters({Types::TextureUnit::Filter::Nearest, Types::TextureUnit::Filter::Nearest});
    style->SetAlphaMode(RenderStyle::AlphaMode::Opaque);
    cube->SetColor(QColor(255, 255, 255));
    wall->SetColor(QColor(0, 0, 0));
    behind->SetColor(QColor(0, 255, 0));
    style->Add(cube);
    for (Core::Ptr<Model::ModelNode> const& node : std::vector<Core::Ptr<Model::ModelNode>>{wall, behind, style, list})
        flat->Add(node);
    picture->GetScene().Add(flat);
    struct Corner {
        double x, y;
        QColor texel;
    };
    Corner const corners[]{{-0.25, 0.25, QColor(255, 0, 0)}, {0.25, 0.25, QColor(0, 255, 0)},
        {-0.25, -0.25, QColor(0, 0, 255)}, {0.25, -0.25, QColor(255, 255, 0)}};

    cube->SetVisibleBehindGeometry(true);
    QImage const shimmering = picture->Render();
    cube->SetVisibleBehindGeometry(false);
    for (Corner const& corner : corners) {
        QColor brightest(0, 0, 0);
        for (int i = 0; i < 64; ++i) { // every fourth pixel of every fourth row, over its other side
            QColor const color = At(shimmering, corner.x + 0.01 * (i % 8), corner.y + 0.01 * (i / 8));
            brightest = color.value() > brightest.value() ? color : brightest;
        }
        for (auto const channel : {&QColor::red, &QColor::green, &QColor::blue})
            EXPECT_EQ((brightest.*channel)() > 100, (corner.texel.*channel)() > 100) << brightest.name().toStdString();
    }

    wall->SetVisible(false);
    list->Select(cube);
    QImage const selected = picture->Render();
    std::string const texture = style->Texture();
    style->SetTexture("");
    QImage const plain = picture->Render();
    for (Corner const& corner : corners) {
        QColor const color = At(plain, corner.x, corner.y);
        EXPECT_FALSE(AreAlike(color, QColor(255, 255, 255))) << "the highlight is seen";
        QColor const wanted(color.red() * corner.texel.red() / 255, color.green() * corner.texel.green() / 255,
            color.blue() * corner.texel.blue() / 255);
        QColor const textured = At(selected, corner.x, corner.y);
        EXPECT_TRUE(AreAlike(textured, wanted))
            << textured.name().toStdString() << " for " << wanted.name().toStdString();
    }

    style->SetOpacity(0.3F);
    QColor const overGreen = At(picture->Render(), 0.2, 0.2);
    behind->SetColor(QColor(0, 0, 0));
    QColor const overBlack = At(picture->Render(), 0.2, 0.2);
    EXPECT_GT(overGreen.green(), overBlack.green() + 20);
}

} // namespace
} // namespace Qor::Chart::Host
