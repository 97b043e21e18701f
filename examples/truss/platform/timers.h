// SPDX-License-Identifier: MIT
// truss: platform
#pragma once

#include "truss/platform/filedescriptor.h"

#include <memory>
#include <vector>

class Task;

namespace truss
{
/// Tasks that are run again and again at their intervals, from within wait().
///
/// Waiting costs no processor time. The library's Status counts processor time; wait() tells it what was spent asleep.
class Timers
{
public:
    Timers();
    Timers(const Timers&) = delete;
    Timers& operator=(const Timers&) = delete;
    ~Timers();

    /// Runs the task every so many milliseconds until its repeat() says no. Takes ownership.
    void add(std::unique_ptr<Task> task, unsigned intervalMs);

    /// Waits until a timer is due, the descriptor can be read (-1: no descriptor), a signal comes, or the time is over
    /// (milliseconds); then runs the tasks that are due. Within such a task it only waits.
    void wait(unsigned mostMs, int descriptor = -1);

private:
    struct Entry
    {
        FileDescriptor timer;
        std::unique_ptr<Task> task;
    };

    void sleep(unsigned mostMs, int descriptor);
    void runDue();
    static bool isDue(const Entry& entry);

    std::vector<std::unique_ptr<Entry>> m_entries;
    bool m_running = false;
};
} // namespace truss
