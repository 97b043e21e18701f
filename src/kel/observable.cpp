// SPDX-License-Identifier: MIT
// libkel: Change notification
#include <kel/observable.h>

#include <kel/observer.h>
#include <kel/zassert.h>

#include <algorithm>
#include <memory>
#include <new>

/// One running pass. Lives on the stack of notify() and is known to the observable meanwhile.
class Observable::NotifyObservers
{
public:
    NotifyObservers(const zset<Observer>& observers, NotifyObservers*& notifying)
        : m_count(observers.size()),
          m_many(m_count > s_few ? new Observer*[m_count] : nullptr),
          m_snapshot(m_many ? m_many.get() : m_few),
          m_notifying(&notifying),
          m_outer(notifying)
    {
        std::copy(observers.begin(), observers.end(), m_snapshot);
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
    [[gnu::noinline]] void run(Notifier& notifier)
    {
        for (unsigned i = 0; i < m_count; ++i)
        {
            if (Observer* const observer = m_snapshot[i])
                observer->update(notifier);
        }
    }

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
        m_count = 0;
        m_notifying = nullptr;
    }

    NotifyObservers* getOuter() const { return m_outer; }

private:
    // Most objects have a handful of observers; their passes need no allocation.
    static constexpr unsigned s_few = 16;

    unsigned m_count;
    const std::unique_ptr<Observer*[]> m_many;
    Observer* m_few[s_few]; ///< left uninitialised past the count: a pass is made for every single notification
    Observer** const m_snapshot;
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
    KEL_ASSERT(m_observers.insert(&anObserver), "!has(anObserver)");
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
    // Nobody is called after a single observer, so that there is nothing to keep track of.
    if (m_observers.size() == 1)
        return (*m_observers.begin())->update(notifier);
    NotifyObservers pass(m_observers, m_notifying);
    pass.run(notifier);
}

void Observable::fixNotifying(Observer& anObserver)
{
    for (NotifyObservers* pass = m_notifying; pass != nullptr; pass = pass->getOuter())
        pass->skip(anObserver);
}
