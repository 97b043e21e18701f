// SPDX-License-Identifier: MIT
// A processor clock that moves on by one tick whenever it is read: with an update interval of 0, every check of a
// Status is an update, however fast the machine is. It replaces the clock of the whole program: include it in one
// source file of an executable only.
#pragma once

#include <ctime>

// A replacement cannot be inline.
std::clock_t clock() noexcept // NOLINT(misc-definitions-in-headers)
{
    static std::clock_t s_ticks = 0;
    return ++s_ticks;
}
