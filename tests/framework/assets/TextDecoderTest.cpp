#include "framework/assets/TextDecoder.h"

#include <gtest/gtest.h>

#include <vector>

namespace Qor::Chart::Assets {

TEST(TextDecoderTest, brokenPiecesOfUtf8BecomeOneReplacementEach) {
    // Cut short, continuations alone, overlong ones, a surrogate, the last character, and one beyond it.
    std::vector<std::pair<std::string_view, std::u32string>> const cases = {{"", U""},
        {"a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80", U"aä€\U0001F600"}, {"\xE2\x82x", U"\xFFFDx"},
        {"\xF0\x9F\x98", U"\xFFFD"}, {"\x80\xBF", U"\xFFFD\xFFFD"}, {"\xC0\xAF", U"\xFFFD\xFFFD"},
        {"\xE0\x80\x80", U"\xFFFD\xFFFD\xFFFD"}, {"\xED\xA0\x80", U"\xFFFD\xFFFD\xFFFD"}, {"\xED\x9F\xBF", U"\xD7FF"},
        {"\xF4\x8F\xBF\xBF", U"\U0010FFFF"}, {"\xF4\x90\x80\x80", U"\xFFFD\xFFFD\xFFFD\xFFFD"},
        {{"a\0b", 3}, std::u32string(U"a\0b", 3)}};
    for (auto const& [text, expected] : cases)
        EXPECT_EQ(TextDecoder::Utf8(text), expected) << testing::PrintToString(text);
    EXPECT_EQ(TextDecoder::Utf8("\xC3\xA4\xC3\xB6\xC3\xBC", 2), U"äö");
}

TEST(TextDecoderTest, surrogatesPairUpOrAreReplaced) {
    auto const wide = [](std::vector<unsigned> const& p_units) {
        std::wstring text;
        for (unsigned const unit : p_units)
            text.push_back(static_cast<wchar_t>(unit));
        return TextDecoder::Wide(text);
    };
    EXPECT_EQ(wide({0x41, 0xD83D, 0xDE00, 0x42}), U"A\U0001F600B");
    EXPECT_EQ(wide({0xD83D, 0x42}), U"\xFFFD\x42");
    EXPECT_EQ(wide({0xDE00, 0xD83D}), U"\xFFFD\xFFFD");
    if constexpr (sizeof(wchar_t) == 4) {
        EXPECT_EQ(wide({0x1F600, 0x110000, 0xFFFFFFFF}), U"\U0001F600\xFFFD\xFFFD");
    }
}

} // namespace Qor::Chart::Assets
