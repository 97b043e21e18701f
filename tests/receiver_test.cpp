// SPDX-License-Identifier: MIT
#include <kel/receiver.h>

#include <kel/changednotifier.h>
#include <kel/observable.h>

#include "support/problem.h"
#include "support/recorder.h"

#include <utility>

namespace
{
class AdditionsOnly : public Receiver, public AddedReceiver
{
public:
    void added(Bulletin& /*board*/, Bulletin& obj) override { objs.push_back(&obj); }

    std::vector<const Bulletin*> objs;
};

class PlainObserver : public Observer
{
public:
    void update(Notifier& notifier) override { last = &notifier; }

    Notifier* last = nullptr;
};

/// Implements the interface but takes messages itself.
template <class Base>
class TakesMessagesItself : public Base, public ChangedReceiver
{
public:
    void update(Notifier& /*notifier*/) override { ++updates; }
    void changed(Bulletin& /*what*/, const Bulletin& /*how*/) override { ++changes; }

    int updates = 0;
    int changes = 0;
};

class CountingNotifier : public Notifier
{
public:
    void transmitTo(Receiver& receiver) override { receivers.push_back(&receiver); }

    std::vector<Receiver*> receivers;
};
/// Sends a message while only its own part of the object exists.
class SendsWhileIncomplete : public Receiver
{
public:
    explicit SendsWhileIncomplete(Bulletin& obj) : m_obj(obj)
    {
        observe(m_obj);
        m_obj.notifyChanged();
    }
    ~SendsWhileIncomplete() override { m_obj.notifyChanged(); }

private:
    Bulletin& m_obj;
};

class CompletedByTheInterface : public SendsWhileIncomplete, public ChangedReceiver
{
public:
    CompletedByTheInterface(Bulletin& obj, int& countOfMessages) : SendsWhileIncomplete(obj), count(countOfMessages) {}
    void changed(Bulletin& /*what*/, const Bulletin& /*how*/) override { ++count; }

    int& count;
};

/// Has its interface at another place when it is part of a larger object.
class SharesTheInterface : public Receiver, public virtual ChangedReceiver
{
public:
    SharesTheInterface(Bulletin& obj, int& countOfMessages) : m_obj(obj), m_count(countOfMessages)
    {
        observe(m_obj);
        m_obj.notifyChanged();
    }
    ~SharesTheInterface() override { m_obj.notifyChanged(); }
    void changed(Bulletin& /*what*/, const Bulletin& /*how*/) override { ++m_count; }

private:
    Bulletin& m_obj;
    int& m_count;
};

class LargerPart : public virtual ChangedReceiver
{
public:
    double padding[10] = {};
};

class Larger : public SharesTheInterface, public LargerPart
{
public:
    using SharesTheInterface::SharesTheInterface;
    void changed(Bulletin& what, const Bulletin& how) override { SharesTheInterface::changed(what, how); }

    double morePadding[10] = {};
};

/// One class for each number; every second one listens, and where the interface stands depends on the number.
template <int number>
struct Padding
{
    virtual ~Padding() = default;
    char bytes[number + 1] = {};
};
template <int number, bool listens>
class Numbered : public Receiver
{
};
template <int number>
class Numbered<number, true> : public Receiver, public Padding<number>, public ChangedReceiver
{
public:
    void changed(Bulletin& /*what*/, const Bulletin& /*how*/) override { ++count; }

    int count = 0;
};

template <int number>
void expectToHearEveryMessage(Bulletin& obj)
{
    Numbered<number, true> listening;
    Numbered<number, false> deaf;
    ChangedNotifier notifier(obj);
    for (int i = 1; i <= 3; ++i)
    {
        listening.update(notifier);
        deaf.update(notifier);
        EXPECT_EQ(listening.count, i) << number;
    }
}

template <int... numbers>
void expectAllToHearEveryMessage(Bulletin& obj, std::integer_sequence<int, numbers...>)
{
    (expectToHearEveryMessage<numbers>(obj), ...);
}
} // namespace

TEST(Receiver, UpdateHandsItselfToTheNotifier)
{
    Recorder recorder;
    CountingNotifier notifier;
    recorder.update(notifier);
    EXPECT_EQ(notifier.receivers, std::vector<Receiver*>{&recorder});
}

TEST(Receiver, ObserveAttaches)
{
    Bulletin obj;
    Recorder recorder;
    recorder.observe(obj);
    EXPECT_TRUE(recorder.isObserving(obj));
    EXPECT_TRUE(obj.getObservable().has(recorder));
    EXPECT_ASSERTION(recorder.observe(obj), "!has(anObserver)");
    obj.notifyChanged();
    EXPECT_EQ(recorder.heard.size(), 1u);
}

