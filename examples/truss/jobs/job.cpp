// SPDX-License-Identifier: MIT
// truss: jobs
#include "truss/jobs/job.h"

#include <kel/interrupted.h>
#include <kel/status.h>

namespace truss
{
Job::Job(const Ztring& title) : m_title(title)
{
    m_quiet = true; // one sound at the end of all jobs is enough; JobQueue sees to it
}

void Job::performAction()
try
{
    m_more = false; // stays so when the step throws
    doStep();
}
catch (Interrupted& interrupted)
{
    onInterrupt();
    interrupted.annotate(m_title);
    throw;
}

void Job::doStep()
{
    Status& status = Status::getSingleton();
    status.setStatus(m_title, getPercent());
    status.checkInterrupt(getPercent());
    m_more = step();
}
} // namespace truss
