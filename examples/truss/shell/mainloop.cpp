// SPDX-License-Identifier: MIT
// truss: shell
#include "truss/shell/mainloop.h"

#include "truss/jobs/jobqueue.h"
#include "truss/platform/timers.h"

#include <kel/othertasks.h>
#include <kel/tasks.h>
#include <kel/timer.h>

namespace truss
{
namespace
{
/// One step of work on either queue; @return whether there is more to do at once.
bool idle()
{
    const bool more = Tasks::getSingleton()->onIdle();
    return OtherTasks::getSingleton()->onIdle() || more;
}
} // namespace

void MainLoop::run(const JobQueue& jobs)
{
    while (!jobs.isFinished())
    {
        // Asked twice: the end of a run is announced from the second queue, and may bring new work for the first.
        const bool more = idle() || idle();
        m_timers.wait(more ? 0 : Timer::INTERVAL);
    }
}
} // namespace truss
