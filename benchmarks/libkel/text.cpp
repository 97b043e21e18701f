// SPDX-License-Identifier: MIT
// libkel: benchmarks
// Filling a message of three arguments.
#include "support/benchmarks.h"

#include <kel/ztring.h>

namespace
{
void fill(benchmark::State& state)
{
    const Ztring pattern("Node %1 of part %2 lies outside of %3");
    const Ztring number("4711");
    const Ztring part("Upper chord");
    const Ztring place("the building site");
    for (auto _ : state)
    {
        const Ztring message(pattern);
        message.argReplace(number);
        message.argReplace(part);
        message.argReplace(place);
        benchmark::DoNotOptimize(message.wx().length());
    }
    state.SetItemsProcessed(state.iterations());
}

const bool registered = bench::add("fill_text", "libkel", bench::single, fill);
} // namespace
