#include "framework/utility/Ensure.h"

#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>

namespace {

std::string g_signature;

bool Check(int p_value, int& p_evaluated) {
    g_signature = __PRETTY_FUNCTION__;
    return QOR_ENSURE(++p_evaluated > 0 && p_value > 0 && "Must be \"positive\"!");
}
template <class A, class B>
bool Same() {
    return QOR_ENSURE(std::is_same_v<A, B>) && QOR_ENSURE_TEXT(sizeof(A) > 4, "Library::f( a, b)");
}

TEST(EnsureTest, failedConditionsAreReportedOnceWithConditionAndSignature) {
    qordebug::CaptureScope const capture(Qor::Chart::Utility::GetLogger());
    int evaluated = 0;
    EXPECT_TRUE(Check(1, evaluated) && (Same<double, double>()));
    EXPECT_TRUE(capture.empty());
    EXPECT_FALSE(Check(0, evaluated) || (Same<int, long>()) || (Same<int, int>()));
    EXPECT_EQ(evaluated, 2);
    EXPECT_THAT(capture.texts(qordebug::severity::ensure),
        testing::ElementsAre(R"("++p_evaluated > 0 && p_value > 0 && "Must be \"positive\"!"" - )" + g_signature,
            testing::StartsWith("\"std::is_same_v<A, B>\" - "), testing::StartsWith("\"Library::f( a, b)\" - ")));
}

} // namespace
