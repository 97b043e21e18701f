// SPDX-License-Identifier: MIT
#include <kel/observable.h>

#include <kel/bulletin.h>
#include <kel/notifier.h>
#include <kel/observer.h>

#include "support/allocations.h"
#include "support/problem.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <stdexcept>
#include <vector>

namespace
{
class Listener : public Observer
{
public:
    void update(Notifier& notifier) override
    {
        ++calls;
        last = &notifier;
        // A copy: the listener may be destroyed by what it runs.
        if (const auto action = during)
            action();
    }

    int calls = 0;
    Notifier* last = nullptr;
    std::function<void()> during;
};

/// Listeners whose places in a pass are known: they stand one behind the other in memory.
class ObservableTest : public testing::Test
{
protected:
    void attach(std::size_t count)
    {
        m_listeners = std::vector<Listener>(count);
        for (Listener& listener : m_listeners)
            m_observable->attach(listener);
    }

    void notify()
    {
        Notifier notifier;
        m_observable->notify(notifier);
    }

    std::vector<int> calls() const
    {
        std::vector<int> counts;
        for (const Listener& listener : m_listeners)
            counts.push_back(listener.calls);
        return counts;
    }

    std::unique_ptr<Observable> m_observable = std::make_unique<Observable>();
    std::vector<Listener> m_listeners;
};
} // namespace

TEST_F(ObservableTest, HasNobodyAtFirst)
{
    Listener listener;
    EXPECT_TRUE(m_observable->empty());
    EXPECT_FALSE(m_observable->has(listener));
    notify();
}

TEST_F(ObservableTest, AttachLinksBothSides)
{
    Bulletin obj;
    Listener listener;
    obj.getObservable().attach(listener);
    EXPECT_TRUE(obj.getObservable().has(listener));
    EXPECT_FALSE(obj.getObservable().empty());
    EXPECT_TRUE(listener.isObserving(obj));
}

TEST_F(ObservableTest, AttachTwiceThrowsAndChangesNothing)
{
    attach(1);
    EXPECT_ASSERTION(m_observable->attach(m_listeners[0]), "!has(anObserver)");
    notify();
    EXPECT_EQ(calls(), std::vector<int>{1});
}

TEST_F(ObservableTest, AttachOfAnObserverThatHasTheLinkAlreadyThrowsAfterTheInsertion)
{
    Listener listener;
    listener.attach(*m_observable);
    EXPECT_ASSERTION(m_observable->attach(listener), "!has(anObservable)");
    EXPECT_TRUE(m_observable->has(listener));
}

TEST_F(ObservableTest, NobodyIsLinkedWhenMemoryRunsOut)
{
    // From the third link on, both sides allocate.
    std::vector<Bulletin> others(2);
    attach(2);
    Bulletin obj;
    Listener listener;
    for (Bulletin& other : others)
        other.getObservable().attach(listener);
    Observable& observable = obj.getObservable();
    for (Listener& attached : m_listeners)
        observable.attach(attached);
    const std::size_t failures = allocations::failEachInTurn([&] { observable.attach(listener); },
                                                             [&]
                                                             {
                                                                 EXPECT_FALSE(observable.has(listener));
                                                                 EXPECT_FALSE(listener.isObserving(obj));
                                                             });
    EXPECT_GE(failures, 2u);
    EXPECT_TRUE(observable.has(listener));
    EXPECT_TRUE(listener.isObserving(obj));
}

TEST_F(ObservableTest, DetachUnlinksBothSides)
{
    Bulletin obj;
    Listener listener;
    obj.getObservable().attach(listener);
    obj.getObservable().detach(listener);
    EXPECT_TRUE(obj.getObservable().empty());
    EXPECT_FALSE(listener.isObserving(obj));
}

TEST_F(ObservableTest, DetachWithoutALinkThrows)
{
    Listener listener;
    EXPECT_ASSERTION(m_observable->detach(listener), "has(anObservable)");
    m_observable->attach(listener);
    m_observable->detach(listener);
    EXPECT_ASSERTION(m_observable->detach(listener), "has(anObservable)");
}

TEST_F(ObservableTest, DetachOfAHalfLinkThrowsAfterTheErasure)
{
    Listener listener;
    m_observable->attach(listener);
    listener.detach(*m_observable);
    EXPECT_ASSERTION(m_observable->detach(listener), "has(anObservable)");
    EXPECT_FALSE(m_observable->has(listener));
}

TEST_F(ObservableTest, UnhooksItsObserversAtItsEnd)
{
    Bulletin other;
    attach(3);
    for (Listener& listener : m_listeners)
        other.getObservable().attach(listener);
    m_observable.reset();
    for (Listener& listener : m_listeners)
    {
        EXPECT_TRUE(listener.isObserving(other));
        EXPECT_NO_THROW(listener.detachAll());
    }
}

TEST_F(ObservableTest, EndsWithALinkThatOnlyItsSideHad)
{
    Listener listener;
    m_observable->attach(listener);
    listener.detach(*m_observable);
    EXPECT_NO_THROW(m_observable.reset());
}

