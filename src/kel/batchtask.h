// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#pragma once

#include <kel/ownedqueue.h>
#include <kel/task.h>

/// Several tasks as one task of a queue.
///
///     auto* batch = new BatchTask(false);
///     batch->add(new SolveTask(model));
///     batch->add(new ReportTask(model));
///     Tasks::getSingleton()->add(batch);
///
/// A failing sub-task is reported like any other and does not stop the batch; an interrupt does (see performAction).
/// The Status must exist.
class KEL_API BatchTask : public Task
{
public:
    /// @param interleave whether sub-tasks that repeat take turns, rather than each running until it is done
    explicit BatchTask(bool interleave);

    /// As cleanUp.
    ~BatchTask() override;

    /// Appends a sub-task, which the batch owns from then on. It must not be null, which is not checked.
    void add(Task* task);

    /// Whether there is a sub-task left to run.
    bool repeat() override;

    /// Runs one step of one sub-task; nothing for an empty batch. When the Status shows an interrupt after it, all
    /// sub-tasks are deleted without running any further, and the batch is done.
    void performAction() override;

    /// Deletes the sub-task whose turn it is, then the others from front to back. Not for a sub-task to call, which
    /// would be deleted in the midst of its step.
    void cleanUp();

private:
    bool isInterrupted();

    OwnedQueue<Task> m_tasks; // owned; the one at the front is being run, the others wait for their turn
    bool m_interleave;
};
