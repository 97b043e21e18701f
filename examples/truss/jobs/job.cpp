// SPDX-License-Identifier: MIT
// truss: jobs
#include "truss/jobs/job.h"

#include <kel/status.h>

namespace truss
{
void Job::performAction()
{
    m_more = false; // stays so when the step throws
    Status& status = Status::getSingleton();
    if (!m_begun)
        status.setStatus(m_title);
    m_begun = true;
    status.checkInterrupt(getPercent());
    m_more = step();
}
} // namespace truss
