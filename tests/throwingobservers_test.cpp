// SPDX-License-Identifier: MIT
// Observers that throw: the exception ends the pass and arrives as it is where it is laid down to, and what they
// observe goes on afterwards.
#include <kel/addednotifier.h>
#include <kel/autodelete.h>
#include <kel/bulletinboard.h>
#include <kel/changednotifier.h>
#include <kel/deletednotifier.h>
#include <kel/interrupted.h>
#include <kel/killednotifier.h>
#include <kel/notifier.h>
#include <kel/observable.h>
#include <kel/preresurrectednotifier.h>
#include <kel/removednotifier.h>
#include <kel/resurrectednotifier.h>

#include "support/audience.h"
#include "support/bomb.h"
#include "support/teststatus.h"
#include "support/tracked.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>

using testing::ElementsAre;

namespace
{
class ThrowingObservers : public testing::Test
{
protected:
    Bomb bomb;
};
} // namespace

TEST_F(ThrowingObservers, ObserverEndsThePassAndTheNextReachesAll)
{
    forEach(5,
            [this](std::size_t call, Kind kind)
            {
                Bulletin sender;
                Audience audience(bomb);
                audience.observe(sender);
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { sender.notifyChanged(); }), getName(kind));
                EXPECT_EQ(audience.takeHeard(), call);
                sender.notifyChanged();
                EXPECT_EQ(audience.takeHeard(), 5u);
            });
}

TEST_F(ThrowingObservers, ReceiverOfAnyMessageEndsThePassAndTheNextReachesAll)
{
    forEach(5,
            [this](std::size_t call, Kind kind)
            {
                BulletinBoard sender;
                Bulletin member;
                Audience audience(bomb);
                audience.observe(sender);
                AddedNotifier added(sender, member);
                ChangedNotifier changed(sender);
                DeletedNotifier deleted(sender);
                KilledNotifier killed(sender);
                PreResurrectedNotifier preResurrected(sender);
                RemovedNotifier removed(sender, member);
                ResurrectedNotifier resurrected(sender);
                const std::pair<std::string, Notifier*> messages[] = {
                    {"added", &added},
                    {"changed", &changed},
                    {"deleted", &deleted},
                    {"killed", &killed},
                    {"preResurrected", &preResurrected},
                    {"removed", &removed},
                    {"resurrected", &resurrected},
                };
                for (const auto& message : messages)
                {
                    Notifier& notifier = *message.second;
                    bomb.arm(call, kind);
                    EXPECT_EQ(caughtBy([&] { sender.notifyObservers(notifier); }), getName(kind));
                    EXPECT_EQ(audience.last, message.first);
                    EXPECT_EQ(audience.takeHeard(), call);
                    sender.notifyObservers(notifier);
                    EXPECT_EQ(audience.takeHeard(), 5u);
                }
            });
}

TEST_F(ThrowingObservers, MessageOfTheApplicationEndsThePassAndTheNextReachesAll)
{
    class Call : public Notifier
    {
    public:
        explicit Call(Bomb& bomb) : m_bomb(bomb) {}
        void transmitTo(Receiver&) override
        {
            ++sent;
            m_bomb.call();
        }

        std::size_t sent = 0;

    private:
        Bomb& m_bomb;
    };
    forEach(5,
            [this](std::size_t call, Kind kind)
            {
                Bulletin sender;
                Audience audience(bomb);
                audience.observe(sender);
                Call message(bomb);
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { sender.notifyObservers(message); }), getName(kind));
                EXPECT_EQ(std::exchange(message.sent, 0), call);
                sender.notifyObservers(message);
                EXPECT_EQ(message.sent, 5u);
            });
}

TEST_F(ThrowingObservers, ObserverThatIsNoReceiverEndsThePassAndTheNextReachesAll)
{
    struct Updated : Observer
    {
        void update(Notifier&) override
        {
            ++*heard;
            bomb->call();
        }

        Bomb* bomb = nullptr;
        std::size_t* heard = nullptr;
    };
    forEach(5,
            [this](std::size_t call, Kind kind)
            {
                Bulletin sender;
                std::size_t heard = 0;
                std::array<Updated, 5> observers;
                for (Updated& observer : observers)
                {
                    observer.bomb = &bomb;
                    observer.heard = &heard;
                    sender.getObservable().attach(observer);
                }
                KilledNotifier killed(sender);
                const std::function<void()> sendings[] = {[&] { sender.notifyChanged(); },
                                                          [&] { sender.notifyObservers(killed); }};
                for (const auto& send : sendings)
                {
                    bomb.arm(call, kind);
                    EXPECT_EQ(caughtBy(send), getName(kind));
                    EXPECT_EQ(std::exchange(heard, 0), call);
                    send();
                    EXPECT_EQ(std::exchange(heard, 0), 5u);
                }
            });
}

