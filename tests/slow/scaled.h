// SPDX-License-Identifier: MIT
// The counts of slow tests.
#pragma once

#include <cstddef>
#include <cstdlib>

/// KEL_SCALE divides the counts (1: the full ones).
inline std::size_t scaled(std::size_t count)
{
    const char* const divisor = std::getenv("KEL_SCALE");
    return divisor ? count / std::strtoul(divisor, nullptr, 10) : count;
}
