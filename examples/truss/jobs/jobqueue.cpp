// SPDX-License-Identifier: MIT
// truss: jobs
#include "truss/jobs/jobqueue.h"

#include "truss/jobs/failurecounter.h"

#include <kel/sound.h>
#include <kel/tasks.h>

#include <utility>

namespace truss
{
JobQueue::JobQueue(const FailureCounter& failures) : m_failures(failures)
{
    Tasks::getSingleton()->attach(this);
}

JobQueue::~JobQueue()
{
    Tasks::getSingleton()->detach(this);
}

void JobQueue::add(std::unique_ptr<Task> job)
{
    m_jobs.push_back(std::move(job));
}

void JobQueue::start()
{
    startNext();
}

void JobQueue::tasksChanged(bool busy)
{
    if (busy || !m_running)
        return;
    m_running = false;
    if (m_failures.getErrorCount() > 0)
        m_jobs.clear();
    startNext();
}

void JobQueue::enableMenu(bool) {}

void JobQueue::startNext()
{
    if (m_jobs.empty())
        return finish();
    std::unique_ptr<Task> next = std::move(m_jobs.front());
    m_jobs.pop_front();
    try
    {
        Tasks::getSingleton()->add(next.release());
    }
    catch (...)
    {
        m_jobs.clear(); // as after any job that fails
        throw;
    }
    m_running = true;
}

void JobQueue::finish()
{
    Sound::getSingleton()->play(Sound::WorkFinished, false);
}
} // namespace truss
