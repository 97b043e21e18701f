// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#pragma once

#include <kel/problem.h>

/// Thrown when the user has asked running work to stop; a Problem with an empty message.
///
/// Handlers that treat an interruption differently from a failure catch it before Problem.
class KEL_API Interrupted : public Problem
{
public:
    Interrupted();
};
