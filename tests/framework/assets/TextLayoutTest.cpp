#include "framework/assets/TextLayout.h"

#include "framework/assets/Resource.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <tuple>
#include <vector>

namespace Qor::Chart::Assets {
namespace {

class TextLayoutTest : public testing::Test {
public:
    void SetUp() override {
        if (Resource().FontSet("").empty())
            GTEST_SKIP() << "no font is installed";
    }
    TextLayout Layout(std::u32string const& p_text, int p_width = TextLayout::Unlimited,
        int p_height = TextLayout::Unlimited, bool p_breaksLines = true) {
        return TextLayout(fonts, p_text, {16, p_width, p_height, p_breaksLines});
    }
    /// The glyphs of the first line, from the left.
    std::vector<std::uint32_t> Drawn(std::u32string const& p_text) {
        TextLayout const layout = Layout(p_text);
        std::vector<std::uint32_t> glyphs;
        for (TextLayout::Glyph const& glyph : layout.Lines()[0].glyphs)
            glyphs.push_back(glyph.glyph);
        return glyphs;
    }
    std::uint32_t GlyphOf(char32_t p_character) { return fonts.FaceFor(p_character)->GlyphOf(p_character); }
    std::vector<std::uint32_t> GlyphsOf(std::u32string const& p_characters) {
        std::vector<std::uint32_t> glyphs(p_characters.size());
        std::ranges::transform(p_characters, glyphs.begin(), [this](char32_t p) { return GlyphOf(p); });
        return glyphs;
    }

