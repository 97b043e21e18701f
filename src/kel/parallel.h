// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#pragma once

#include <kel/kelapi.h>

#include <cstdint>
#include <memory>

/// Settings that decide how many threads a computation of the application may use; the library itself starts none.
class KEL_API Parallel
{
public:
    class Info;

    /// One thread for every task, and no diagnostics.
    Parallel() = default;
    ~Parallel() = default;

    Parallel(const Parallel&) = delete;
    Parallel& operator=(const Parallel&) = delete;

    /// The settings that the process uses; they live until exit.
    static Parallel* getSingleton();

    /// How many threads this build can offer: always 1.
    unsigned int getMaxThreadCount() const;

    /// How many threads the user allows; at first 1.
    unsigned int getThreadCount() const { return m_threadCount; }
    void setThreadCount(unsigned int count);

    /// How much work, in the caller's units, justifies one thread; at first 1000. It must not be 0, which is not
    /// checked.
    void setChunkSize(unsigned int size);

    /// Whether Info objects write to the log; at first they do not.
    void setShowDiagnostics(bool show);

    /// How many threads to use for a task of the given size: one for each chunk, rounded half up and at least one, but
    /// no more than getThreadCount and `maxThreads`. Changes nothing, under either name.
    unsigned int setThreads(unsigned int taskSize, unsigned int maxThreads) const;
    unsigned int getThreads(unsigned int taskSize, unsigned int maxThreads) const;

    /// Whether this process leads a parallel run: always true.
    bool isMaster() const;

private:
    unsigned int m_chunkSize = 1000;
    unsigned int m_threadCount = 1;
    bool m_showDiagnostics = false;
};

/// Logs when a computation begins, how many threads it uses, and how long it took.
///
/// Active only when diagnostics are shown and no other Info is; all others do nothing, so that nested computations do
/// not flood the log.
///
///     Parallel::Info info("Assemble", elementCount, 8);
///     assemble(info.getThreadCount());
class KEL_API Parallel::Info
{
public:
    /// Logs the begin of a task. Its duration counts from the start of the process until restartTimer or report is
    /// called.
    explicit Info(const char* name);

    /// Logs the begin of a task, then reports the thread count that Parallel::setThreads gives for it.
    Info(const char* name, unsigned int taskSize, unsigned int maxThreads);

    /// Logs the end with the duration in seconds of processor time; what the log throws is dropped.
    ~Info();

    Info(const Info&) = delete;
    Info& operator=(const Info&) = delete;

    /// Logs thread count and task size, restarts the timer and returns true; false when inactive.
    bool report(unsigned int threads, unsigned int taskSize);

    /// Counts the duration from now on; does nothing when inactive.
    void restartTimer();

    /// The thread count of the Parallel settings.
    unsigned int getThreadCount() const;

private:
    std::unique_ptr<std::uint64_t> m_start; // clock ticks; null when inactive
};
