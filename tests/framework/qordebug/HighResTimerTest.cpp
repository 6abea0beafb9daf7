#include "framework/qordebug/highrestimer.h"

#include <gtest/gtest.h>

namespace {

TEST(HighResTimerTest, countsWholeUnitsOfTheClockMovedByHand) {
    qordebug::manualclock clock;
    qordebug::highrestimer<0> seconds;
    qordebug::highrestimer<1> milliseconds;
    qordebug::highrestimer<2> microseconds;
    qordebug::highrestimer<3> nanoseconds;
    clock.advance(1999);
    clock.advance_nanoseconds(999'999);
    EXPECT_EQ(seconds.elapsed(), 1U);
    EXPECT_EQ(milliseconds.elapsed(), 1999U);
    EXPECT_EQ(microseconds.elapsed(), 1'999'999U);
    EXPECT_EQ(nanoseconds.elapsed(), 1'999'999'999U);
    milliseconds.restart();
    clock.advance_nanoseconds(999'999);
    EXPECT_EQ(milliseconds.elapsed(), 0U);
    clock.advance_nanoseconds(1);
    EXPECT_EQ(milliseconds.elapsed(), 1U);
}

TEST(HighResTimerTest, aTimerStartedInTheFutureOfAStoppedClockReadsZero) {
    auto const startedAhead = [] {
        qordebug::manualclock clock;
        clock.advance(3'600'000);
        return qordebug::highrestimer<1>();
    }();
    EXPECT_EQ(startedAhead.elapsed(), 0U);
    std::uint64_t const before = qordebug::now();
    EXPECT_LE(before, qordebug::now());
}

} // namespace
