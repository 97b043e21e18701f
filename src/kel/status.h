// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#pragma once

#include <kel/bulletin.h>

#include <chrono>
#include <cstdint>

/// The one place through which long work reports progress and learns that the user asked it to stop.
///
/// The application derives from Status, overrides the hooks, and constructs exactly one instance before any work
/// reports progress. Work then calls checkInterrupt often; the application's event loop gets a turn at most once per
/// update interval:
///
///     class MainStatus : public Status
///     {
///         void updateEvents(int percent) override { m_window.showProgressAndProcessEvents(percent); }
///     };
///
///     for (unsigned int row = 0; row < rows; ++row)
///     {
///         solve(row);
///         Status::getSingleton().checkInterrupt(static_cast<int>(100 * row / rows)); // may throw Interrupted
///     }
class KEL_API Status : public Bulletin
{
public:
    /// What the application is doing. The library knows NoProgress alone; applications use values of their own.
    enum ApplicationState : std::uint32_t
    {
        /// Progress updates do not call updateEvents.
        NoProgress = 2
    };

    /// Becomes the singleton, with the update interval Timer::INTERVAL. A second live Status fails the assertion
    /// "!valid(s_singleton)".
    Status();

    /// Leaves the process without a Status.
    ~Status() override;

    Status(const Status&) = delete;
    Status& operator=(const Status&) = delete;

    /// The live Status; where the application has made none, the assertion "valid(s_singleton)" fails.
    static Status& getSingleton();

    /// @name Hooks of the application
    /// @{

    /// Called by application code that waits. The base counts `ms` milliseconds as slept in Timer::s_slept and returns
    /// at once; an override waits and calls the base, so that the time counts as elapsed.
    virtual void sleep(unsigned int ms);

    /// Called when work enters a new phase, with a text for the status line. The base does nothing. A class that
    /// overrides one setStatus hides the other, unless it says `using Status::setStatus`.
    virtual void setStatus(const Ztring& text);

    /// As setStatus(const Ztring&), with the percentage that the phase starts at. The base does nothing.
    virtual void setStatus(const Ztring& text, int percent);

    /// Asked by nested work after each of its steps: the percentage that the enclosing operation has already reached,
    /// so that the nested work reports its own progress within what is left. The base returns 0.
    virtual unsigned int getPercentComplete();

    /// Called when a progress update is due, before the interrupt test: the override shows the percentage (-1 when
    /// the work cannot tell) and processes pending events, where a Stop button may call setInterrupted. It is not
    /// called again from inside itself. The base does nothing.
    virtual void updateEvents(int percent);

    /// @}
    /// @name Progress and interruption
    /// @{

    /// Reports progress and stops interrupted work.
    ///
    /// Makes the update of updateProgress, then throws Interrupted if an interrupt is requested. The test comes after
    /// the update because the update is where the user gets to press Stop. The request stays until it is reset, so
    /// every further call throws as well.
    ///
    /// @return whether an update was due, also where an update already running kept it from being made
    bool checkInterrupt(int percent);

    /// The update of checkInterrupt without its interrupt test, for work that must run to its end.
    ///
    /// When more than the update interval has passed since the last update and no update is running, calls
    /// updateEvents (unless the state is NoProgress) and restarts the interval. What updateEvents throws passes
    /// through; the next call is due again.
    ///
    /// @return whether an update was due
    bool updateProgress(int percent);

    /// Requests that work stop, and tells the observers through notifyChanged.
    void setInterrupted();

    /// Withdraws the request, unless m_interruptHeld keeps it in force.
    void resetInterrupt();

    /// Withdraws the request and releases m_interruptHeld.
    void resetInterrupts();

    bool isInterrupted() const { return m_interrupted; }

    /// @}
    /// @name Settings
    /// @{

    void setState(ApplicationState state);

    /// Sets the least time between two updates, in milliseconds of processor time and of Status::sleep: work that waits
    /// otherwise has to tell sleep of it.
    void setUpdateInterval(unsigned int ms);
    unsigned int getUpdateInterval() const { return m_updateInterval; }

    /// @}

    /// The one live Status, or null.
    static Status* s_singleton;

private:
    bool isUpdateDue();
    void update(int percent);

    std::uint64_t m_lastUpdate;      // clock ticks
    std::uint64_t m_updateTicks = 0; // clock ticks
    unsigned int m_updateInterval = 0;
    ApplicationState m_state = ApplicationState(0);
    bool m_interrupted = false;

protected:
    /// While set, resetInterrupt leaves the request in force. Only derived classes set it.
    bool m_interruptHeld = false;

private:
    bool m_updating = false;
    std::uint64_t m_sleptThen = 0; // Timer::s_slept when m_notDueBefore was found
    std::chrono::steady_clock::time_point m_notDueBefore = std::chrono::steady_clock::time_point::min();
};
