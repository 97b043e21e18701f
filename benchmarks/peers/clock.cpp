// SPDX-License-Identifier: MIT
// libkel: benchmarks
// One question for the processor time.
#include "support/benchmarks.h"

#include <ctime>

namespace
{
void ask(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(std::clock());
    state.SetItemsProcessed(state.iterations());
}

const bool registered = bench::add("check_interrupt", "clock", bench::single, ask);
} // namespace
