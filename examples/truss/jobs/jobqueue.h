// SPDX-License-Identifier: MIT
// truss: jobs
#pragma once

#include <kel/task.h>
#include <kel/taskslistener.h>

#include <deque>
#include <memory>

namespace truss
{
class FailureCounter;

/// Hands the jobs of the command line to the library's task queue one after the other.
///
/// Each job is a run of its own, because an interruption lasts until the queue runs empty: so Ctrl-C ends one job and
/// the program goes on with the next. After a job that fails the rest is dropped, so that a model that could not be
/// read is not saved over a good one (after an interruption SaveJob sees to that). The end of all jobs, not of each, is
/// announced with a sound.
class JobQueue : public TasksListener
{
public:
    /// The counter outlives the queue.
    explicit JobQueue(const FailureCounter& failures);
    JobQueue(const JobQueue&) = delete;
    JobQueue& operator=(const JobQueue&) = delete;
    ~JobQueue() override;

    void add(std::unique_ptr<Task> job);

    /// Begins with the first job.
    void start();
    /// Whether no job is running and none is waiting.
    bool isFinished() const { return !m_running && m_jobs.empty(); }

private:
    void tasksChanged(bool busy) override;
    void enableMenu(bool enable) override;
    void startNext();
    void finish();

    const FailureCounter& m_failures;
    std::deque<std::unique_ptr<Task>> m_jobs;
    bool m_running = false;
};
} // namespace truss
