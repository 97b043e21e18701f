// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#include <kel/timer.h>

unsigned int Timer::INTERVAL = 250;
unsigned int Timer::LONG_INTERVAL = 1000;
std::uint64_t Timer::s_slept = 0;

void Timer::setStaticIntervals(unsigned int ms)
{
    INTERVAL = ms;
    LONG_INTERVAL = 4 * ms;
}