TEST_F(ObservableTest, NotifyCallsEveryObserverOnceWithTheNotification)
{
    // A single one, some, and more than fit into a small pass.
    for (const std::size_t count : {1u, 2u, 16u, 17u, 1000u})
    {
        attach(count);
        Notifier notifier;
        m_observable->notify(notifier);
        EXPECT_EQ(calls(), std::vector<int>(count, 1));
        EXPECT_TRUE(std::all_of(m_listeners.begin(), m_listeners.end(),
                                [&](const Listener& listener) { return listener.last == &notifier; }));
    }
}

TEST_F(ObservableTest, NotifyCallsInTheOrderOfAddresses)
{
    m_listeners = std::vector<Listener>(20);
    std::vector<const Listener*> called;
    for (std::size_t i = m_listeners.size(); i > 0; --i)
    {
        Listener& listener = m_listeners[i - 1];
        listener.during = [&called, &listener] { called.push_back(&listener); };
        m_observable->attach(listener);
    }
    notify();
    EXPECT_EQ(called.size(), m_listeners.size());
    EXPECT_TRUE(std::is_sorted(called.begin(), called.end()));
}

TEST_F(ObservableTest, ObserverThatDetachesItselfIsNotCalledAgainButTheOthersAre)
{
    for (const std::size_t count : {1u, 3u, 20u})
    {
        attach(count);
        m_listeners[0].during = [this] { m_observable->detach(m_listeners[0]); };
        notify();
        EXPECT_EQ(calls(), std::vector<int>(count, 1));
        notify();
        std::vector<int> expected(count, 2);
        expected[0] = 1;
        EXPECT_EQ(calls(), expected);
    }
}

TEST_F(ObservableTest, ObserverDetachedByAnotherIsNotCalledInTheSamePass)
{
    attach(3);
    m_listeners[0].during = [this] { m_observable->detach(m_listeners[1]); };
    notify();
    EXPECT_EQ(calls(), (std::vector<int>{1, 0, 1}));
}

TEST_F(ObservableTest, ObserverThatWasCalledAlreadyCanBeDetached)
{
    attach(3);
    m_listeners[2].during = [this] { m_observable->detach(m_listeners[0]); };
    notify();
    EXPECT_EQ(calls(), (std::vector<int>{1, 1, 1}));
}

TEST_F(ObservableTest, ObserverDestroyedByAnotherIsNotCalled)
{
    attach(1);
    auto first = std::make_unique<Listener>();
    auto second = std::make_unique<Listener>();
    auto& later = std::less<>()(first.get(), second.get()) ? second : first;
    auto& earlier = &later == &first ? second : first;
    m_observable->attach(*first);
    m_observable->attach(*second);
    earlier->during = [&later] { later.reset(); };
    notify();
    EXPECT_EQ(earlier->calls, 1);
    EXPECT_EQ(calls(), std::vector<int>{1});
}

TEST_F(ObservableTest, ObserverMayDestroyItself)
{
    for (const std::size_t others : {0u, 1u})
    {
        attach(others);
        auto* const listener = new Listener;
        listener->during = [listener] { delete listener; };
        m_observable->attach(*listener);
        notify();
        EXPECT_EQ(calls(), std::vector<int>(others, 1));
    }
}

TEST_F(ObservableTest, ObserverAttachedDuringAPassHearsTheNextOne)
{
    for (const std::size_t count : {1u, 2u})
    {
        attach(count);
        Listener late;
        m_listeners[0].during = [&]
        {
            if (!m_observable->has(late))
                m_observable->attach(late);
        };
        notify();
        EXPECT_EQ(late.calls, 0);
        notify();
        EXPECT_EQ(late.calls, 1);
    }
}

TEST_F(ObservableTest, ObserverAttachedAndDetachedDuringAPassChangesNothing)
{
    attach(3);
    Listener visitor;
    m_listeners[0].during = [&]
    {
        m_observable->attach(visitor);
        m_observable->detach(visitor);
    };
    notify();
    EXPECT_EQ(calls(), (std::vector<int>{1, 1, 1}));
    EXPECT_EQ(visitor.calls, 0);
}

TEST_F(ObservableTest, ObserverDetachedAndAttachedAgainHearsTheNextPass)
{
    attach(2);
    m_listeners[0].during = [this]
    {
        m_observable->detach(m_listeners[1]);
        m_observable->attach(m_listeners[1]);
    };
    notify();
    EXPECT_EQ(calls(), (std::vector<int>{1, 0}));
    m_listeners[0].during = nullptr;
    notify();
    EXPECT_EQ(calls(), (std::vector<int>{2, 1}));
}

TEST_F(ObservableTest, NestedNotificationIsAPassOfItsOwn)
{
    attach(3);
    m_listeners[1].during = [this]
    {
        m_listeners[1].during = nullptr;
        notify();
    };
    notify();
    EXPECT_EQ(calls(), (std::vector<int>{2, 2, 2}));
}

