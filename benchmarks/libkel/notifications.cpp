// SPDX-License-Identifier: MIT
// libkel: benchmarks
// Telling receivers of a change; making and breaking the link to one.
#include "support/benchmarks.h"

#include <kel/bulletin.h>
#include <kel/changedreceiver.h>
#include <kel/receiver.h>

namespace
{
class Listener : public Receiver, public ChangedReceiver
{
public:
    void changed(Bulletin&, const Bulletin&) override { ++m_count; }

    uint64_t m_count = 0;
};

void notify(benchmark::State& state)
{
    Bulletin sender;
    std::vector<Listener> listeners(static_cast<size_t>(state.range(0)));
    for (Listener& listener : listeners)
        listener.observe(sender);
    for (auto _ : state)
        sender.notifyChanged();
    benchmark::DoNotOptimize(listeners.front().m_count);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void attachAndDetach(benchmark::State& state)
{
    Bulletin sender;
    Listener listener;
    for (auto _ : state)
    {
        listener.observe(sender);
        listener.unobserve(sender);
    }
    state.SetItemsProcessed(state.iterations());
}

const bool registered = bench::add("notify", "libkel", bench::receivers, notify) &&
                        bench::add("attach", "libkel", bench::single, attachAndDetach);
} // namespace
