#include "framework/utility/BoundedCounter.h"
#include "framework/utility/LightString.h"
#include "framework/utility/TypeInfo.h"
#include "framework/utility/Unicode.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>

namespace {

using namespace Qor::Chart::Utility;

struct Base {
    virtual ~Base() = default;
};
struct Derived : Base {};

TEST(BoundedCounterTest, neverPassesItsBounds) {
    BoundedCounter counter(3);
    EXPECT_TRUE(counter.TryIncrement(2));
    EXPECT_FALSE(counter.TryIncrement(2));
    EXPECT_FALSE(counter.TryIncrement(~0U));
    EXPECT_TRUE(counter.TryIncrement());
    EXPECT_FALSE(counter.TryIncrement());
    EXPECT_EQ(counter.Value(), 3U);
    EXPECT_FALSE(counter.TryDecrement(4));
    EXPECT_TRUE(counter.TryDecrement(3));
    EXPECT_FALSE(counter.TryDecrement());
    EXPECT_EQ(counter, BoundedCounter(3));
    EXPECT_FALSE(BoundedCounter().TryIncrement());
    std::ostringstream stream;
    stream << counter;
    EXPECT_EQ(stream.str(), "0/3");
}

TEST(TypeInfoTest, keysTellRunTimeTypesApart) {
    Derived const derived;
    Base const& base = derived;
    EXPECT_EQ(TypeInfo(typeid(base)), TypeInfo::Of<Derived>());
    EXPECT_NE(TypeInfo::Of<Base>(), TypeInfo::Of<Derived>());
    EXPECT_NE(TypeInfo::Of<Base>() < TypeInfo::Of<Derived>(), TypeInfo::Of<Derived>() < TypeInfo::Of<Base>());
    EXPECT_EQ(TypeInfo(), TypeInfo::Of<void>());
    EXPECT_EQ((TypeInfo::Of<std::map<int, bool>>().Name().substr(0, 19)), "std::map<int, bool,");
    std::map<TypeInfo, int> const entries{{TypeInfo::Of<Base>(), 1}, {TypeInfo::Of<Derived>(), 2}};
    EXPECT_EQ(entries.at(typeid(base)), 2);
}

TEST(LightStringTest, copiesShareTheirText) {
    LightString const literal("symbol");
    std::string source = "symbol";
    LightString const owned(source);
    LightString copy;
    copy = owned;
    source = "changed";
    EXPECT_EQ(literal, owned);
    EXPECT_EQ(copy.CStr(), owned.CStr());
    EXPECT_STREQ(copy.CStr(), "symbol");
    EXPECT_EQ(std::hash<LightString>()(literal), std::hash<LightString>()(owned));
    EXPECT_LT(LightString("a"), literal);
    EXPECT_EQ(LightString(), LightString(std::string()));
    EXPECT_TRUE(literal == std::string_view("symbol"));
}

TEST(UnicodeTest, convertsBothWaysAndReplacesWhatIsInvalid) {
    std::wstring const wide = L"a\u00e4\u20ac\U0001F600";
    std::string const narrow = "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80";
    EXPECT_EQ(ToUtf8(wide), narrow);
    EXPECT_EQ(FromUtf8(narrow), wide);
    EXPECT_EQ(ToUtf8(std::wstring(1, static_cast<wchar_t>(0xD800))), "\xEF\xBF\xBD");
    EXPECT_EQ(ToUtf8(std::wstring(1, static_cast<wchar_t>(0x110000))), "\xEF\xBF\xBD");
    for (auto const& [text, replaced] : {std::pair("\xC3", 1), std::pair("\xC0\x80", 2), std::pair("\xED\xA0\x80", 3),
             std::pair("\xF8\x80", 2), std::pair("\xE2\x82", 2), std::pair("\x80", 1)}) {
        EXPECT_EQ(FromUtf8(text), std::wstring(static_cast<std::size_t>(replaced), L'\uFFFD')) << replaced;
    }
}

} // namespace
