// SPDX-License-Identifier: MIT
// Observers that attach, detach, destroy, notify and throw at random while they are told, beside a simple model of who
// must hear what. KEL_STORM_ROUNDS sets the number of rounds.
#include <kel/bulletin.h>
#include <kel/changedreceiver.h>
#include <kel/deletedreceiver.h>
#include <kel/observable.h>
#include <kel/observer.h>
#include <kel/problem.h>
#include <kel/receiver.h>

#include "support/tally.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <utility>
#include <vector>

namespace
{
unsigned getRounds(unsigned usual)
{
    const char* const rounds = std::getenv("KEL_STORM_ROUNDS");
    return rounds ? static_cast<unsigned>(std::strtoul(rounds, nullptr, 10)) : usual;
}

/// Who is attached to whom, and what remains of the passes that are running.
class Model
{
public:
    struct Pass
    {
        Bulletin* sender;
        std::vector<Observer*> left; ///< in the order of the calls; null: skipped
    };

    bool isAttached(Bulletin* sender, Observer* observer) const
    {
        const auto found = m_observers.find(sender);
        return found != m_observers.end() && found->second.contains(observer);
    }

    void attach(Bulletin* sender, Observer* observer) { m_observers[sender].insert(observer); }

    void detach(Bulletin* sender, Observer* observer)
    {
        m_observers[sender].erase(observer);
        for (Pass& pass : passes)
        {
            if (pass.sender == sender)
                std::replace(pass.left.begin(), pass.left.end(), observer, static_cast<Observer*>(nullptr));
        }
    }

    void destroyObserver(Observer* observer)
    {
        for (auto& [sender, observers] : m_observers)
            detach(sender, observer);
    }

    void destroySender(Bulletin* sender)
    {
        m_observers.erase(sender);
        for (Pass& pass : passes)
        {
            if (pass.sender == sender)
                pass.left.clear();
        }
    }

    void begin(Bulletin* sender)
    {
        const std::set<Observer*>& observers = m_observers[sender];
        passes.push_back({sender, {observers.begin(), observers.end()}});
    }

    /// Whom the innermost pass calls next; null for nobody.
    Observer* next()
    {
        std::vector<Observer*>& left = passes.back().left;
        while (!left.empty())
        {
            Observer* const observer = left.front();
            left.erase(left.begin());
            if (observer)
                return observer;
        }
        return nullptr;
    }

    std::vector<Pass> passes;

private:
    std::map<Bulletin*, std::set<Observer*>> m_observers;
};

class Storm
{
public:
    explicit Storm(unsigned seed) : m_random(seed) {}
    ~Storm()
    {
        m_isCalm = true;
        for (Sender& sender : m_senders)
            delete sender.bulletin;
    }
    Storm(const Storm&) = delete;
    Storm& operator=(const Storm&) = delete;

    /// One round: some actions from outside, then a comparison of everything.
    void blow()
    {
        m_actions = 60;
        for (int i = 0; i < 6; ++i)
            act();
        compare();
    }

    unsigned getDifferences() const { return m_differences; }
    unsigned getCalls() const { return m_calls; }

private:
    struct Thrown
    {
    };

    class Listener : public Observer
    {
    public:
        explicit Listener(Storm& storm) : m_storm(storm) {}
        // Nothing of the listener is touched afterwards: it may be gone.
        void update(Notifier&) override { m_storm.hear(this); }

    private:
        Storm& m_storm;
    };

    /// Hears what comes of a message instead of the message.
    class ListeningReceiver : public Receiver, public ChangedReceiver, public DeletedReceiver
    {
    public:
        explicit ListeningReceiver(Storm& storm) : m_storm(storm) {}
        void changed(Bulletin&, const Bulletin&) override { m_storm.hear(this); }
        void deleted(Bulletin&) override { m_storm.hear(this); }

    private:
        Storm& m_storm;
    };

    /// One that overrides update, and has to be asked there.
    class UpdatingReceiver : public ListeningReceiver
    {
    public:
        using ListeningReceiver::ListeningReceiver;
        void update(Notifier& notifier) override { ListeningReceiver::update(notifier); }
    };

    struct Sender
    {
        Bulletin* bulletin = nullptr;
    };

    static constexpr std::size_t s_listeners = 40;
    static constexpr std::size_t s_senders = 4;

    std::size_t pick(std::size_t count) { return m_random() % count; }

    void expect(bool condition) { m_differences += !condition; }

    std::unique_ptr<Observer> makeListener()
    {
        switch (pick(3))
        {
        case 0:
            return std::make_unique<Listener>(*this);
        case 1:
            return std::make_unique<UpdatingReceiver>(*this);
        default:
            return std::make_unique<ListeningReceiver>(*this);
        }
    }

