// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#include <kel/timer.h>

#include <gtest/gtest.h>

TEST(Timer, StartsWithAQuarterOfASecondAndASecond)
{
    EXPECT_EQ(Timer::INTERVAL, 250u);
    EXPECT_EQ(Timer::LONG_INTERVAL, 1000u);
}

TEST(Timer, HasNotSleptAtFirst)
{
    EXPECT_EQ(Timer::s_slept, 0u);
}

TEST(Timer, MakesTheLongIntervalFourTimesTheStaticOne)
{
    Timer::setStaticIntervals(40);
    EXPECT_EQ(Timer::INTERVAL, 40u);
    EXPECT_EQ(Timer::LONG_INTERVAL, 160u);
    Timer::setStaticIntervals(250);
}
