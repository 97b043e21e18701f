// SPDX-License-Identifier: MIT
#include <kel/receiver.h>

#include <kel/changednotifier.h>
#include <kel/observable.h>

#include "support/problem.h"
#include "support/recorder.h"

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

class CountingNotifier : public Notifier
{
public:
    void transmitTo(Receiver& receiver) override { receivers.push_back(&receiver); }

    std::vector<Receiver*> receivers;
};
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
