#include "render/anim/Blender.h"

#include "framework/qordebug/CaptureScope.h"
#include "framework/qordebug/highrestimer.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>

#include <limits>

namespace Qor::Chart::Render {
namespace {

TEST(TimedCompletionCriteriaTest, stepsFollowTheClock) {
    struct Case {
        unsigned duration, steps, elapsed, step;
    };
    for (Case const& c : {Case{300, 10, 1, 1}, Case{300, 10, 150, 5}, Case{300, 10, 299, 10}, Case{300, 10, 90'000, 10},
             Case{300, 0, 0, 0}, Case{0, 10, 0, 10}}) {
        qordebug::manualclock clock;
        TimedCompletionCriteria criteria(c.duration, c.steps);
        clock.advance(c.elapsed);
        EXPECT_EQ(criteria.Step(), c.step) << c.duration << ' ' << c.steps << ' ' << c.elapsed;
        criteria.Reset();
        EXPECT_EQ(criteria.Step(), c.duration == 0 ? c.steps : 0U);
    }
}

TEST(NumericIncrementerTest, valuesLieOnTheWayAndAreTruncated) {
    NumericIncrementer<int> const whole;
    struct Case {
        int from, to;
        unsigned step, of;
        int value;
    };
    int const lowest = std::numeric_limits<int>::min();
    int const highest = std::numeric_limits<int>::max();
    for (Case const& c : {Case{0, 10, 2, 8, 2}, Case{10, 0, 2, 8, 7}, Case{-10, 0, 1, 4, -7}, Case{0, 10, 8, 8, 10},
             Case{5, 9, 0, 0, 5}, Case{lowest, highest, 1, 1, highest}})
        EXPECT_EQ(whole(c.from, c.to, c.step, c.of), c.value) << c.from << ' ' << c.to << ' ' << c.step;
    qordebug::CaptureScope log(Utility::GetLogger());
    EXPECT_EQ(whole(0, 10, 11, 10), 10);
    EXPECT_THAT(log.texts(), ::testing::ElementsAre(::testing::StartsWith("\"p_step <= p_of\" - ")));
}

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
    clock.advance(50);
    EXPECT_TRUE(height.IsComplete() && height.Value() == 0.0F);

    height.SetTarget(0.25F, false);
    EXPECT_TRUE(height.IsComplete() && height.Value() == 0.25F);
    height.SetTarget(1.0F, true);
    height.Jump(0.0F);
    EXPECT_TRUE(height.IsComplete() && height.Value() == 0.0F && height.Target() == 0.0F);
}

} // namespace
} // namespace Qor::Chart::Render
