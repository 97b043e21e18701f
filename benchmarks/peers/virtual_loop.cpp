// SPDX-License-Identifier: MIT
// libkel: benchmarks
// The least that telling somebody can cost: a loop of virtual calls, without any list that keeps itself in order.
#include "support/benchmarks.h"

#include <memory>

namespace
{
class Sender;

class Receiver
{
public:
    Receiver() = default;
    Receiver(const Receiver&) = delete;
    Receiver& operator=(const Receiver&) = delete;
    virtual ~Receiver() = default;
    virtual void changed(Sender& what, const Sender& how) = 0;
};

class Sender
{
public:
    void notifyChanged()
    {
        for (Receiver* receiver : m_receivers)
            receiver->changed(*this, *this);
    }

    std::vector<Receiver*> m_receivers;
};

class Listener : public Receiver
{
public:
    void changed(Sender&, const Sender&) override { ++m_count; }

    uint64_t m_count = 0;
};

/// Never made. With one class of receivers only, the compiler would call it without looking at the object.
class BackwardListener : public Listener
{
public:
    void changed(Sender&, const Sender&) override { --m_count; }
};

std::unique_ptr<Listener> makeListener(bool backward)
{
    if (backward)
        return std::make_unique<BackwardListener>();
    return std::make_unique<Listener>();
}

void notify(benchmark::State& state)
{
    Sender sender;
    std::vector<std::unique_ptr<Listener>> listeners(static_cast<size_t>(state.range(0)));
    for (std::unique_ptr<Listener>& listener : listeners)
    {
        listener = makeListener(state.range(0) < 0);
        sender.m_receivers.push_back(listener.get());
    }
    for (auto _ : state)
    {
        sender.notifyChanged();
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

const bool registered = bench::add("notify", "virtual_loop", bench::receivers, notify);
} // namespace