TEST_F(ThrowingObservers, ObserverOfAnInterruptDoesNotTakeItBack)
{
    class Loud : public TestStatus
    {
    public:
        explicit Loud(Bomb& bomb) : m_bomb(bomb) {}
        void notifyChanged() override
        {
            m_bomb.call();
            TestStatus::notifyChanged();
        }

    private:
        Bomb& m_bomb;
    };
    // The status itself is asked first, then its observers.
    forEach(6,
            [this](std::size_t call, Kind kind)
            {
                Loud status(bomb);
                Audience audience(bomb);
                audience.observe(status);
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { status.setInterrupted(); }), getName(kind));
                EXPECT_EQ(audience.takeHeard(), call - 1);
                EXPECT_THROW(status.checkInterrupt(0), Interrupted);
                status.setInterrupted();
                EXPECT_EQ(audience.takeHeard(), 5u);
                status.resetInterrupt();
                EXPECT_FALSE(status.isInterrupted());
            });
}

TEST_F(ThrowingObservers, ObserverOfABoardLeavesItAsItIsAtThatMoment)
{
    forEach(5,
            [this](std::size_t call, Kind kind)
            {
                BulletinBoard board;
                Audience audience(bomb);
                audience.observe(board);
                auto* const added = new Bulletin;

                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { board.add(added); }), getName(kind));
                EXPECT_EQ(board.getPtr(added->getKey()), added);
                EXPECT_EQ(audience.takeHeard(), call);

                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { board.remove(*added); }), getName(kind));
                EXPECT_TRUE(board.empty());
                EXPECT_EQ(audience.takeHeard(), call);

                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { board.incrementUse(); }), getName(kind));
                EXPECT_EQ(board.size(), 1u);
                EXPECT_FALSE(board.isInUse());
                EXPECT_TRUE(board.incrementUse());
                EXPECT_TRUE(board.decrementUse());

                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { board.addOrReplace(added); }), getName(kind));
                EXPECT_EQ(board.getPtr(added->getKey()), added);
                audience.takeHeard();
            });
}

TEST_F(ThrowingObservers, ObserverOfAReplacementLosesNeitherOfTheTwo)
{
    Story story;
    const BulletinKey key;
    forEach(10,
            [&](std::size_t call, Kind kind)
            {
                BulletinBoard board;
                Audience audience(bomb);
                board.add(new Tracked(story, "old", key));
                audience.observe(board);
                auto replacement = std::make_unique<Tracked>(story, "new", key);
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { board.replace(replacement.get()); }), getName(kind));
                EXPECT_EQ(audience.last, call <= 5 ? "removed" : "added");
                EXPECT_THAT(std::exchange(story, {}), ElementsAre("old?", "old!", "~old"));
                EXPECT_EQ(board.empty(), call <= 5);
                if (!board.empty())
                    static_cast<void>(replacement.release());
                board.deleteAll();
                replacement.reset();
                story.clear();
            });
}

TEST_F(ThrowingObservers, ObserverOfAReplacedMemberLosesNeitherOfTheTwo)
{
    Story story;
    const BulletinKey key;
    forEach(5,
            [&](std::size_t call, Kind kind)
            {
                BulletinBoard board;
                Audience audience(bomb);
                auto* const old = new Tracked(story, "old", key);
                board.add(old);
                audience.observe(*old);
                auto replacement = std::make_unique<Tracked>(story, "new", key);
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { board.addOrReplace(replacement.get()); }), getName(kind));
                EXPECT_THAT(std::exchange(story, {}), ElementsAre("old?", "old!", "old?", "old!", "~old"));
                EXPECT_TRUE(board.empty());
                replacement.reset();
                story.clear();
            });
}

TEST_F(ThrowingObservers, ObserverOfAMemberEndsTheDeletionOfAllButLeavesNoDeadEntry)
{
    Story story;
    forEach(15,
            [&](std::size_t call, Kind kind)
            {
                BulletinBoard board;
                Audience audience(bomb);
                for (const char* const name : {"a", "b", "c"})
                {
                    auto* const member = new Tracked(story, name);
                    board.add(member);
                    audience.observe(*member);
                }
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { board.deleteAll(); }), getName(kind));
                EXPECT_EQ(board.size(), 3 - (call - 1) / 5);
                for (const auto& [number, member] : board)
                    EXPECT_EQ(member->getKey().getNumber(), number);
                board.deleteAll();
                EXPECT_TRUE(board.empty());
                EXPECT_EQ(std::count_if(story.begin(), story.end(), [](auto& entry) { return entry[0] == '~'; }), 3);
                story.clear();
            });
}

TEST_F(ThrowingObservers, ObserverOfADyingBoardOrGuardIsNotHeard)
{
    Story story;
    forEach(15,
            [&](std::size_t call, Kind kind)
            {
                Audience audience(bomb);
                {
                    BulletinBoard board;
                    for (const char* const name : {"a", "b", "c"})
                    {
                        auto* const member = new Tracked(story, name);
                        board.add(member);
                        audience.observe(*member);
                    }
                    bomb.arm(call, kind);
                }
                EXPECT_EQ(std::count_if(story.begin(), story.end(), [](auto& entry) { return entry[0] == '~'; }), 3);
                story.clear();
                {
                    auto* const guarded = new Tracked(story, "guarded");
                    audience.observe(*guarded);
                    const AutoDelete guard(guarded);
                    bomb.arm((call - 1) % 5 + 1, kind);
                }
                EXPECT_THAT(std::exchange(story, {}), ElementsAre("guarded?", "guarded!", "~guarded"));
            });
}