TEST_F(ObservableTest, ObserverDetachedInANestedPassIsSkippedInAllPasses)
{
    attach(3);
    m_listeners[0].during = [this]
    {
        m_listeners[0].during = [this] { m_observable->detach(m_listeners[2]); };
        notify();
        m_listeners[0].during = nullptr;
    };
    notify();
    EXPECT_EQ(calls(), (std::vector<int>{2, 2, 0}));
    notify();
    EXPECT_EQ(calls(), (std::vector<int>{3, 3, 0}));
}

TEST_F(ObservableTest, ThrowingObserverEndsThePass)
{
    for (const std::size_t count : {1u, 3u})
    {
        attach(count);
        m_listeners[0].during = [] { throw std::runtime_error("no"); };
        EXPECT_THROW(notify(), std::runtime_error);
        std::vector<int> expected(count, 0);
        expected[0] = 1;
        EXPECT_EQ(calls(), expected);
    }
}

TEST_F(ObservableTest, IsAsNewAfterAThrowingObserver)
{
    attach(3);
    m_listeners[1].during = [] { throw std::runtime_error("no"); };
    EXPECT_THROW(notify(), std::runtime_error);
    m_listeners[1].during = nullptr;
    // Would reach into the ended pass if that were still known.
    m_observable->detach(m_listeners[2]);
    notify();
    EXPECT_EQ(calls(), (std::vector<int>{2, 2, 0}));
}

TEST_F(ObservableTest, ThrowingObserverOfANestedPassEndsBothUnlessCaught)
{
    attach(3);
    m_listeners[0].during = [this]
    {
        m_listeners[0].during = [] { throw std::runtime_error("no"); };
        EXPECT_THROW(notify(), std::runtime_error);
    };
    notify();
    EXPECT_EQ(calls(), (std::vector<int>{2, 1, 1}));
}

TEST_F(ObservableTest, DestroyedInsideItsOwnNotificationCallsNobodyElse)
{
    for (const std::size_t count : {1u, 3u, 20u})
    {
        m_observable = std::make_unique<Observable>();
        attach(count);
        m_listeners[0].during = [this] { m_observable.reset(); };
        notify();
        std::vector<int> expected(count, 0);
        expected[0] = 1;
        EXPECT_EQ(calls(), expected);
    }
}

TEST_F(ObservableTest, DestroyedInsideANestedNotificationEndsAllItsPasses)
{
    attach(3);
    m_listeners[0].during = [this]
    {
        m_listeners[0].during = [this] { m_observable.reset(); };
        notify();
    };
    notify();
    EXPECT_EQ(calls(), (std::vector<int>{2, 0, 0}));
}

TEST_F(ObservableTest, DestroyedByAThrowingObserverIsNotTouched)
{
    attach(2);
    m_listeners[0].during = [this]
    {
        m_observable.reset();
        throw std::runtime_error("no");
    };
    EXPECT_THROW(notify(), std::runtime_error);
    EXPECT_EQ(calls(), (std::vector<int>{1, 0}));
}

TEST_F(ObservableTest, FixNotifyingSkipsAnObserverInTheRunningPassesOnly)
{
    attach(2);
    m_listeners[0].during = [this] { m_observable->fixNotifying(m_listeners[1]); };
    notify();
    EXPECT_EQ(calls(), (std::vector<int>{1, 0}));
    EXPECT_TRUE(m_observable->has(m_listeners[1]));
    m_listeners[0].during = nullptr;
    m_observable->fixNotifying(m_listeners[1]);
    notify();
    EXPECT_EQ(calls(), (std::vector<int>{2, 1}));
}

TEST_F(ObservableTest, NotifyingAFewAllocatesNothing)
{
    attach(16);
    const std::size_t before = allocations::getCount();
    notify();
    EXPECT_EQ(allocations::getCount(), before);
}

TEST_F(ObservableTest, NotifyCallsAllWithoutMemory)
{
    for (const std::size_t count : {16u, 17u, 32u, 33u, 1000u})
    {
        attach(count);
        {
            const allocations::Limit limit(0);
            notify();
        }
        EXPECT_EQ(calls(), std::vector<int>(count, 1));
    }
}

TEST_F(ObservableTest, ObserversDetachedInAPassWithoutMemoryAreNotCalled)
{
    attach(40);
    m_listeners[1].during = [this]
    {
        for (const std::size_t detached : {0u, 1u, 2u, 15u, 16u, 39u})
            m_observable->detach(m_listeners[detached]);
    };
    {
        const allocations::Limit limit(0);
        notify();
    }
    std::vector<int> expected(40, 1);
    expected[2] = expected[15] = expected[16] = expected[39] = 0;
    EXPECT_EQ(calls(), expected);
}

TEST_F(ObservableTest, DestroyedInAPassWithoutMemoryCallsNobodyElse)
{
    attach(40);
    m_listeners[20].during = [this] { m_observable.reset(); };
    {
        const allocations::Limit limit(0);
        notify();
    }
    std::vector<int> expected(40, 0);
    std::fill_n(expected.begin(), 21, 1);
    EXPECT_EQ(calls(), expected);
}
