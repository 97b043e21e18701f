// SPDX-License-Identifier: MIT
// libkel: benchmarks
// Asking for an interrupt while no progress update is due.
#include "support/benchmarks.h"

#include <kel/status.h>

#include <limits>

namespace
{
/// So long that no update falls into a measurement.
constexpr unsigned s_anHour = 3'600'000;

void check(benchmark::State& state)
{
    Status& status = Status::getSingleton();
    const unsigned interval = status.getUpdateInterval();
    status.setUpdateInterval(s_anHour);
    for (auto _ : state)
        benchmark::DoNotOptimize(status.checkInterrupt(50));
    status.setUpdateInterval(interval);
    state.SetItemsProcessed(state.iterations());
}

const bool registered = bench::add("check_interrupt", "libkel", bench::single, check);
} // namespace
