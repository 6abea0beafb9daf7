#include "framework/utility/Ensure.h"

#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using Qor::Chart::Utility::GetLogger;

std::string g_signature;

struct Checker {
    static bool Check(int p_value, int& p_evaluated) {
        g_signature = __PRETTY_FUNCTION__;
        return QOR_ENSURE(++p_evaluated > 0 && p_value > 0 && "Must be \"positive\"!");
    }
    static bool CheckText(bool p_value) { return QOR_ENSURE_TEXT(p_value, "Library::f( a, b)"); }
    template <class A, class B>
    static bool Same() {
        return QOR_ENSURE(std::is_same_v<A, B>);
    }
};

TEST(EnsureTest, failedConditionsAreReportedWithConditionAndSignature) {
    qordebug::CaptureScope const capture(GetLogger());
    int evaluated = 0;
    EXPECT_TRUE(Checker::Check(1, evaluated));
    EXPECT_TRUE(Checker::CheckText(true));
    EXPECT_TRUE((Checker::Same<int, int>()));
    EXPECT_TRUE(capture.empty());

    EXPECT_FALSE(Checker::Check(0, evaluated));
    EXPECT_FALSE(Checker::CheckText(false));
    EXPECT_FALSE((Checker::Same<int, long>()));
    EXPECT_EQ(evaluated, 2);
    auto const texts = capture.texts(qordebug::severity::ensure);
    ASSERT_EQ(texts.size(), 3U);
    EXPECT_EQ(texts[0], R"("++p_evaluated > 0 && p_value > 0 && "Must be \"positive\"!"" - )" + g_signature);
    EXPECT_THAT(texts[1], testing::StartsWith("\"Library::f( a, b)\" - "));
    EXPECT_THAT(texts[2], testing::StartsWith("\"std::is_same_v<A, B>\" - "));
}

TEST(EnsureTest, linesAreAppendedToSignatures) {
    EXPECT_EQ(Qor::Chart::Utility::AtLine("void f()", 552), "void f() @line552");
}

} // namespace
