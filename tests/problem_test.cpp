// SPDX-License-Identifier: MIT
// libkel: Foundations
#include <kel/problem.h>

#include "support/problem.h"
#include "support/scopedlocale.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <type_traits>

namespace
{
Ztring getDetails(const Problem& problem)
{
    return problem.getDetails();
}
} // namespace

TEST(Problem, HasTheMessageItWasRaisedWith)
{
    const Problem problem("M");
    EXPECT_EQ(problem.getMessage(), "M");
    EXPECT_EQ(problem.getAnnotation(), "M");
    EXPECT_EQ(problem.getDetails(), "");
    EXPECT_FALSE(problem.hasDetails());
    EXPECT_STREQ(problem.what(), "M");
}

TEST(Problem, AContextGoesOnTop)
{
    Problem problem("M");
    problem.annotate("C1");
    EXPECT_EQ(problem.getAnnotation(), "C1");
    EXPECT_EQ(problem.getDetails(), "M");
    EXPECT_TRUE(problem.hasDetails());
    EXPECT_EQ(problem.getMessage(), "C1\nM");
}

TEST(Problem, TheDetailsAreTheOlderMessagesInTheOrderTheyWereAdded)
{
    Problem problem("M");
    problem.annotate("C1");
    problem.annotate("C2");
    EXPECT_EQ(problem.getDetails(), "M\nC1");
    EXPECT_EQ(problem.getMessage(), "C2\nM\nC1");
    problem.annotate("C3");
    EXPECT_EQ(problem.getMessage(), "C3\nM\nC1\nC2");
}

TEST(Problem, WhatKeepsTheFirstMessage)
{
    Problem problem("M");
    problem.annotate("C1");
    problem.annotate("C2");
    EXPECT_STREQ(problem.what(), "M");
}

TEST(Problem, AnEmptyFirstMessageLeavesNoLine)
{
    Problem problem{Ztring()};
    problem.annotate("C1");
    EXPECT_FALSE(problem.hasDetails());
    EXPECT_EQ(problem.getMessage(), "C1");
    problem.annotate("C2");
    EXPECT_EQ(problem.getDetails(), "C1");
    EXPECT_EQ(problem.getMessage(), "C2\nC1");
}

TEST(Problem, CanBeAnnotatedWithItsOwnTexts)
{
    Problem problem("M");
    problem.annotate("C1");
    problem.annotate(problem.getDetails());
    EXPECT_EQ(problem.getMessage(), "M\nM\nC1");
    problem.annotate(problem.getAnnotation());
    EXPECT_EQ(problem.getMessage(), "M\nM\nC1\nM");
}

TEST(Problem, TruncateAfterCutsTheNewestMessage)
{
    Problem problem("Bad file. Reason follows");
    EXPECT_TRUE(problem.truncateAfter("."));
    EXPECT_EQ(problem.getAnnotation(), "Bad file.");
    EXPECT_FALSE(problem.truncateAfter("!"));
    EXPECT_EQ(problem.getMessage(), "Bad file.");
    EXPECT_STREQ(problem.what(), "Bad file. Reason follows");
}

TEST(Problem, TruncateAfterLeavesTheDetails)
{
    Problem problem("M. More");
    problem.annotate("C. More");
    EXPECT_TRUE(problem.truncateAfter("."));
    EXPECT_EQ(problem.getMessage(), "C.\nM. More");
}

TEST(Problem, ACopyIsIndependent)
{
    Problem problem("M");
    problem.annotate("C1");
    Problem copy(problem);
    copy.annotate("C2");
    EXPECT_EQ(problem.getMessage(), "C1\nM");
    EXPECT_EQ(copy.getMessage(), "C2\nM\nC1");
    EXPECT_STREQ(copy.what(), "M");
    problem = copy;
    EXPECT_EQ(problem.getMessage(), "C2\nM\nC1");
}

TEST(Problem, WhatIsInTheEncodingOfTheLocale)
{
    Ztring message;
    message.fromUtf8("\xC3\xA9");
    {
        const ScopedLocale locale("C.utf8");
        EXPECT_STREQ(Problem(message).what(), "\xC3\xA9");
    }
    const ScopedLocale locale("C");
    EXPECT_STREQ(Problem(message).what(), "");
    EXPECT_EQ(Problem(message).getMessage().toUtf8(), "\xC3\xA9");
}

TEST(Problem, ThrowProblemThrowsTheMessage)
{
    EXPECT_PROBLEM(Problem::throwProblem("M"), "M");
    EXPECT_PROBLEM(Problem::throwProblem(Ztring::emptyZtring), "");
}

TEST(Problem, TravelsAsARuntimeError)
{
    try
    {
        Problem::throwProblem("M");
    }
    catch (const std::runtime_error& error)
    {
        EXPECT_STREQ(error.what(), "M");
        EXPECT_NE(dynamic_cast<const Problem*>(&error), nullptr);
    }
}

TEST(Problem, CollectsContextOnTheWayUp)
{
    EXPECT_PROBLEM(
        {
            try
            {
                Problem::throwProblem("M");
            }
            catch (Problem& problem)
            {
                problem.annotate("C");
                throw;
            }
        },
        "C\nM");
}

TEST(Problem, AMessageIsNotATemplate)
{
    Problem problem("100%1");
    problem.annotate("%2");
    EXPECT_EQ(problem.getMessage(), "%2\n100%1");
    EXPECT_EQ(getDetails(problem), "100%1");
}
