#include "framework/ogl/TextBlock.h"

#include "tests/framework/ogl/GlTest.h"

#include "framework/assets/Resource.h"

#include <cmath>
#include <limits>

namespace Qor::Chart::Ogl {
namespace {

using namespace Tokens;

std::vector<Assets::FontFile> DefaultFonts() {
    static std::vector<Assets::FontFile> const fonts = Assets::Resource().FontSet("");
    return fonts;
}

/// The rectangle around everything that is not black, counted from the lower left; empty when all is.
QRect Drawn(QImage const& p_image) {
    QRect result;
    for (int y = 0; y < p_image.height(); ++y) {
        for (int x = 0; x < p_image.width(); ++x) {
            if ((p_image.pixel(x, y) & 0xFFFFFF) != 0)
                result |= QRect(x, p_image.height() - 1 - y, 1, 1);
        }
    }
    return result;
}

class TextTest : public GlTest {
public:
    void SetUp() override {
        GlTest::SetUp();
        if (IsSkipped())
            return;
        if (DefaultFonts().empty())
            GTEST_SKIP() << "no font is installed";
        text = agl->GenFont(DefaultFonts(), 12);
        text->SetColor(QColor(Qt::white));
    }
    QRect DrawnOf(std::string_view p_text, Types::Viewport<0> const& p_rectangle) {
        Reset(*agl);
        text->Draw(*agl, p_text, p_rectangle);
        return Drawn(Picture());
    }

