#include "framework/library/Box.h"
#include "framework/library/FilledBox.h"
#include "framework/library/Style.h"
#include "framework/library/TexturedQuad.h"

#include "framework/ogl/HitDetect.h"
#include "tests/framework/ogl/GlTest.h"

#include <functional>
#include <limits>
#include <string>

namespace Qor::Chart::Library {
namespace {

using namespace Ogl::Tokens;
using Bounds = Types::BoundingBox_Base<double>;
using Area = Types::Viewport<0>;

Area const Target(10, 10, 20, 10);
Bounds const Room({10, 10, -0.5}, {40, 40, 0.5});
QColor const Half(255, 0, 0, 128);
float const NaN = std::numeric_limits<float>::quiet_NaN();

/// Six pixels of different colours, the last one half transparent, rows from the top.
QImage SixColors() {
    QImage image(3, 2, QImage::Format_ARGB32);
    std::array<QColor, 6> const colors{Qt::red, Qt::green, Qt::blue, Qt::cyan, Qt::magenta, Half};
    for (int i = 0; i < 6; ++i)
        image.setPixelColor(i % 3, i / 3, colors[static_cast<std::size_t>(i)]);
    return image;
}

class DrawnPartsTest : public Ogl::GlTest {
protected:
    Texture Load(QImage const& p_image, Ogl::TextureSampling const& p_sampling = Texture::Exact) const {
        Utility::Scoped<Ogl::Agl> scope{Utility::Unscoped<Ogl::Agl>(*agl)};
        return Texture(p_image, scope, "six.png", p_sampling);
    }
};

TEST_P(DrawnPartsTest, samplePointsInSpiteOfWhatTheCallerHasSet) {
    struct Sample {
        int x;
        int y;
        QColor color;
    };
    struct Case {
        char const* what;
        std::function<void(Ogl::Agl&)> draw;
        std::vector<Sample> samples;
    };
    Texture const six = Load(SixColors());
    Case const cases[] = {
        {"frame through the pixels that it names", [](auto& p) { Box(Qt::red, Qt::blue).Draw(p, Target); },
            {{10, 10, Qt::red}, {30, 20, Qt::red}, {30, 10, Qt::red}, {9, 10, Qt::black}, {31, 20, Qt::black},
                {30, 21, Qt::black}, {11, 11, Qt::blue}, {29, 19, Qt::blue}}},
        {"filling without a frame, sides turned around",
            [](auto& p) { Box({}, Qt::blue).Draw(p, Area(30, 20, -20, -10)); },
            {{10, 10, Qt::blue}, {30, 20, Qt::blue}, {31, 20, Qt::black}, {9, 10, Qt::black}}},
        {"wide frame grows inwards",
            [](auto& p) {
                Box box(Qt::red, Qt::blue);
                box.SetLineWidth(3);
                box.Draw(p, Target);
            },
            {{9, 12, Qt::black}, {12, 12, Qt::red}, {13, 13, Qt::blue}, {27, 17, Qt::blue}, {28, 17, Qt::red}}},
        {"not a rectangle", [](auto& p) { Box(Qt::red, Qt::blue).Draw(p, Area(NaN, 10, 20, 10)); },
            {{15, 15, Qt::black}}},
        {"edges alone", [](auto& p) { Box(Qt::red).Draw(p, Room); }, {{25, 25, Qt::black}, {20, 30, Qt::black}}},
        {"both sides of a translucent box", [](auto& p) { FilledBox({}, Half).Draw(p, Room); },
            {{25, 25, QColor(191, 0, 0)}, {41, 25, Qt::black}}},
        {"a flat box is seen once",
            [](auto& p) {
                FilledBox({}, Half).Draw(p, Bounds({10, 10, 0}, {40, 40, 0}));
            },
            {{25, 25, QColor(128, 0, 0)}}},
        {"mirrored opaque box",
            [](auto& p) {
                p.Scale(-1, 1, 1);
                Box({}, Qt::blue).Draw(p, Bounds({-40, 10, -0.5}, {-10, 40, 0.5}));
            },
            {{25, 25, Qt::blue}}},
        {"image upright", [&](auto& p) { TexturedQuad(Area(10, 10, 30, 20)).Draw(p, six); },
            {{15, 25, Qt::red}, {25, 25, Qt::green}, {35, 25, Qt::blue}, {15, 15, Qt::cyan},
                {35, 15, QColor(128, 0, 0)}, {9, 15, Qt::black}, {40, 15, Qt::black}}},
        {"part of an image, coloured",
            [&](auto& p) {
                TexturedQuad(9, 9).SetPosition(20, 30).SetPart(1. / 3, 0, 2. / 3, 0.5).SetColor(Qt::blue).Draw(p, six);
            },
            {{20, 30, Qt::blue}, {28, 38, Qt::blue}, {29, 38, Qt::black}}},
        {"no image, no area",
            [&](auto& p) {
                qordebug::CaptureScope const log(Utility::GetLogger());
                TexturedQuad(30, 30).Draw(p, Load(QImage()));
                EXPECT_EQ(log.texts().size(), 1U);
                EXPECT_TRUE(log.contains("The image \"six.png\" has no pixels"));
                TexturedQuad(30, -30).Draw(p, six);
            },
            {{5, 5, Qt::black}}},
    };
    for (Case const& test : cases) {
        Reset(*agl);
        six.Bind(*agl);
        for (Ogl::Token const capability : {AGL_LIGHTING, AGL_CULL_FACE, AGL_POLYGON_STIPPLE, AGL_LINE_STIPPLE})
            agl->Enable(capability);
        agl->PolygonStipple(Pattern::PolygonStipplePattern(0).data());
        agl->LineStipple(1, 0);
        agl->PolygonMode(AGL_FRONT_AND_BACK, AGL_LINE);
        agl->TexEnv(AGL_TEXTURE_ENV_MODE, AGL_ADD);
        agl->Color(0, 1, 0);
        agl->PushMatrix();
        test.draw(*agl);
        agl->PopMatrix();
        EXPECT_EQ(agl->Current().currentColor.color, Types::Color4f(0, 1, 0)) << test.what;
        EXPECT_TRUE(agl->IsEnabled(AGL_LIGHTING) && agl->IsEnabled(AGL_TEXTURE_2D) && !agl->IsEnabled(AGL_BLEND));
        for (Sample const& sample : test.samples)
            EXPECT_TRUE(IsNear(At(Picture(), sample.x, sample.y), sample.color))
                << test.what << " at " << sample.x << ", " << sample.y;
    }
}

TEST_P(DrawnPartsTest, whatCannotBeSeenLeavesNoFringe) {
    QImage sign(24, 24, QImage::Format_ARGB32);
    sign.fill(0);
    for (int i = 4; i < 20; ++i)
        sign.setPixelColor(i, 12, Qt::white);
    Box({}, Qt::white).Draw(*agl, Area(0, 0, 63, 63));
    TexturedQuad(Area(0, 0, 63, 63))(*agl, Load(sign, Texture::Smooth));
    TexturedQuad(5, 5)(*agl, Load(sign, Texture::Smooth));
    QImage const picture = Picture();
    for (int i = 0; i < 64 * 64; ++i)
        ASSERT_EQ(picture.pixel(i % 64, i / 64) & 0xFFFFFFU, 0xFFFFFFU) << i;
}

INSTANTIATE_TEST_SUITE_P(Gl, DrawnPartsTest,
    testing::Values(Ogl::Context::Profile::Core, Ogl::Context::Profile::Compatibility), Ogl::ProfileName);

TEST(DrawnParts, anImageBeyondTheDeviceIsScaledDownWithOneWarning) {
    Ogl::RecordedAgl recorded;
    Utility::Scoped<Ogl::Agl> scope{Utility::Unscoped<Ogl::Agl>(recorded.agl)};
    qordebug::CaptureScope const log(Utility::GetLogger());
    Texture const texture(QImage(40000, 3, QImage::Format_Grayscale8), scope, "coast.png");
    EXPECT_EQ(std::pair(texture.Handle()->Width(), texture.Handle()->Height()), std::pair(16384, 1));
    EXPECT_EQ(std::pair(texture.Width(), texture.Height()), std::pair(40000, 3));
    EXPECT_THAT(log.texts(),
        testing::ElementsAre("The image \"coast.png\" of 40000 by 3 pixels is larger than the 16384 "
                             "by 16384 that the device takes; it is scaled down to 16384 by 1."));
}

TEST(DrawnParts, nestedStylesOverrideWhatTheySetAndRestoreIt) {
    Ogl::RecordedAgl recorded;
    Style outer;
    outer.line = LineStyle{3, LineStyle::Dashed, 2};
    outer.fill = FillStyle{FillStyle::Kind::Hatched};
    outer.isTransparent = true;
    Style inner;
    inner.line = LineStyle{};
    inner.fill = FillStyle{FillStyle::Kind::Outlined};
    auto const enables = [&] { return recorded.agl.Current().enables; };
    StyleScope const outerScope(recorded.agl, outer);
    auto const before = enables();
    {
        StyleScope const innerScope(recorded.agl, inner);
        EXPECT_EQ(before & ~enables(), Ogl::EnableBit::PolygonStipple | Ogl::EnableBit::LineStipple);
        EXPECT_EQ(recorded.agl.Current().line.width, 1);
    }
    EXPECT_EQ(enables(), before);
    EXPECT_EQ(recorded.agl.Current().line.width, 3);
}

} // namespace
} // namespace Qor::Chart::Library
