// SPDX-License-Identifier: MIT
// truss: platform
#include "truss/platform/timers.h"

#include "truss/platform/systemproblem.h"

#include <kel/status.h>
#include <kel/task.h>
#include <kel/translator.h>

#include <poll.h>
#include <sys/timerfd.h>

#include <cerrno>
#include <chrono>
#include <cstdint>
#include <utility>

namespace truss
{
namespace
{
FileDescriptor startTimer(unsigned intervalMs)
{
    FileDescriptor timer(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC));
    const timespec interval{intervalMs / 1000, intervalMs == 0 ? 1 : intervalMs % 1000 * 1000000L}; // 0 would disarm it
    const itimerspec period{interval, interval};
    if (timer.get() < 0 || timerfd_settime(timer.get(), 0, &period, nullptr) != 0)
        SystemProblem::throwProblem(errno, Translator::tr("Failed to start a timer"));
    return timer;
}
} // namespace

Timers::Timers() = default;
Timers::~Timers() = default;

void Timers::add(std::unique_ptr<Task> task, unsigned intervalMs)
{
    m_entries.push_back(std::make_unique<Entry>(Entry{startTimer(intervalMs), std::move(task)}));
}

void Timers::wait(unsigned mostMs, int descriptor)
{
    sleep(mostMs, descriptor);
    if (m_running)
        return;
    m_running = true;
    try
    {
        runDue();
    }
    catch (...)
    {
        m_running = false;
        throw;
    }
    m_running = false;
}

void Timers::sleep(unsigned mostMs, int descriptor)
{
    using Clock = std::chrono::steady_clock;
    std::vector<pollfd> descriptors{{descriptor, POLLIN, 0}}; // a negative one is passed over
    for (const auto& entry : m_entries)
        descriptors.push_back({entry->timer.get(), POLLIN, 0});

    const auto begin = Clock::now();
    poll(descriptors.data(), descriptors.size(), static_cast<int>(mostMs));
    const auto slept = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin);
    Status::getSingleton().sleep(static_cast<unsigned>(slept.count())); // counts what was waited
}

// A task may add timers meanwhile; they are looked at next time.
void Timers::runDue()
{
    for (std::size_t i = m_entries.size(); i-- > 0;)
    {
        Entry& entry = *m_entries[i];
        if (!isDue(entry))
            continue;
        entry.task->execute(); // throws nothing
        if (!entry.task->repeat())
            m_entries.erase(m_entries.begin() + static_cast<std::ptrdiff_t>(i));
    }
}

bool Timers::isDue(const Entry& entry)
{
    std::uint64_t expirations = 0;
    return read(entry.timer.get(), &expirations, sizeof expirations) == sizeof expirations;
}
} // namespace truss