    std::shared_ptr<Text> text;
};

TEST_P(TextTest, alignmentMovesTheTextInsideItsRectangle) {
    Types::Viewport<0> const rectangle(4, 4, 56, 56);
    for (int const horizontal : {0, 1, 2, 3}) {
        for (int const vertical : {1, 2, 3}) {
            text->SetHorizontalAlignment(static_cast<HorizontalAlignment>(horizontal));
            text->SetVerticalAlignment(static_cast<VerticalAlignment>(vertical));
            QRect const drawn = DrawnOf("HgH", rectangle);
            SCOPED_TRACE(testing::Message() << horizontal << ", " << vertical);
            double const expectedX = horizontal < 2 ? 4 + drawn.width() / 2.0 : 60 - drawn.width() / 2.0;
            double const expectedY = vertical == 1 ? 4 + drawn.height() / 2.0 : 60 - drawn.height() / 2.0;
            EXPECT_NEAR(drawn.x() + drawn.width() / 2.0, horizontal == 3 ? 32 : expectedX, 2);
            EXPECT_NEAR(drawn.y() + drawn.height() / 2.0, vertical == 3 ? 32 : expectedY, 3);
        }
    }
    text->SetHorizontalAlignment(HorizontalAlignment::Start);
    EXPECT_NEAR(DrawnOf("\xD7\x90", rectangle).right(), 58, 2) << "Hebrew starts on the right";
}

TEST_P(TextTest, nothingIsDrawnOutsideTheRectangle) {
    for (Types::Viewport<0> const& rectangle :
        {Types::Viewport<0>(20, 20, 9, 5), Types::Viewport<0>(20, 20, 24, 3), Types::Viewport<0>(20, 20, 1, 40)}) {
        QRect const allowed(20, 20, static_cast<int>(rectangle.width), static_cast<int>(rectangle.height));
        for (int const alignment : {1, 2, 3}) {
            text->SetHorizontalAlignment(static_cast<HorizontalAlignment>(alignment));
            text->SetVerticalAlignment(static_cast<VerticalAlignment>(alignment));
            QRect const drawn = DrawnOf("WWWW\nWWWWW", rectangle);
            EXPECT_TRUE(drawn.isEmpty() || allowed.contains(drawn)) << drawn.x() << " " << drawn.y();
        }
    }
}

TEST_P(TextTest, twiceThePixelRatioIsTwiceTheSizeOnWholePixels) {
    Types::Viewport<0> const rectangle(0, 0, 64, 64);
    QRect const once = DrawnOf("HH", rectangle);
    QImage const first = Picture();
    EXPECT_EQ(DrawnOf("HH", Types::Viewport<0>(0.3F, 0.3F, 64, 64)), once);
    EXPECT_EQ(Picture(), first) << "fractions of pixels don't blur";
    text->SetPixelRatio(2);
    QRect const twice = DrawnOf("HH", rectangle);
    EXPECT_NEAR(twice.width(), 2 * once.width(), 2);
    EXPECT_NEAR(twice.height(), 2 * once.height(), 2);
    EXPECT_EQ(text->Size(), 12);
}

TEST_P(TextTest, colourAndStateOfTheCallerAreKept) {
    agl->Enable(AGL_LIGHTING);
    agl->Enable(AGL_CULL_FACE);
    agl->PolygonMode(AGL_FRONT_AND_BACK, AGL_LINE);
    State const before = agl->Current();
    text->SetColor(QColor(255, 0, 0));
    text->SetSize(200);
    text->Draw(*agl, "\xE2\x96\x88", Types::Viewport<0>(-60, -60, 300, 300)); // a full block
    EXPECT_TRUE(IsNear(Middle(), QColor(255, 0, 0)));
    EXPECT_EQ(agl->Current().enables, before.enables);
    EXPECT_EQ(agl->Current().currentColor.color, before.currentColor.color);
    EXPECT_EQ(agl->Current().textures[0].texture, before.textures[0].texture);
}

TEST_P(TextTest, aBlockOfTextsLooksAsTheTextsDoInOneDraw) {
    TextBlock block;
    std::vector<QImage> pictures;
    for (bool const inBlock : {true, false}) { // the glyphs are new to the block
        Reset(*agl);
        for (int i = 0; i < 3; ++i) {
            Types::Viewport<0> const rectangle(5.4F * float(i), 20.0F * float(i), 40, 18);
            std::string const string = i == 2 ? "W\xC3\xA4g" : "Wag";
            text->SetColor(i == 1 ? QColor(255, 0, 0) : QColor(0, 255, 0, 128));
            text->SetHorizontalAlignment(i == 1 ? HorizontalAlignment::Right : HorizontalAlignment::Left);
            inBlock ? block.Add(*text, string, rectangle) : text->Draw(*agl, string, rectangle);
        }
        for (int frame = 0; inBlock && frame < 2; ++frame) {
            Reset(*agl);
            agl->Enable(AGL_LIGHTING);
            agl->Color(0, 0, 1);
            agl->Flush();
            agl->ResetStatistics();
            block.Draw(*agl);
            pictures.push_back(Picture());
            EXPECT_EQ(agl->GetStatistics().drawCalls, 1U);
        }
    }
    pictures.push_back(Picture());
    EXPECT_THAT(pictures, testing::Each(pictures.front()));
    EXPECT_FALSE(Drawn(pictures.front()).isEmpty());
    block.Clear();
    EXPECT_TRUE(block.IsEmpty());
}

TEST_P(TextTest, manyTextsAreOneDraw) {
    text->Draw(*agl, "0", Types::Viewport<0>(0, 0, 64, 64));
    agl->Flush();
    agl->ResetStatistics();
    auto const other = agl->GenFont(DefaultFonts(), 12);
    for (int i = 0; i < 100; ++i) {
        Text& font = i % 2 == 0 ? *text : *other;
        font.SetColor(i % 3 == 0 ? QColor(Qt::red) : QColor(Qt::green));
        font.Draw(*agl, std::to_string(i), Types::Viewport<0>(float(i % 8), 0, 40, 40));
    }
    agl->Flush();
    EXPECT_LE(agl->GetStatistics().drawCalls, 2U);
}

TEST_P(TextTest, strangeArgumentsAreHarmless) {
    float const nan = std::numeric_limits<float>::quiet_NaN();
    float const infinity = std::numeric_limits<float>::infinity();
    qordebug::CaptureScope capture(Utility::GetLogger());
    for (float const value : {nan, infinity, -infinity, 0.0F, -3.0F}) {
        text->SetSize(value);
        text->SetPixelRatio(value);
    }
    EXPECT_EQ(capture.texts().size(), 10U);
    EXPECT_TRUE(text->Size() == 12 && text->PixelRatio() == 1);
    Types::Viewport<0> const all(0, 0, 64, 64);
    EXPECT_TRUE(DrawnOf("", all).isEmpty());
    for (Types::Viewport<0> const& rectangle : {Types::Viewport<0>(nan, 0, 9, 9), Types::Viewport<0>(0, 0, infinity, 9),
             Types::Viewport<0>(1e30F, 0, 9, 9), Types::Viewport<0>(0, 0, -9, 9), Types::Viewport<0>()}) {
        EXPECT_TRUE(DrawnOf("abc", rectangle).isEmpty());
    }
    EXPECT_FALSE(DrawnOf("\xFF\xFE", all).isEmpty());
    EXPECT_FALSE(DrawnOf(std::string(1 << 20, 'x'), all).isEmpty());
    EXPECT_GT(text->Extents(std::wstring(1, static_cast<wchar_t>(0xD800))).width, 0);
    for (float const size : {1e-9F, 1e9F}) {
        text->SetSize(size);
        text->Draw(*agl, "Wg@", all);
        EXPECT_GT(text->Extents("W").width, 0);
    }
}

TEST_P(TextTest, aFontThatIsMissingDrawsBoxes) {
    qordebug::CaptureScope capture(Utility::GetLogger());
    text = agl->GenFont({}, 20);
    text->SetColor(QColor(Qt::white));
    QRect const box = DrawnOf("a", Types::Viewport<0>(10, 10, 40, 40));
    EXPECT_TRUE(box.width() > 5 && box.height() > 10);
    EXPECT_EQ(At(Picture(), box.center().x(), box.center().y()), QColor(Qt::black)) << "hollow";
    EXPECT_EQ(At(Picture(), box.x(), box.center().y()), QColor(Qt::white));
    EXPECT_EQ(capture.texts().size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(
    Gl, TextTest, testing::Values(Context::Profile::Core, Context::Profile::Compatibility), ProfileName);

TEST(GlyphAtlasTest, glyphsOfAllSizesFindPlaceAndOldOnesAreForgotten) {
    GlyphAtlas atlas;
    auto const face = DefaultFonts().empty() ? nullptr : Assets::FontFace::Open(DefaultFonts()[0]);
    for (int size = 1; size <= Assets::FontFace::MaxPixelSize; size += 3) {
        for (char32_t const character : {U'i', U'W', U'@'}) {
            GlyphAtlas::Entry const entry = atlas.Find(face.get(), face ? face->GlyphOf(character) : 0, size);
            auto const page = atlas.Page(entry.page);
            EXPECT_LT(entry.x + entry.placement.width, page->Width());
            EXPECT_LT(entry.y + entry.placement.height, page->Height());
        }
    }
    EXPECT_GT(atlas.PageCount(), GlyphAtlas::MaxPages);
    atlas.Trim();
    EXPECT_EQ(atlas.PageCount(), 0U);
}

} // namespace
} // namespace Qor::Chart::Ogl
