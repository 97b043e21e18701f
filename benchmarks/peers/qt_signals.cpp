// SPDX-License-Identifier: MIT
// libkel: benchmarks
// Signals of Qt, connected directly.
#include "support/benchmarks.h"

#include <QObject>

namespace
{
class Sender : public QObject
{
    Q_OBJECT

public:
    void notifyChanged() { Q_EMIT changed(*this, *this); }

Q_SIGNALS:
    void changed(QObject& what, const QObject& how);
};

class Listener : public QObject
{
    Q_OBJECT

public:
    void onChanged(QObject&, const QObject&) { ++m_count; }

    uint64_t m_count = 0;
};

void notify(benchmark::State& state)
{
    Sender sender;
    std::vector<Listener> listeners(static_cast<size_t>(state.range(0)));
    for (Listener& listener : listeners)
        QObject::connect(&sender, &Sender::changed, &listener, &Listener::onChanged, Qt::DirectConnection);
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
        QObject::disconnect(
            QObject::connect(&sender, &Sender::changed, &listener, &Listener::onChanged, Qt::DirectConnection));
    state.SetItemsProcessed(state.iterations());
}

const bool registered =
    bench::add("notify", "qt", bench::receivers, notify) && bench::add("attach", "qt", bench::single, attachAndDetach);
} // namespace

#include "qt_signals.moc"
