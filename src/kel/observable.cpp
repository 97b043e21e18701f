// SPDX-License-Identifier: MIT
// libkel: Change notification
#include <kel/observable.h>

#include <kel/changednotifier.h>
#include <kel/changedreceiver.h>
#include <kel/observer.h>
#include <kel/zassert.h>

#include <algorithm>
#include <memory>
#include <new>
#include <typeinfo>

#include "receivercast_p.h"

/// Calls update with any message.
class Observable::AnyUpdate
{
public:
    explicit AnyUpdate(Notifier& notifier) : m_notifier(notifier) {}

    void operator()(Observer& observer) { observer.update(m_notifier); }

private:
    Notifier& m_notifier;
};

/// Calls update with a message of exactly that class, or at once what comes of it: most messages are of this class and
/// go to receivers that do not override update.
///
/// Lives no longer than a pass. All that is called in it was there when it began, so that no class can take the place
/// of the one looked up last.
class Observable::ChangedUpdate
{
public:
    explicit ChangedUpdate(ChangedNotifier& notifier) : m_notifier(notifier) {}

    void operator()(Observer& observer)
    {
        const void* const table = ReceiverCastCache::getVirtualTable(observer);
        if (table != m_table) [[unlikely]]
        {
            m_offset = ReceiverCastCache::find<ChangedReceiver>(observer).direct;
            m_table = table;
        }
        if (m_offset == ReceiverCastCache::s_none) [[unlikely]]
            return observer.update(m_notifier);
        auto& receiver = ReceiverCastCache::getInterface<ChangedReceiver>(observer, m_offset);
        receiver.changed(*m_notifier.m_what, *m_notifier.m_how);
    }

private:
    ChangedNotifier& m_notifier;
    const void* m_table = nullptr;
    std::ptrdiff_t m_offset = ReceiverCastCache::s_none;
};

/// One running pass. Lives on the stack of notify() and is known to the observable meanwhile.
class Observable::NotifyObservers
{
public:
    NotifyObservers(const zset<Observer>& observers, NotifyObservers*& notifying)
        : m_count(observers.size()),
          m_many(m_count > s_few ? new (std::nothrow) Observer*[m_count] : nullptr),
          m_snapshot(m_many ? m_many.get() : m_few),
          m_notifying(&notifying),
          m_outer(notifying)
    {
        if (m_count <= s_few || m_many) [[likely]]
            observers.copyTo(m_snapshot);
        else
            takeFew(observers);
        notifying = this;
    }

    NotifyObservers(const NotifyObservers&) = delete;
    NotifyObservers& operator=(const NotifyObservers&) = delete;

    ~NotifyObservers()
    {
        // Passes end in the reverse order of their beginning, so this one is the innermost.
        if (m_notifying != nullptr)
            *m_notifying = m_outer;
    }

    // Not inlined: g++ 12 takes the link to the pass for a dangling one, although the destructor takes it back.
    template <class Update, class Message>
    [[gnu::noinline]] void run(Message& message)
    {
        Update update(message);
        Observer** const end = m_snapshot + m_count;
        for (Observer** next = m_snapshot; next != end; ++next)
        {
            if (Observer* const observer = *next)
                update(*observer);
        }
    }

    /// Whether there is more to run.
    bool goOn() { return m_last != nullptr && m_notifying != nullptr && takeFew(*m_observers); }

    void skip(const Observer& anObserver)
    {
        Observer** const end = m_snapshot + m_count;
        Observer** const found = std::find(m_snapshot, end, &anObserver);
        if (found != end)
            *found = nullptr;
    }

    /// For an observable that is going away: nobody else is called, and the observable is not touched any more.
    void end()
    {
        std::fill(m_snapshot, m_snapshot + m_count, nullptr);
        m_notifying = nullptr;
    }

    NotifyObservers* getOuter() const { return m_outer; }

private:
    // Without memory a pass is run in portions: who changes a board has to be sure that it is told of. Other than in a
    // whole pass, whoever is attached meanwhile may be called.
    [[gnu::noinline]] bool takeFew(const zset<Observer>& observers)
    {
        m_observers = &observers;
        m_count = observers.copyAfter(m_last, m_few, s_few);
        if (m_count != 0)
            m_last = m_few[m_count - 1];
        return m_count != 0;
    }

    // Most objects have a handful of observers; their passes need no allocation.
    static constexpr unsigned s_few = 16;

    unsigned m_count;
    const std::unique_ptr<Observer*[]> m_many;
    Observer* m_few[s_few]; ///< left uninitialised past the count: a pass is made for every single notification
    Observer** const m_snapshot;
    const zset<Observer>* m_observers = nullptr; ///< of a pass in portions
    const Observer* m_last = nullptr;            ///< of the portion; null in a whole pass
    NotifyObservers** m_notifying;
    NotifyObservers* const m_outer;
};

Observable::Observable() = default;

Observable::~Observable()
{
    for (NotifyObservers* pass = m_notifying; pass != nullptr; pass = pass->getOuter())
        pass->end();
    // Not with Observer::detach, whose assertion would leave a destructor where somebody broke the link on one side
    // only.
    for (Observer* const observer : m_observers)
        observer->m_observables.erase(this);
}

void Observable::attach(Observer& anObserver)
{
    const bool isNew = m_observers.insert(&anObserver);
    KEL_ASSERT(isNew, "!has(anObserver)");
    try
    {
        anObserver.attach(*this);
    }
    catch (const std::bad_alloc&)
    {
        m_observers.erase(&anObserver);
        throw;
    }
}

void Observable::detach(Observer& anObserver)
{
    fixNotifying(anObserver);
    m_observers.erase(&anObserver);
    anObserver.detach(*this);
}

bool Observable::has(Observer& anObserver) const
{
    return m_observers.has(&anObserver);
}

void Observable::notify(Notifier& notifier)
{
    if (&typeid(notifier) == &typeid(ChangedNotifier))
        notifyChanged(static_cast<ChangedNotifier&>(notifier));
    else
        notifyWith<AnyUpdate>(notifier);
}

void Observable::notifyChanged(ChangedNotifier& notifier)
{
    notifyWith<ChangedUpdate>(notifier);
}

template <class Update, class Message>
void Observable::notifyWith(Message& message)
{
    // Nobody is called after a single observer, so that there is nothing to keep track of.
    if (m_observers.size() == 1)
        Update{message}(**m_observers.begin());
    else
        notifyMany<Update>(message);
}

// Not inlined: what a pass needs on the stack is not needed for a single observer.
template <class Update, class Message>
[[gnu::noinline]] void Observable::notifyMany(Message& message)
{
    NotifyObservers pass(m_observers, m_notifying);
    do
        pass.run<Update>(message);
    while (pass.goOn());
}

void Observable::fixNotifying(Observer& anObserver)
{
    for (NotifyObservers* pass = m_notifying; pass != nullptr; pass = pass->getOuter())
        pass->skip(anObserver);
}
