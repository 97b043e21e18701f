// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#include <kel/interrupted.h>

#include "support/problem.h"

#include <gtest/gtest.h>

TEST(Interrupted, IsAProblemWithAnEmptyMessage)
{
    EXPECT_PROBLEM(throw Interrupted(), "");
}

TEST(Interrupted, CanBeAnnotatedLikeAnyProblem)
{
    Interrupted interrupted;
    interrupted.annotate("While saving");
    EXPECT_EQ(interrupted.getMessage(), "While saving");
    EXPECT_FALSE(interrupted.hasDetails());
}
