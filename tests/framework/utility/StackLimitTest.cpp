#include "framework/utility/StackLimit.h"

#include "tests/framework/utility/OnThread.h"

#include <gtest/gtest.h>

namespace Qor::Chart::Utility {

namespace {

/// How deep a recursion comes before the limit is near. Each level uses the frame of the one above, so that no compiler
/// turns this into a loop.
[[gnu::noinline]] std::size_t Descend(StackLimit const& p_limit, char volatile* p_above) {
    char volatile frame[512];
    frame[0] = *p_above;
    std::size_t const below = p_limit.IsNear() ? 0 : Descend(p_limit, frame);
    frame[1] = frame[0];
    return below + 1;
}

} // namespace

TEST(StackLimitTest, aRecursionEndsBeforeItsStackDoesWhateverItsSize) {
    for (std::size_t const stack : {std::size_t{256} << 10, std::size_t{2} << 20, std::size_t{16} << 20}) {
        std::size_t remaining = 0;
        std::size_t depth = 0;
        OnThread(stack, [&] {
            StackLimit const limit = StackLimit::Current();
            remaining = limit.Remaining();
            char volatile start = 0;
            depth = Descend(limit, &start);
        });
        EXPECT_LT(remaining, stack);
        EXPECT_GT(remaining, stack / 2) << "too little of the stack is offered";
        EXPECT_GT(depth, 10U);
        EXPECT_LT(depth * 512, stack);
    }
}

} // namespace Qor::Chart::Utility
