// SPDX-License-Identifier: MIT
// libkel: benchmarks
// Signals of libsigc++, whose receivers are tracked.
#include "support/benchmarks.h"

#include <sigc++/sigc++.h>

namespace
{
class Sender
{
public:
    void notifyChanged() { m_changed.emit(*this, *this); }

    sigc::signal<void, Sender&, const Sender&> m_changed;
};

class Listener : public sigc::trackable
{
public:
    void onChanged(Sender&, const Sender&) { ++m_count; }

    uint64_t m_count = 0;
};

void notify(benchmark::State& state)
{
    Sender sender;
    std::vector<Listener> listeners(static_cast<size_t>(state.range(0)));
    for (Listener& listener : listeners)
        sender.m_changed.connect(sigc::mem_fun(listener, &Listener::onChanged));
    for (auto _ : state)
        sender.notifyChanged();
    benchmark::DoNotOptimize(listeners.front().m_count);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void attachAndDetach(benchmark::State& state)
{
    Sender sender;
    Listener listener;
    for (auto _ : state)
        sigc::connection(sender.m_changed.connect(sigc::mem_fun(listener, &Listener::onChanged))).disconnect();
    state.SetItemsProcessed(state.iterations());
}

const bool registered = bench::add("notify", "sigc", bench::receivers, notify) &&
                        bench::add("attach", "sigc", bench::single, attachAndDetach);
} // namespace