TEST(Receiver, UnobserveDetaches)
{
    Bulletin obj;
    Recorder recorder;
    recorder.observe(obj);
    recorder.unobserve(obj);
    EXPECT_FALSE(recorder.isObserving(obj));
    EXPECT_TRUE(obj.getObservable().empty());
    EXPECT_ASSERTION(recorder.unobserve(obj), "has(anObservable)");
    obj.notifyChanged();
    EXPECT_TRUE(recorder.heard.empty());
}

TEST(Receiver, HearsOnlyWhatItListensTo)
{
    BulletinBoard board;
    AdditionsOnly receiver;
    receiver.observe(board);
    auto* const obj = new Bulletin;
    board.add(obj);
    board.notifyChanged();
    board.remove(*obj);
    EXPECT_EQ(receiver.objs, std::vector<const Bulletin*>{obj});
    Bulletin::destroy(obj, false);
}

TEST(Receiver, IsNoMatterForAPlainObserver)
{
    Bulletin obj;
    PlainObserver observer;
    obj.getObservable().attach(observer);
    CountingNotifier notifier;
    obj.notifyObservers(notifier);
    EXPECT_EQ(observer.last, &notifier);
    EXPECT_TRUE(notifier.receivers.empty());
}

TEST(Receiver, MayBeDestroyedByAnotherInsideANotification)
{
    Bulletin obj;
    auto first = std::make_unique<Recorder>();
    auto second = std::make_unique<Recorder>();
    const auto destroyTheOther = [&](const Heard&)
    {
        auto& other = first && first->heard.empty() ? first : second;
        other.reset();
    };
    first->during = destroyTheOther;
    second->during = destroyTheOther;
    first->observe(obj);
    second->observe(obj);
    obj.notifyChanged();
    EXPECT_NE(first == nullptr, second == nullptr);
    EXPECT_FALSE(obj.getObservable().empty());
}

TEST(Receiver, CopyObservesNothing)
{
    Bulletin obj;
    AdditionsOnly receiver;
    receiver.observe(obj);
    const AdditionsOnly copy(receiver);
    EXPECT_FALSE(copy.isObserving(obj));
}

TEST(Receiver, ManyClassesAreToldApart)
{
    Bulletin obj;
    for (int i = 0; i < 2; ++i)
        expectAllToHearEveryMessage(obj, std::make_integer_sequence<int, 100>());
}

TEST(Receiver, ListensToWhatItImplementsAtThatMoment)
{
    Bulletin obj;
    for (int i = 0; i < 2; ++i)
    {
        int count = 0;
        {
            const CompletedByTheInterface receiver(obj, count);
            EXPECT_EQ(count, 0);
            obj.notifyChanged();
            obj.notifyChanged();
            EXPECT_EQ(count, 2);
        }
        EXPECT_EQ(count, 2);
    }
}

TEST(Receiver, FindsItsInterfaceWhereverItStandsAtThatMoment)
{
    Bulletin obj;
    for (int i = 0; i < 2; ++i)
    {
        int count = 0;
        {
            const SharesTheInterface receiver(obj, count);
            obj.notifyChanged();
        }
        EXPECT_EQ(count, 3);
        {
            const Larger receiver(obj, count);
            obj.notifyChanged();
        }
        EXPECT_EQ(count, 6);
    }
}

TEST(Receiver, OverriddenUpdateGetsTheMessageInsteadOfTheInterface)
{
    Bulletin obj;
    TakesMessagesItself<Receiver> receiver;
    TakesMessagesItself<Observer> observer;
    obj.getObservable().attach(receiver);
    obj.notifyChanged();
    EXPECT_EQ(receiver.updates, 1);

    obj.getObservable().attach(observer);
    std::vector<Numbered<1, true>> listening(3);
    for (auto& listener : listening)
        listener.observe(obj);
    obj.notifyChanged();
    EXPECT_EQ(receiver.updates, 2);
    EXPECT_EQ(observer.updates, 1);
    EXPECT_EQ(receiver.changes + observer.changes, 0);
    for (const auto& listener : listening)
        EXPECT_EQ(listener.count, 1);
}

TEST(Receiver, MessageOfADerivedKindIsHandedOverByItsOwnClass)
{
    class Silent : public ChangedNotifier
    {
    public:
        using ChangedNotifier::ChangedNotifier;
        void transmitTo(Receiver& /*receiver*/) override {}
    };

    Bulletin obj;
    Numbered<1, true> listener;
    Numbered<1, true> other;
    Silent silent(obj);
    listener.observe(obj);
    obj.notifyObservers(silent);
    other.observe(obj);
    obj.notifyObservers(silent);
    EXPECT_EQ(listener.count + other.count, 0);
}
