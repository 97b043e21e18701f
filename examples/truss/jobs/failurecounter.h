// SPDX-License-Identifier: MIT
// truss: jobs
#pragma once

#include <kel/task.h>

namespace truss
{
/// Counts the failures and interruptions of all tasks, for the exit status.
class FailureCounter : public Task::ErrorInterruptListener
{
public:
    unsigned getErrorCount() const { return m_errors; }
    unsigned getInterruptionCount() const { return m_interruptions; }

private:
    void onError(Problem&) override { ++m_errors; }
    void onInterrupted(Problem&) override { ++m_interruptions; }

    unsigned m_errors = 0;
    unsigned m_interruptions = 0;
};
} // namespace truss
