// SPDX-License-Identifier: MIT
// truss: platform
#include "truss/platform/systemproblem.h"

#include <kel/problem.h>
#include <kel/ztring.h>

#include <system_error>

namespace truss
{
void SystemProblem::throwProblem(int error, const Ztring& message)
{
    Problem problem{Ztring(std::generic_category().message(error))};
    problem.annotate(message);
    throw problem;
}
} // namespace truss