    FontStack fonts{Resource().FontSet("")};
};

TEST_F(TextLayoutTest, linesEndAtLineFeedsAndAtWords) {
    std::vector<std::tuple<std::u32string, std::u32string, std::size_t>> const cases = {
        // a text, the widest that fits, lines
        {U"", U"", 0},
        {U"a\nb\r\nc\rd\u2028e", U"abc", 5},
        {U"a\n\n", U"abc", 3},
        {U"\n", U"a", 2},
        {U"aaa bbb ccc", U"aaa bbb", 2},
        {U"aaa aaa aaa", U"aaa", 3},
        {U"aaa    ", U"aaa", 1}, // spaces may hang over
        {U"aaaaaa", U"aa", 3}, // a word that is too long
        {U"bb aaaaaa", U"aaa", 3},
        {U"aa-bb", U"aa-", 2},
    };
    for (auto const& [text, widest, lines] : cases) {
        TextLayout const layout = Layout(text, Layout(widest).Width());
        EXPECT_EQ(layout.Lines().size(), lines) << testing::PrintToString(text);
        EXPECT_FALSE(layout.IsElided());
    }
    EXPECT_EQ(Layout(U"aaa bbb", Layout(U"aaa").Width(), TextLayout::Unlimited, false).Lines().size(), 1U);
}

TEST_F(TextLayoutTest, whatDoesNotFitEndsWithAnEllipsis) {
    int const line = Layout(U"a").Height();
    int const wide = Layout(U"aaaa bbbb").Width();
    std::vector<std::tuple<std::u32string, int, int, std::size_t, bool>> const cases = {
        {U"aaaa bbbb", wide, line, 1, false},
        {U"aaaa bbbb", wide - 1, line, 1, true},
        {U"aaaa bbbb", wide - 1, 2 * line, 2, false},
        {U"aaaa bbbb bbbb", wide - 1, 2 * line, 2, true},
        {U"a\nb\nc", wide, 2 * line, 2, true},
        {U"aaaa bbbb", wide - 1, 1, 1, true},
        {U"aaaa bbbb", 0, 0, 1, true},
    };
    std::uint32_t const ellipsis = GlyphOf(0x2026);
    for (auto const& [text, width, height, lines, isElided] : cases) {
        TextLayout const layout = Layout(text, width, height);
        ASSERT_EQ(layout.Lines().size(), lines) << width << " x " << height;
        EXPECT_EQ(layout.IsElided(), isElided);
        EXPECT_EQ(layout.Lines().back().glyphs.back().glyph == ellipsis, isElided);
        EXPECT_TRUE(layout.Width() <= width || width == 0) << layout.Width();
    }
    TextLayout const hebrew = Layout(U"שלום עולם", Layout(U"שלום עולם").Width() - 1, line);
    EXPECT_EQ(hebrew.Lines().front().glyphs.front().glyph, ellipsis) << "right-to-left text ends on the left";
}

TEST_F(TextLayoutTest, rightToLeftTextRunsFromTheRight) {
    if (!fonts.FaceFor(U'א') || !fonts.FaceFor(U'ب'))
        GTEST_SKIP() << "no font has Hebrew and Arabic";
    EXPECT_EQ(Drawn(U"אבג"), GlyphsOf(U"גבא"));
    EXPECT_EQ(Drawn(U"x אב 12 y"), GlyphsOf(U"x 12 בא y")) << "numbers keep their order";
    EXPECT_EQ(Drawn(U"א x(y) ב"), GlyphsOf(U"ב x(y) א"));
    EXPECT_EQ(Drawn(U"א(ב"), GlyphsOf(U"ב)א")) << "brackets are mirrored";
    EXPECT_TRUE(Layout(U"אב x").Lines()[0].isRightToLeft);
    EXPECT_FALSE(Layout(U"x אב").Lines()[0].isRightToLeft);
    auto const arabic = Drawn(U"ببب");
    ASSERT_EQ(arabic.size(), 3U);
    EXPECT_TRUE(arabic[0] != arabic[1] && arabic[1] != arabic[2]) << "letters join";
}

TEST_F(TextLayoutTest, marksStandOverTheirLettersAndControlsVanish) {
    EXPECT_EQ(Layout(U"e\u0301").Width(), Layout(U"é").Width());
    EXPECT_EQ(Layout(U"a\u200D\u2060\u202Db\x07 c").Width(), Layout(U"ab c").Width());
    EXPECT_EQ(Layout(U"a\tb").Width(), Layout(U"a b").Width());
}

TEST_F(TextLayoutTest, missingCharactersAreBoxesAndOneLineInTheLog) {
    qordebug::CaptureScope capture(Utility::GetLogger());
    FontStack none({{"/no/such/font.ttf", 0}});
    TextLayout const layout(none, U"ab\u0301 אc", {});
    EXPECT_TRUE(std::ranges::all_of(
        layout.Lines()[0].glyphs, [](TextLayout::Glyph const& p_glyph) { return p_glyph.face == nullptr; }));
    EXPECT_TRUE(layout.Width() > 0 && layout.Height() > 0);
    EXPECT_EQ(capture.texts().size(), 2U) << "one for the file, one for the characters";

    capture.clear();
    TextLayout const privateUse = Layout(U"a\U0010FFFD\U0010FFFCb");
    EXPECT_EQ(privateUse.Lines()[0].glyphs[1].face, nullptr);
    EXPECT_EQ(capture.texts(qordebug::severity::warning).size(), 1U);
    EXPECT_TRUE(capture.contains("U+10FFFD"));
}

TEST_F(TextLayoutTest, aTextOfAMillionCharactersIsCutShort) {
    for (std::u32string_view const piece : {U"x", U"a ", U"\n", U"א", U"\u0301", U"\u202B", U"("}) {
        std::u32string text;
        while (text.size() < 1'000'000)
            text += piece;
        for (int const extent : {100, TextLayout::Unlimited}) {
            TextLayout const layout = Layout(text, extent, extent);
            EXPECT_TRUE(layout.IsElided() && layout.Height() <= extent);
            EXPECT_LE(layout.Lines().size(), TextLayout::MaxLength + 1);
        }
    }
}

TEST(FontSetTest, namesThatAreNotInstalledAndBrokenFilesFallBack) {
    namespace fs = std::filesystem;
    fs::path const folder = fs::path(testing::TempDir()) / "fonts";
    fs::create_directories(folder);
    std::ofstream(folder / "Broken.ttf") << "this is not a font";
    Resource resource;
    resource.AddFolder(folder.string());
    qordebug::CaptureScope capture(Utility::GetLogger());
    std::vector<FontFile> const defaults = resource.FontSet("");
    if (defaults.empty())
        GTEST_SKIP() << "no font is installed";
    EXPECT_TRUE(capture.empty());
    EXPECT_FALSE(resource.FontSet("No Such Family").empty() || resource.FontSet("No Such Family").empty());
    EXPECT_EQ(capture.texts().size(), 1U);
    std::vector<FontFile> const broken = resource.FontSet("Broken");
    ASSERT_GT(broken.size(), 1U);
    EXPECT_EQ(broken[0].file.filename(), "Broken.ttf");
    FontStack fonts(broken);
    EXPECT_NE(fonts.FaceFor(U'a'), nullptr);
    EXPECT_TRUE(capture.contains("Broken.ttf"));
    EXPECT_EQ(FontFace::Open(defaults[0]), FontFace::Open(defaults[0])) << "shared while in use";
}

} // namespace
} // namespace Qor::Chart::Assets
