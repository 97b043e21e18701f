// SPDX-License-Identifier: MIT
// libkel: benchmarks
// Single steps of the task queues, and a batch run to its end.
#include "support/benchmarks.h"

#include <kel/batchtask.h>
#include <kel/othertasks.h>
#include <kel/simpletask.h>
#include <kel/tasks.h>

namespace
{
/// A task that wants to go on until it is stopped.
class Step : public Task
{
public:
    explicit Step(const bool& running) : m_running(running) {}
    void performAction() override { benchmark::DoNotOptimize(++m_count); }
    bool repeat() override { return m_running; }

private:
    const bool& m_running;
    uint64_t m_count = 0;
};

template <class Queue>
void step(benchmark::State& state)
{
    bool running = true;
    Queue& queue = *Queue::getSingleton();
    queue.add(new Step(running));
    for (auto _ : state)
        benchmark::DoNotOptimize(queue.onIdle());
    running = false;
    while (queue.onIdle())
        ;
    state.SetItemsProcessed(state.iterations());
}

class Counter
{
public:
    void count() { benchmark::DoNotOptimize(++m_count); }

private:
    uint64_t m_count = 0;
};

void runBatch(Counter& counter, int64_t count)
{
    auto* const batch = new BatchTask(false);
    for (int64_t i = 0; i < count; ++i)
        batch->add(new SimpleTask<Counter>(&counter, &Counter::count));
    Tasks::getSingleton()->add(batch);
    while (Tasks::getSingleton()->onIdle())
        ;
    while (OtherTasks::getSingleton()->onIdle())
        ;
}

void batch(benchmark::State& state)
{
    Counter counter;
    bench::warmUp([&] { runBatch(counter, state.range(0)); });
    for (auto _ : state)
        runBatch(counter, state.range(0));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

const bool registered = bench::add("tasks_step", "libkel", bench::single, step<Tasks>) &&
                        bench::add("other_tasks_step", "libkel", bench::single, step<OtherTasks>) &&
                        bench::add("batch", "libkel", bench::objects, batch);
} // namespace
