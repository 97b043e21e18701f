// SPDX-License-Identifier: MIT
// libkel: Foundations
#pragma once

#include <kel/kelapi.h>

/// Turns a broken invariant into a Problem. Assertions are active in every build and travel the catch paths of
/// any other failure; nothing is aborted and nothing is rolled back.
class KEL_API ZAssert
{
public:
    ZAssert() = delete;

    /// Throws a Problem with the translated text "Assertion Failed.\nExpression: %1\nFile: %2\nLine: %3".
    [[noreturn]] static void throwProblem(const char* expression, const char* file, unsigned int line);
};

/// Checks a condition and fails with the given expression text, which is what applications match on and which
/// need not be the spelling of the condition. Stands before the change that it guards.
#define KEL_ASSERT(condition, text)                                                                                    \
    do                                                                                                                 \
    {                                                                                                                  \
        if (!(condition)) [[unlikely]]                                                                                 \
            ZAssert::throwProblem(text, __FILE__, __LINE__);                                                           \
    } while (false)
