// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#pragma once

#include <kel/array.h>
#include <kel/bulletin.h>
#include <kel/ownedqueue.h>

class Task;
class TasksListener;

/// The main queue of deferred work, run one task step at a time from the application's idle handler.
///
/// A run lasts from the first step until the queue is empty. At its start the listeners hear that the queue is busy;
/// at its end an interrupt is reset, and the listeners hear of the end from the OtherTasks queue, after the current
/// chain of calls has unwound. Sounds mark both ends, unless the task there is quiet. The application calls onIdle of
/// both queues, and asks for more idle events while one returns true:
///
///     void MainWindow::onIdle(IdleEvent& event)
///     {
///         const bool more = Tasks::getSingleton()->onIdle();
///         if (OtherTasks::getSingleton()->onIdle() || more)
///             event.requestMore();
///     }
///
/// The end of a run needs the Status, which must exist then.
///
/// Failures of tasks do not reach the queue (see Task::execute). What repeat, a listener or the sound throws passes
/// out of the call that ran the step; the queue stays usable, and a task that has not run yet keeps its place.
class KEL_API Tasks : public Bulletin
{
public:
    Tasks();

    /// Frees the queue but not the tasks in it, which may need what no longer exists at exit.
    ~Tasks() override;

    Tasks(const Tasks&) = delete;
    Tasks& operator=(const Tasks&) = delete;

    /// The queue that the process uses; it lives until exit.
    static Tasks* getSingleton();

    /// @name Listeners
    /// Listeners are told in the order of attaching, and are not owned. They may attach and detach while they are
    /// told: one that is detached is not told any more, one that is attached hears the next notification.
    /// @{

    /// Appends a listener and tells it at once whether the queue is busy. It stays attached if it throws then.
    void attach(TasksListener* listener);

    /// Removes a listener. That it is attached is not checked: in its place the last one attached, if any, would go.
    void detach(TasksListener* listener);

    /// Tells every listener whether the queue is busy. Observers of this object are not notified.
    void notifyChanged() override;

    /// Leaves notifyChanged to a task on the OtherTasks queue, which this object must outlive.
    void notifyChangedLater();

    /// Asks every listener to enable or disable its menus. Dropped while the queue is busy, so that menus stay as the
    /// run left them.
    void enableMenu(bool enable);

    /// @}
    /// @name Work
    /// @{

    /// Appends a task, which the queue owns from then on; nothing runs now. It must not be null, which is not checked,
    /// here and below.
    void add(Task* task);

    /// Appends a task and runs the whole queue until it is empty, tasks waiting before it first. Called from inside a
    /// step it only appends.
    void addImmediate(Task* task);

    /// Runs one step of one task and returns whether the queue is still not empty. Called from inside a step, or with
    /// an empty queue, it does nothing and returns false.
    bool onIdle();

    /// Runs one step of the task at the front, then puts it at the back or deletes it. The queue must not be empty,
    /// which is not checked; onIdle and addImmediate are the guarded ways in.
    void processTask();

    /// @}

private:
    void processGuarded();
    void beginRun(OwnedElement<Task>& task);
    void requeueOrDelete(OwnedElement<Task> task);
    void endRun(bool quiet);
    void notifyEnd();

    OwnedQueue<Task> m_tasks; // owned; the next one is at the front
    Array<TasksListener*> m_listeners;
    bool m_busy = false;
    bool m_processing = false;
};
