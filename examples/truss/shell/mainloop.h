// SPDX-License-Identifier: MIT
// truss: shell
#pragma once

namespace truss
{
class JobQueue;
class Timers;

/// Runs the library's task queues and the timers.
class MainLoop
{
public:
    /// The timers outlive the loop.
    explicit MainLoop(Timers& timers) : m_timers(timers) {}

    /// Goes round until the jobs are finished; waits where there is nothing to do.
    void run(const JobQueue& jobs);

private:
    Timers& m_timers;
};
} // namespace truss
