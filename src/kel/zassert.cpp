// SPDX-License-Identifier: MIT
// libkel: Foundations
#include <kel/zassert.h>

#include <kel/problem.h>
#include <kel/translator.h>

#include "totext_p.h"

void ZAssert::throwProblem(const char* expression, const char* file, unsigned int line)
{
    Ztring message = Translator::tr("Assertion Failed.\nExpression: %1\nFile: %2\nLine: %3");
    message.argReplace(toText(expression));
    message.argReplace(toText(file));
    message.argReplace(toText(line));
    Problem::throwProblem(message);
}
