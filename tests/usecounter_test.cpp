// SPDX-License-Identifier: MIT
#include <kel/usecounter.h>

#include <gtest/gtest.h>

#include <limits>

TEST(UseCounter, TellsTheFirstUse)
{
    UseCounter counter;
    EXPECT_EQ(counter.getCount(), 0u);
    EXPECT_TRUE(counter.incrementUse());
    EXPECT_FALSE(counter.incrementUse());
    EXPECT_EQ(counter.getCount(), 2u);
}

TEST(UseCounter, TellsTheLastUse)
{
    UseCounter counter;
    counter.incrementUse();
    counter.incrementUse();
    EXPECT_FALSE(counter.decrementUse());
    EXPECT_TRUE(counter.decrementUse());
}

TEST(UseCounter, WrapsBelowZero)
{
    UseCounter counter;
    EXPECT_FALSE(counter.decrementUse());
    EXPECT_EQ(counter.getCount(), std::numeric_limits<unsigned>::max());
    EXPECT_FALSE(counter.incrementUse());
    EXPECT_EQ(counter.getCount(), 0u);
}

TEST(UseCounter, CopyTakesTheCount)
{
    UseCounter counter;
    counter.incrementUse();
    const UseCounter copy(counter);
    UseCounter assigned;
    assigned = counter;
    EXPECT_EQ(copy.getCount(), 1u);
    EXPECT_EQ(assigned.getCount(), 1u);
}