    void hear(Observer* observer)
    {
        if (m_isCalm)
            return;
        ++m_calls;
        expect(!m_model.passes.empty() && m_model.next() == observer);
        for (std::size_t actions = pick(3); actions > 0; --actions)
            act();
        if (pick(40) == 0)
            throw Thrown();
    }

    void act()
    {
        if (m_actions == 0)
            return;
        --m_actions;
        Sender& sender = m_senders[pick(s_senders)];
        std::unique_ptr<Observer>& listener = m_listeners[pick(s_listeners)];
        if (!sender.bulletin)
            sender.bulletin = new Bulletin;
        if (!listener)
            listener = makeListener();
        switch (pick(16))
        {
        case 0:
        case 1:
        case 2:
            notify(sender, false);
            break;
        case 3:
            notify(sender, true);
            break;
        case 4:
            destroySender(sender);
            break;
        case 5:
        case 6:
            m_model.destroyObserver(listener.get());
            // The slot is free before the destructor is done, as nothing is called by it.
            listener.reset();
            break;
        case 7:
        case 8:
        case 9:
            detach(sender, *listener);
            break;
        case 10:
            m_model.destroyObserver(listener.get());
            listener->detachAll();
            break;
        default:
            attach(sender, *listener);
        }
    }

    void attach(Sender& sender, Observer& listener)
    {
        const bool isNew = !m_model.isAttached(sender.bulletin, &listener);
        try
        {
            sender.bulletin->getObservable().attach(listener);
            expect(isNew);
            m_model.attach(sender.bulletin, &listener);
        }
        catch (const Problem&)
        {
            expect(!isNew);
        }
    }

    void detach(Sender& sender, Observer& listener)
    {
        const bool isAttached = m_model.isAttached(sender.bulletin, &listener);
        try
        {
            sender.bulletin->getObservable().detach(listener);
            expect(isAttached);
            m_model.detach(sender.bulletin, &listener);
        }
        catch (const Problem&)
        {
            expect(!isAttached);
        }
    }

    void destroySender(Sender& sender)
    {
        m_model.destroySender(sender.bulletin);
        forget(sender);
        delete std::exchange(sender.bulletin, nullptr);
    }

    /// Tells of a change, or of the end of the sender, which follows it.
    void notify(Sender& sender, bool isLast)
    {
        Bulletin* const told = sender.bulletin;
        m_model.begin(told);
        // Its observers may destroy the sender, and the next one may be at the same address.
        const std::size_t depth = m_model.passes.size();
        m_told.push_back(&sender);
        try
        {
            if (isLast)
                Bulletin::destroy(*told, false);
            else
                told->notifyChanged();
            expect(m_model.next() == nullptr);
            if (isLast && m_told.back())
            {
                m_told.pop_back();
                m_model.passes.pop_back();
                m_model.destroySender(told);
                sender.bulletin = nullptr;
                forget(sender);
                return;
            }
        }
        catch (const Thrown&)
        {
        }
        expect(m_model.passes.size() == depth);
        m_model.passes.pop_back();
        m_told.pop_back();
    }

    void forget(const Sender& sender)
    {
        std::replace(m_told.begin(), m_told.end(), const_cast<Sender*>(&sender), static_cast<Sender*>(nullptr));
    }

    void compare()
    {
        expect(m_model.passes.empty());
        for (Sender& sender : m_senders)
        {
            if (!sender.bulletin)
                continue;
            for (const auto& listener : m_listeners)
            {
                if (!listener)
                    continue;
                const bool isAttached = m_model.isAttached(sender.bulletin, listener.get());
                expect(sender.bulletin->getObservable().has(*listener) == isAttached);
                expect(listener->isObserving(*sender.bulletin) == isAttached);
            }
        }
    }

    std::mt19937 m_random;
    Model m_model;
    std::array<Sender, s_senders> m_senders;
    std::array<std::unique_ptr<Observer>, s_listeners> m_listeners;
    std::vector<Sender*> m_told; ///< the senders of the running passes; null: destroyed meanwhile
    unsigned m_actions = 0;
    unsigned m_differences = 0;
    unsigned m_calls = 0;
    bool m_isCalm = false;
};

Tally s_rounds("rounds without a difference from the model");
} // namespace

TEST(NotificationStorm, CallsAndLinksAreThoseOfTheModel)
{
    unsigned calls = 0;
    for (unsigned round = 0; round < getRounds(2000);)
    {
        const unsigned first = round;
        Storm storm(round);
        for (int i = 0; i < 50; ++i, ++round)
            storm.blow();
        ASSERT_EQ(storm.getDifferences(), 0u) << "before round " << round;
        s_rounds.add(round - first);
        calls += storm.getCalls();
    }
    EXPECT_GT(calls, getRounds(2000));
}
