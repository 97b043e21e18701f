// SPDX-License-Identifier: MIT
// truss: platform
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace truss
{
struct Redirection;
class Timers;

/// A program that was started.
class ChildProcess
{
public:
    /// Starts it, found as a shell would find it but without one. One that cannot be started is a Problem.
    ChildProcess(const std::vector<std::string>& words, const Redirection& redirection);

    /// Waits for its end, with timers going on. A program that ends otherwise than with status 0 is a Problem; when the
    /// user interrupts, the program is ended too, with all that it has started, and Interrupted is thrown.
    void wait(Timers& timers);

    /// For a program that nobody waits for: gives back what the system keeps of it once it has ended. @return whether
    /// it has; the object is of no use then.
    bool reapIfEnded() const;

private:
    void waitForEnd(Timers& timers);
    void end();
    void checkEnd(int status) const;
    int reap() const;

    std::string m_name;
    pid_t m_id = -1;
};
} // namespace truss
