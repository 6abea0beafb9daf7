#include "framework/utility/StackLimit.h"

#include <gtest/gtest.h>

#include <pthread.h>

#include <cstddef>

namespace Qor::Chart::Utility {

namespace {

struct Findings {
    std::size_t remainingAtStart = 0;
    std::size_t depth = 0;
    bool nearAtStart = true;
};

/// How deep a recursion comes before the limit is near. Each level uses the frame of the one above, so that no compiler
/// turns this into a loop.
[[gnu::noinline]] std::size_t Descend(StackLimit const& p_limit, char volatile* p_above) {
    char volatile frame[512];
    frame[0] = *p_above;
    std::size_t const below = p_limit.IsNear() ? 0 : Descend(p_limit, frame);
    frame[1] = frame[0];
    return below + 1;
}

void* RunOut(void* p_findings) {
    auto& findings = *static_cast<Findings*>(p_findings);
    StackLimit const limit = StackLimit::Current();
    findings.remainingAtStart = limit.Remaining();
    findings.nearAtStart = limit.IsNear();
    char volatile start = 0;
    findings.depth = Descend(limit, &start);
    return nullptr;
}

Findings OnThread(std::size_t p_stack) {
    Findings findings;
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, p_stack);
    pthread_t thread{};
    EXPECT_EQ(pthread_create(&thread, &attributes, &RunOut, &findings), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    return findings;
}

} // namespace

TEST(StackLimitTest, aRecursionEndsBeforeItsStackDoesWhateverItsSize) {
    for (std::size_t const stack : {std::size_t{256} << 10, std::size_t{2} << 20, std::size_t{16} << 20}) {
        Findings const findings = OnThread(stack);
        EXPECT_FALSE(findings.nearAtStart) << stack;
        EXPECT_LT(findings.remainingAtStart, stack);
        EXPECT_GT(findings.remainingAtStart, stack / 2) << "too little of the stack is offered";
        EXPECT_GT(findings.depth, 10U);
        EXPECT_LT(findings.depth * 512, stack);
    }
}

TEST(StackLimitTest, isKnownOnTheMainThread) {
    StackLimit const limit = StackLimit::Current();
    EXPECT_FALSE(limit.IsNear());
    EXPECT_GT(limit.Remaining(), std::size_t{64} << 10);
    EXPECT_LT(limit.Remaining(), SIZE_MAX);
    EXPECT_LT(StackLimit::Current(2 * StackLimit::DefaultReserve).Remaining(), limit.Remaining());
}

TEST(StackLimitTest, isNeverNearByDefault) {
    EXPECT_FALSE(StackLimit().IsNear());
    EXPECT_EQ(StackLimit().Remaining(), SIZE_MAX);
}

} // namespace Qor::Chart::Utility
