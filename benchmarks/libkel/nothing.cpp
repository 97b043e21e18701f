// SPDX-License-Identifier: MIT
// libkel: benchmarks
// A process that measures nothing: its peak memory is what all others have besides their own.
#include "support/benchmarks.h"

namespace
{
void nothing(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::ClobberMemory();
}

const bool registered = bench::add("nothing", "libkel", bench::single, nothing);
} // namespace
