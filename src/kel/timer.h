// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#pragma once

#include <kel/kelapi.h>

#include <cstdint>

/// The process-wide time values of progress reports and of timer-driven tasks.
///
/// The time base is the processor time of clock(), in ticks of one microsecond, plus s_slept, so that time spent
/// asleep counts as elapsed.
class KEL_API Timer
{
public:
    Timer() = delete;

    /// Sets INTERVAL to `ms` milliseconds and LONG_INTERVAL to four times that. An existing Status keeps the interval
    /// it has.
    static void setStaticIntervals(unsigned int ms);

    /// Period of progress updates and of the application's task timer, in milliseconds; at first 250.
    static unsigned int INTERVAL;

    /// Period of what may come more rarely, in milliseconds; at first 1000.
    static unsigned int LONG_INTERVAL;

    /// Clock ticks that the process has spent in Status::sleep; only ever grows.
    static std::uint64_t s_slept;
};
