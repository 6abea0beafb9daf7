#include "render/anim/Blender.h"

#include "framework/qordebug/highrestimer.h"

#include <gtest/gtest.h>

#include <limits>

namespace Qor::Chart::Render {
namespace {

TEST(BlenderTest, newTargetsStartFromThePresentValueAndJumpsEndTheMovement) {
    qordebug::manualclock clock;
    FloatAnimation height(TimedCompletionCriteria(100, 10), 0.0F);
    height.SetTarget(100);
    clock.advance(50);
    EXPECT_FLOAT_EQ(height.Value(), 50);
    height.SetTarget(100);
    EXPECT_FLOAT_EQ(height.Value(), 50) << "the same target does not start again";
    height.SetTarget(0);
    EXPECT_FLOAT_EQ(height.Value(), 50);
    clock.advance(50);
    EXPECT_FLOAT_EQ(height.Value(), 25);
    clock.advance(90'000);
    EXPECT_TRUE(height.IsComplete() && height.Value() == 0.0F);
    height.SetTarget(1.0F, true);
    height.Jump(0.0F);
    EXPECT_TRUE(height.IsComplete() && height.Value() == 0.0F && height.Target() == 0.0F);

    int const lowest = std::numeric_limits<int>::min(), highest = std::numeric_limits<int>::max();
    EXPECT_EQ(NumericIncrementer<int>()(lowest, highest, 1, 1), highest);
    EXPECT_EQ(NumericIncrementer<int>()(-10, 0, 1, 4), -7);
}

} // namespace
} // namespace Qor::Chart::Render
