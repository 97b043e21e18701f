// SPDX-License-Identifier: MIT
// libkel: benchmarks
// A queue of functions, each of which says whether it wants to run again.
#include "support/benchmarks.h"

#include <deque>
#include <functional>

namespace
{
class Queue
{
public:
    void add(std::function<bool()> step) { m_steps.push_back(std::move(step)); }

    bool onIdle()
    {
        if (m_steps.empty())
            return false;
        std::function<bool()> step = std::move(m_steps.front());
        m_steps.pop_front();
        if (step())
            m_steps.push_back(std::move(step));
        return !m_steps.empty();
    }

private:
    std::deque<std::function<bool()>> m_steps;
};

void step(benchmark::State& state)
{
    Queue queue;
    uint64_t count = 0;
    queue.add(
        [&count]
        {
            benchmark::DoNotOptimize(++count);
            return true;
        });
    for (auto _ : state)
        benchmark::DoNotOptimize(queue.onIdle());
    state.SetItemsProcessed(state.iterations());
}

void runAll(uint64_t& counter, int64_t count)
{
    Queue queue;
    for (int64_t i = 0; i < count; ++i)
        queue.add(
            [&counter]
            {
                benchmark::DoNotOptimize(++counter);
                return false;
            });
    while (queue.onIdle())
        ;
}

void batch(benchmark::State& state)
{
    uint64_t counter = 0;
    bench::warmUp([&] { runAll(counter, state.range(0)); });
    for (auto _ : state)
        runAll(counter, state.range(0));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

const bool registered = bench::add("tasks_step", "deque", bench::single, step) &&
                        bench::add("other_tasks_step", "deque", bench::single, step) &&
                        bench::add("batch", "deque", bench::objects, batch);
} // namespace
