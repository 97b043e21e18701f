// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#include <kel/status.h>

#include <kel/interrupted.h>
#include <kel/timer.h>
#include <kel/zassert.h>

#include "flagguard_p.h"

#include <ctime>
#include <thread>

namespace
{
std::uint64_t now()
{
    return static_cast<std::uint64_t>(std::clock()) + Timer::s_slept;
}

double toTicks(unsigned int ms)
{
    return ms * 0.001 * 1000000;
}

/// For how long the process cannot have used up this many ticks of processor time, however many threads it runs; zero
/// where the number of processors is not known. A half is kept in reserve: for processors that come later, and for
/// clocks of which one is being slowed down or runs behind.
std::chrono::microseconds getLeastTimeFor(std::uint64_t ticks)
{
    static const unsigned int s_processors = std::thread::hardware_concurrency();
    return std::chrono::microseconds(s_processors == 0 ? 0 : ticks / s_processors / 2);
}
} // namespace

Status* Status::s_singleton = nullptr;

Status::Status() : m_lastUpdate(now())
{
    setUpdateInterval(Timer::INTERVAL);
    KEL_ASSERT(s_singleton == nullptr, "!valid(s_singleton)");
    s_singleton = this;
}

Status::~Status()
{
    s_singleton = nullptr;
}

Status& Status::getSingleton()
{
    KEL_ASSERT(s_singleton != nullptr, "valid(s_singleton)");
    return *s_singleton;
}

void Status::sleep(unsigned int ms)
{
    Timer::s_slept += static_cast<std::uint64_t>(toTicks(ms));
}

void Status::setStatus(const Ztring&) {}

void Status::setStatus(const Ztring&, int) {}

unsigned int Status::getPercentComplete()
{
    return 0;
}

void Status::updateEvents(int) {}

bool Status::checkInterrupt(int percent)
{
    const bool wasDue = updateProgress(percent);
    if (m_interrupted)
        throw Interrupted();
    return wasDue;
}

bool Status::updateProgress(int percent)
{
    const bool isDue = isUpdateDue();
    if (isDue && !m_updating)
        update(percent);
    return isDue;
}

// Asking for the processor time is a call of the system, ten times as dear as the steady clock, which says for most of
// the interval that nothing can be due yet.
bool Status::isUpdateDue()
{
    const auto time = std::chrono::steady_clock::now();
    if (time < m_notDueBefore && m_sleptThen == Timer::s_slept)
        return false;
    const std::uint64_t elapsed = now() - m_lastUpdate;
    if (m_updateTicks < elapsed)
        return true;
    m_notDueBefore = time + getLeastTimeFor(m_updateTicks - elapsed);
    m_sleptThen = Timer::s_slept;
    return false;
}

void Status::update(int percent)
{
    const FlagGuard updating(m_updating);
    if (m_state != NoProgress)
        updateEvents(percent);
    m_lastUpdate = now();
}

void Status::setInterrupted()
{
    m_interrupted = true;
    notifyChanged();
}

void Status::resetInterrupt()
{
    if (!m_interruptHeld)
        m_interrupted = false;
}

void Status::resetInterrupts()
{
    m_interruptHeld = false;
    m_interrupted = false;
}

void Status::setState(ApplicationState state)
{
    m_state = state;
}

void Status::setUpdateInterval(unsigned int ms)
{
    if (ms == m_updateInterval)
        return;
    m_updateInterval = ms;
    // Single precision rounds off what 0.001 lacks of a thousandth, so that whole milliseconds are whole ticks.
    m_updateTicks = static_cast<std::uint64_t>(static_cast<float>(toTicks(ms)));
    m_notDueBefore = std::chrono::steady_clock::time_point::min();
}
