// SPDX-License-Identifier: MIT
// truss: jobs
#pragma once

#include <kel/task.h>
#include <kel/ztring.h>

namespace truss
{
/// One thing that the command line asks for: a task that is run in steps until it is done.
///
/// Before each step the status shows how far the job has come, and an interruption by the user ends the job; the log
/// then names it. A job that fails or is interrupted is not run again, and leaves the document as it was before the
/// job; the one exception is a script, whose edits so far stay and can be undone.
class Job : public Task
{
public:
    /// The title is shown while the job runs.
    explicit Job(const Ztring& title);

    void performAction() final;
    bool repeat() final { return m_more; }

private:
    /// Does the next piece of work; @return whether there is more.
    virtual bool step() = 0;
    /// How far the job has come, 0 to 100; -1 when that is not known.
    virtual int getPercent() const { return -1; }
    /// Called when the user has interrupted the job.
    virtual void onInterrupt() {}

    void doStep();

    Ztring m_title;
    bool m_more = false;
};
} // namespace truss
