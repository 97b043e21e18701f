// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#pragma once

#include <kel/kelapi.h>

class Problem;

/// A unit of deferred work that a task queue runs later, one step at a time.
///
/// A task is made with `new` and handed to a queue (Tasks, OtherTasks, BatchTask), which owns it, executes it step by
/// step, asks repeat after each step, and deletes it once the answer is no.
///
///     class RefineTask : public Task
///     {
///     public:
///         void performAction() override { m_mesh.refine(m_level++); }
///         bool repeat() override { return m_level < 5; }
///         ...
///     };
///
///     Tasks::getSingleton()->add(new RefineTask(mesh));
class KEL_API Task
{
public:
    /// Hears of the failures and interruptions of all tasks, for exactly as long as it lives.
    ///
    /// Listeners are told in the order in which they came into being. One that is destroyed during a report is not
    /// told any more; one that is made during a report hears the next one. What a listener throws is dropped.
    class KEL_API ErrorInterruptListener
    {
    public:
        ErrorInterruptListener();
        virtual ~ErrorInterruptListener();

        ErrorInterruptListener(const ErrorInterruptListener&) = delete;
        ErrorInterruptListener& operator=(const ErrorInterruptListener&) = delete;

        /// Called when a step of a task has failed, before the failure is logged; annotating the problem changes what
        /// later listeners and the log get. The base does nothing.
        virtual void onError(Problem& problem);

        /// Called when a step of a task was interrupted, before the interruption is logged. The base does nothing.
        virtual void onInterrupted(Problem& problem);
    };

    Task();
    virtual ~Task();

    Task(const Task&) = delete;
    Task& operator=(const Task&) = delete;

    /// Runs one step: performAction, with every exception turned into a report, so that nothing unwinds into the queue
    /// or the event loop.
    ///
    /// Interrupted goes to onInterrupted and any other Problem to onError; a standard exception goes to onError as a
    /// Problem with its what() text (empty where the locale cannot decode it), anything else as a Problem with the
    /// translated "Unknown Problem". Neither asks repeat nor deletes the task.
    void execute() noexcept;

    /// Whether no sound is played where this task begins or ends a run of the main queue.
    bool isQuiet() const { return m_quiet; }

    /// Asked by the queue after each step, also after one that failed: whether the task wants to run again. The base
    /// answers no.
    virtual bool repeat();

    /// Called by execute to do one step of the work. It may throw anything, and may add tasks to the queues.
    virtual void performAction() = 0;

    /// @name Reports
    /// What a listener or the log throws is dropped after the others were told.
    /// @{

    /// Tells every listener of a failure, then logs the problem's message as an error.
    static void onError(Problem& problem);

    /// Tells every listener of an interruption, then logs the translated "Interrupted: %1" with the problem's message,
    /// as information.
    static void onInterrupted(Problem& problem);

    /// Registers a listener at the end of the list. Listeners register themselves when they are made; one that is
    /// added again is told twice, and has to be removed once before it dies.
    static void add(ErrorInterruptListener& listener);

    /// Removes the first entry of a listener. That it is registered is not checked: in its place the last entry, if
    /// there is any, would go. The destructor of a listener removes an entry of its own only.
    static void remove(ErrorInterruptListener& listener);

    /// @}

protected:
    /// Set by derived tasks whose runs are to stay silent.
    bool m_quiet = false;
};
