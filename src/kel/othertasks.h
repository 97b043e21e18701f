// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#pragma once

#include <kel/kelapi.h>
#include <kel/ownedqueue.h>

class Task;

/// A plain queue for small follow-up jobs such as delayed notifications, run from the application's idle handler.
///
/// It has no busy state, no listeners, no sounds and no guard: a step that calls onIdle runs the next task inside.
class KEL_API OtherTasks
{
public:
    OtherTasks();

    /// Frees the queue but not the tasks in it, which may need what no longer exists at exit.
    ~OtherTasks();

    OtherTasks(const OtherTasks&) = delete;
    OtherTasks& operator=(const OtherTasks&) = delete;

    /// The queue that the process uses; it lives until exit.
    static OtherTasks* getSingleton();

    /// Appends a task, which the queue owns from then on. It must not be null, which is not checked.
    void add(Task* task);

    /// Runs one step of one task and returns whether the queue is still not empty; false for an empty queue.
    bool onIdle();

    /// Runs one step of the task at the front, then puts it at the back or deletes it. The queue must not be empty,
    /// which is not checked.
    void processTask();

private:
    OwnedQueue<Task> m_tasks; // owned; the next one is at the front
};
