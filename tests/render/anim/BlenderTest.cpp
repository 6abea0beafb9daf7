#include "render/anim/Blender.h"

#include "framework/qordebug/CaptureScope.h"
#include "framework/qordebug/highrestimer.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace Qor::Chart::Render {
namespace {

using ::testing::HasSubstr;

TEST(TimedCompletionCriteriaTest, stepsFollowTheClock) {
    struct Case {
        unsigned duration, steps, elapsed, step;
    };
    for (Case const& c : {Case{300, 10, 0, 0}, Case{300, 10, 1, 1}, Case{300, 10, 150, 5}, Case{300, 10, 299, 10},
             Case{300, 10, 300, 10}, Case{300, 10, 90'000, 10}, Case{300, 0, 0, 0}, Case{0, 10, 0, 10}}) {
        qordebug::manualclock clock;
        TimedCompletionCriteria criteria(c.duration, c.steps);
        clock.advance(c.elapsed);
        EXPECT_EQ(criteria.Step(), c.step) << c.duration << ' ' << c.steps << ' ' << c.elapsed;
        EXPECT_EQ(criteria.Of(), c.steps);
        criteria.Inc();
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
             Case{5, 5, 1, 2, 5}, Case{5, 9, 0, 0, 5}, Case{lowest, highest, 1, 1, highest}})
        EXPECT_EQ(whole(c.from, c.to, c.step, c.of), c.value) << c.from << ' ' << c.to << ' ' << c.step;
    EXPECT_FLOAT_EQ(NumericIncrementer<float>()(0.5F, 0.0F, 1, 4), 0.375F);

    qordebug::CaptureScope log(Utility::GetLogger());
    EXPECT_EQ(whole(0, 10, 11, 10), 10);
    ASSERT_EQ(log.texts().size(), 1U);
    EXPECT_THAT(log.texts().front(), ::testing::StartsWith("\"p_step <= p_of\" - "));
    EXPECT_THAT(log.texts().front(), HasSubstr("operator()"));
}

TEST(ColorBlenderTest, everyChannelIsBlendedAndKeptInRange) {
    ColorBlender const blend;
    QColor const grey = blend(Qt::black, Qt::white, 5, 10);
    QColor const faint = blend(QColor(255, 0, 0, 0), QColor(0, 0, 255, 255), 1, 4);
    for (double const channel : {grey.redF(), grey.greenF(), grey.blueF()})
        EXPECT_NEAR(channel, 0.5, 1e-4);
    EXPECT_DOUBLE_EQ(grey.alphaF(), 1.0);
    EXPECT_NEAR(faint.redF(), 0.75, 1e-4);
    EXPECT_NEAR(faint.blueF(), 0.25, 1e-4);
    EXPECT_NEAR(faint.alphaF(), 0.25, 1e-4);
    EXPECT_EQ(blend(Qt::black, Qt::white, 30, 10), QColor(Qt::white));
    EXPECT_TRUE(blend(Qt::black, Qt::white, 0, 0).isValid()) << "a step of none";
    EXPECT_TRUE(blend(QColor(), Qt::white, 1, 2).isValid());
}

TEST(BlenderTest, newTargetsStartFromThePresentValue) {
    qordebug::manualclock clock;
    IntAnimation height(TimedCompletionCriteria(100, 10), 0);
    EXPECT_TRUE(height.IsComplete());
    height.SetTarget(100);
    EXPECT_FALSE(height.IsComplete());
    EXPECT_EQ(height.Value(), 0);
    clock.advance(50);
    EXPECT_EQ(height.Value(), 50);
    height.SetTarget(100);
    EXPECT_EQ(height.Value(), 50) << "the same target does not start again";
    height.SetTarget(0);
    EXPECT_EQ(height.Value(), 50);
    clock.advance(50);
    EXPECT_EQ(height.Value(), 25);
    clock.advance(50);
    EXPECT_EQ(height.Value(), 0);
    EXPECT_TRUE(height.IsComplete());
}

TEST(BlenderTest, jumpsEndTheMovement) {
    qordebug::manualclock clock;
    FloatAnimation pulse(TimedCompletionCriteria(2000, 40), 0.0F);
    pulse.SetTarget(0.5F);
    pulse.Jump();
    EXPECT_TRUE(pulse.IsComplete() && pulse.Value() == 0.5F);
    pulse.SetTarget(0.25F, false);
    EXPECT_TRUE(pulse.IsComplete() && pulse.Value() == 0.25F);
    pulse.SetTarget(1.0F, true);
    clock.advance(1000);
    EXPECT_FLOAT_EQ(pulse.Value(), 0.625F);
    pulse.Jump(0.0F);
    EXPECT_TRUE(pulse.IsComplete() && pulse.Value() == 0.0F && pulse.Target() == 0.0F);
}

} // namespace
} // namespace Qor::Chart::Render
