#include "framework/utility/Unicode.h"

#include <gtest/gtest.h>

namespace {

using namespace Qor::Chart::Utility;

TEST(UnicodeTest, convertsBothWaysAndReplacesWhatIsInvalid) {
    std::wstring const wide = L"a\u00e4\u20ac\U0001F600";
    EXPECT_EQ(ToUtf8(wide), "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_EQ(FromUtf8(ToUtf8(wide)), wide);
    EXPECT_EQ(
        ToUtf8(std::wstring{static_cast<wchar_t>(0xD800), static_cast<wchar_t>(0x110000)}), "\xEF\xBF\xBD\xEF\xBF\xBD");
    for (auto const& [text, replaced] : {std::pair("\xC3", 1), std::pair("\xC0\x80", 2), std::pair("\xED\xA0\x80", 3),
             std::pair("\xF8\x80", 2), std::pair("\xE2\x82", 2), std::pair("\x80", 1)}) {
        EXPECT_EQ(FromUtf8(text), std::wstring(static_cast<std::size_t>(replaced), L'\uFFFD')) << replaced;
    }
}

} // namespace
