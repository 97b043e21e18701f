// SPDX-License-Identifier: MIT
// truss: platform
#pragma once

class Ztring;

namespace truss
{
/// Failures of the operating system as Problems.
class SystemProblem
{
public:
    SystemProblem() = delete;

    /// Throws a Problem of the system's words for an error number, with the message as context.
    [[noreturn]] static void throwProblem(int error, const Ztring& message);
};
} // namespace truss
