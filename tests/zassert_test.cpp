// SPDX-License-Identifier: MIT
// libkel: Foundations
#include <kel/zassert.h>

#include "support/catalogue.h"
#include "support/problem.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

TEST(ZAssert, NamesExpressionFileAndLine)
{
    EXPECT_PROBLEM(ZAssert::throwProblem("x != 0", "src/kel/a", 12),
                   "Assertion Failed.\nExpression: x != 0\nFile: src/kel/a\nLine: 12");
}

TEST(ZAssert, TheLineIsPlainDecimal)
{
    EXPECT_PROBLEM(ZAssert::throwProblem("x", "a", std::numeric_limits<unsigned>::max()),
                   "Assertion Failed.\nExpression: x\nFile: a\nLine: 4294967295");
}

TEST(ZAssert, TheMessageIsTranslatedBeforeItIsFilled)
{
    const Catalogue catalogue{
        {"Assertion Failed.\\nExpression: %1\\nFile: %2\\nLine: %3", "Zeile %3 in %2 verletzt %1"}};
    EXPECT_PROBLEM(ZAssert::throwProblem("x != 0", "src/kel/a", 12), "Zeile 12 in src/kel/a verletzt x != 0");
}

TEST(ZAssert, APlaceholderInTheExpressionIsFilledFirst)
{
    EXPECT_PROBLEM(ZAssert::throwProblem("a %2 b", "f", 1), "Assertion Failed.\nExpression: a f b\nFile: %2\nLine: 1");
}

TEST(ZAssert, TheMacroThrowsTheQuotedTextWhenTheConditionIsFalse)
{
    const unsigned line = __LINE__ + 3;
    try
    {
        KEL_ASSERT(1 + 1 == 3, "hasKey(key)");
        ADD_FAILURE();
    }
    catch (const Problem& problem)
    {
        EXPECT_EQ(problem.getMessage(), std::string("Assertion Failed.\nExpression: hasKey(key)\nFile: ") + __FILE__ +
                                            "\nLine: " + std::to_string(line));
    }
}

TEST(ZAssert, TheMacroEvaluatesATrueConditionOnceAndGoesOn)
{
    int evaluations = 0;
    KEL_ASSERT(++evaluations == 1, "once");
    EXPECT_EQ(evaluations, 1);
}

TEST(ZAssert, TheMacroIsOneStatement)
{
    const bool wanted = false;
    if (wanted)
        KEL_ASSERT(false, "never");
    else
        SUCCEED();
}
