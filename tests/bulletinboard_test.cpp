// SPDX-License-Identifier: MIT
#include <kel/bulletinboard.h>

#include <kel/namedkeys.h>
#include <kel/observable.h>
#include <kel/use.h>

#include "support/allocations.h"
#include "support/problem.h"
#include "support/recorder.h"
#include "support/tracked.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <stdexcept>

using testing::ElementsAre;
using testing::Pair;

namespace
{
class Service : public Bulletin
{
public:
    Service() : Bulletin(getStaticKey()) { ++s_alive; }
    ~Service() override { --s_alive; }
    static const BulletinKey& getStaticKey()
    {
        static const BulletinKey key("Service");
        return key;
    }

    static inline int s_alive = 0;
};

class SpecialService : public Service
{
};

/// Knows which of its virtual operations were called.
class Watched : public BulletinBoard
{
public:
    void add(Bulletin* obj) override
    {
        calls.push_back("add");
        BulletinBoard::add(obj);
    }
    void remove(Bulletin& obj) override
    {
        calls.push_back("remove");
        BulletinBoard::remove(obj);
    }
    void clear() override
    {
        calls.push_back("clear");
        BulletinBoard::clear();
    }

    std::vector<std::string> calls;
};

class Unclonable : public Bulletin
{
public:
    bool canClone() const override { return false; }
};

class FailsToClone : public Bulletin
{
public:
    Bulletin* clone() const override { throw std::runtime_error("no clone"); }
};

class BulletinBoardTest : public testing::Test
{
protected:
    Tracked* make(const std::string& name) { return new Tracked(m_story, name, BulletinKey(name)); }
    Tracked* add(const std::string& name)
    {
        Tracked* const obj = make(name);
        m_board.add(obj);
        return obj;
    }

    /// What the board's observers hear goes into the same story as what the bulletins tell.
    void observeBoard()
    {
        m_recorder.during = [this](const Heard& message) { m_story.push_back(message.operation); };
        m_recorder.observe(m_board);
    }

    Story m_story;
    Recorder m_recorder;
    BulletinBoard m_board;
};
} // namespace

TEST_F(BulletinBoardTest, IsEmptyAtFirst)
{
    EXPECT_TRUE(m_board.empty());
    EXPECT_EQ(m_board.size(), 0u);
    EXPECT_EQ(m_board.begin(), m_board.end());
    EXPECT_EQ(m_board.getPtr(BulletinKey("absent")), nullptr);
    EXPECT_FALSE(m_board.hasKey(BulletinKey("absent")));
}

TEST_F(BulletinBoardTest, HasAFreshKeyOrTheGivenOne)
{
    EXPECT_NE(BulletinBoard().getKey(), m_board.getKey());
    EXPECT_EQ(BulletinBoard(BulletinKey("board")).getKey(), BulletinKey("board"));
}

TEST_F(BulletinBoardTest, HoldsWhatIsAddedUnderItsKey)
{
    const Tracked* const obj = add("obj");
    EXPECT_EQ(m_board.getPtr(BulletinKey("obj")), obj);
    EXPECT_TRUE(m_board.hasKey(BulletinKey("obj")));
    EXPECT_EQ(m_board.size(), 1u);
    EXPECT_FALSE(m_board.empty());
}

TEST_F(BulletinBoardTest, IsReadInTheOrderInWhichTheKeysWereMade)
{
    Tracked* const first = make("first");
    Tracked* const second = make("second");
    Tracked* const third = make("third");
    m_board.add(second);
    m_board.add(third);
    m_board.add(first);
    EXPECT_THAT(m_board,
                ElementsAre(Pair(first->getKey().getNumber(), first), Pair(second->getKey().getNumber(), second),
                            Pair(third->getKey().getNumber(), third)));
}

TEST_F(BulletinBoardTest, DestroysItsBulletinsInKeyOrder)
{
    auto board = std::make_unique<BulletinBoard>();
    Tracked* const first = make("first");
    board->add(make("second"));
    board->add(first);
    m_recorder.observe(*board);
    Recorder own([this](const Heard& message) { m_story.push_back("heard " + message.operation); });
    own.observe(*first);
    board.reset();
    EXPECT_EQ(m_story, (Story{"first?", "first!", "heard deleted", "~first", "second?", "second!", "~second"}));
    EXPECT_TRUE(m_recorder.heard.empty());
}

TEST_F(BulletinBoardTest, AddTellsTheObserversAfterTheInsertion)
{
    bool wasThere = false;
    m_recorder.observe(m_board);
    m_recorder.during = [&](const Heard& message)
    { wasThere = m_board.getPtr(message.second->getKey()) == message.second; };
    const Tracked* const obj = add("obj");
    EXPECT_EQ(m_recorder.heard, (std::vector<Heard>{{"added", &m_board, obj}}));
    EXPECT_TRUE(wasThere);
}

TEST_F(BulletinBoardTest, LaterObserverHearsNothingOfPastAdditions)
{
    add("obj");
    m_recorder.observe(m_board);
    EXPECT_TRUE(m_recorder.heard.empty());
}

TEST_F(BulletinBoardTest, AddUnderATakenKeyThrowsAndKeepsTheFirst)
{
    const Tracked* const first = add("obj");
    m_recorder.observe(m_board);
    Tracked second(m_story, "second", first->getKey());
    EXPECT_ASSERTION(m_board.add(&second), "!hasKey(key)");
    EXPECT_ASSERTION(m_board.add(first->getKey(), &second), "!hasKey(key)");
    EXPECT_ASSERTION(m_board.addIgnoreKey(second, first->getKey()), "!hasKey(key)");
    EXPECT_EQ(m_board.getPtr(first->getKey()), first);
    EXPECT_EQ(m_board.size(), 1u);
    EXPECT_TRUE(m_recorder.heard.empty());
    EXPECT_TRUE(m_story.empty());
}

TEST_F(BulletinBoardTest, AdoptsOrDeletes)
{
    const BulletinKey key;
    Tracked& first = m_board.adopt(std::make_unique<Tracked>(m_story, "first", key));
    EXPECT_EQ(m_board.getPtr(key), &first);
    EXPECT_ASSERTION(m_board.adopt(std::make_unique<Tracked>(m_story, "second", key)), "!hasKey(key)");
    EXPECT_EQ(m_board.getPtr(key), &first);
    EXPECT_EQ(m_story, Story{"~second"});
}

TEST_F(BulletinBoardTest, DeletesWhatAnOverrideOfAddHasOnlyAddedAnotherFor)
{
    class FailingBoard : public BulletinBoard
    {
    public:
        void add(Bulletin*) override
        {
            BulletinBoard::add(new Bulletin);
            throw std::runtime_error("no");
        }
    };
    FailingBoard board;
    EXPECT_THROW(board.adopt(std::make_unique<Tracked>(m_story, "obj", BulletinKey())), std::runtime_error);
    EXPECT_EQ(m_story, Story{"~obj"});
    EXPECT_EQ(board.size(), 1u);
}

TEST_F(BulletinBoardTest, AddsUnderAnotherKey)
{
    m_recorder.observe(m_board);
    Tracked* const first = make("first");
    Tracked* const second = make("second");
    m_board.add(BulletinKey("one"), first);
    m_board.addIgnoreKey(*second, BulletinKey("two"));
    EXPECT_EQ(m_board.getPtr(BulletinKey("one")), first);
    EXPECT_EQ(m_board.getPtr(BulletinKey("two")), second);
    EXPECT_FALSE(m_board.hasKey(first->getKey()));
    EXPECT_EQ(first->getKey(), BulletinKey("first"));
    EXPECT_EQ(m_recorder.heard, (std::vector<Heard>{{"added", &m_board, first}, {"added", &m_board, second}}));
}

TEST_F(BulletinBoardTest, WholeOrNothingIsAddedWhenMemoryRunsOut)
{
    for (int i = 0; i < 600; ++i)
    {
        auto obj = std::make_unique<Bulletin>();
        allocations::failEachInTurn([&] { m_board.addIgnoreKey(*obj, obj->getKey()); },
                                    [&] { ASSERT_FALSE(m_board.hasKey(obj->getKey())); });
        const Bulletin* const added = obj.release();
        ASSERT_EQ(m_board.getPtr(added->getKey()), added);
    }
}

TEST_F(BulletinBoardTest, WhatWasTakenOffLastGoesBackWithoutMemory)
{
    for (const std::size_t size : {1U, 4U, 5U, 256U, 257U, 1000U})
    {
        while (m_board.size() < size)
            m_board.add(new Bulletin);
        std::vector<Bulletin*> bulletins;
        for (const auto& [number, bulletin] : m_board)
            bulletins.push_back(bulletin);
        for (Bulletin* const bulletin : bulletins)
        {
            m_board.remove(*bulletin);
            const allocations::Limit limit(0);
            m_board.add(bulletin);
        }
        ASSERT_EQ(m_board.size(), size);
    }
}

TEST_F(BulletinBoardTest, WhatWasTakenOffTwoBlocksGoesBackWithoutMemory)
{
    for (int i = 0; i < 300; ++i)
        m_board.add(new Bulletin);
    const std::vector<BulletinMap::Entry> entries(m_board.begin(), m_board.end());
    for (const std::size_t place : {256U, 299U})
        m_board.remove(*entries[place].second);
    const allocations::Limit limit(0);
    for (const std::size_t place : {299U, 256U})
        m_board.add(entries[place].second);
}

TEST_F(BulletinBoardTest, HoldsABulletinWhoseAdditionMadeAnObserverThrow)
{
    m_recorder.observe(m_board);
    m_recorder.during = [](const Heard&) { throw std::runtime_error("no"); };
    Tracked* const obj = make("obj");
    EXPECT_THROW(m_board.add(obj), std::runtime_error);
    EXPECT_EQ(m_board.getPtr(obj->getKey()), obj);
}

TEST_F(BulletinBoardTest, MayBeDestroyedInsideAdded)
{
    auto* const board = new BulletinBoard;
    Tracked* const obj = make("obj");
    Recorder first;
    Recorder second;
    const auto destroyBoard = [board](const Heard& message)
    {
        if (message.operation == "added")
            Bulletin::destroy(board, false);
    };
    first.during = destroyBoard;
    second.during = destroyBoard;
    first.observe(*board);
    second.observe(*board);
    board->add(obj);
    EXPECT_EQ(m_story.back(), "~obj");
    // One hears "added", and both that the board is about to go.
    EXPECT_EQ(first.heard.size() + second.heard.size(), 3u);
}

TEST_F(BulletinBoardTest, RemoveHandsTheBulletinBack)
{
    observeBoard();
    const std::unique_ptr<Tracked> obj(add("obj"));
    bool wasThere = true;
    m_recorder.heard.clear();
    m_recorder.during = [&](const Heard&) { wasThere = m_board.hasKey(obj->getKey()); };
    m_board.remove(*obj);
    EXPECT_TRUE(m_board.empty());
    EXPECT_EQ(m_recorder.heard, (std::vector<Heard>{{"removed", &m_board, obj.get()}}));
    EXPECT_FALSE(wasThere);
    EXPECT_EQ(m_story, Story{"added"});
}

TEST_F(BulletinBoardTest, RemoveGoesByTheKeyAndNotByTheObject)
{
    const std::unique_ptr<Tracked> obj(add("obj"));
    Bulletin other(obj->getKey());
    m_recorder.observe(m_board);
    m_board.remove(other);
    EXPECT_TRUE(m_board.empty());
    EXPECT_EQ(m_recorder.heard, (std::vector<Heard>{{"removed", &m_board, &other}}));
}

TEST_F(BulletinBoardTest, RemoveOfAnAbsentKeyThrows)
{
    add("obj");
    m_recorder.observe(m_board);
    Bulletin other;
    EXPECT_ASSERTION(m_board.remove(other), "hasKey(key)");
    EXPECT_EQ(m_board.size(), 1u);
    EXPECT_TRUE(m_recorder.heard.empty());
}

TEST_F(BulletinBoardTest, RemoveByKeyHandsTheBulletinBackThroughRemove)
{
    Watched board;
    Tracked* const obj = make("obj");
    board.add(obj);
    m_recorder.observe(board);
    const std::unique_ptr<Bulletin> removed(board.removeByKey(BulletinKey("obj")));
    EXPECT_EQ(removed.get(), obj);
    EXPECT_TRUE(board.empty());
    EXPECT_EQ(board.calls, (Story{"add", "remove"}));
    EXPECT_EQ(m_recorder.heard, (std::vector<Heard>{{"removed", &board, obj}}));
}

TEST_F(BulletinBoardTest, RemoveIgnoreKeyTellsNobody)
{
    const std::unique_ptr<Tracked> obj(make("obj"));
    m_board.addIgnoreKey(*obj, BulletinKey("other"));
    m_recorder.observe(m_board);
    EXPECT_EQ(m_board.removeIgnoreKey(BulletinKey("other")), obj.get());
    EXPECT_TRUE(m_board.empty());
    EXPECT_TRUE(m_recorder.heard.empty());
    EXPECT_ASSERTION(m_board.removeIgnoreKey(BulletinKey("other")), "hasKey(key)");
}

TEST_F(BulletinBoardTest, AddOrReplaceAddsUnderAFreeKey)
{
    Watched board;
    m_recorder.observe(board);
    Tracked* const obj = make("obj");
    board.addOrReplace(obj);
    EXPECT_EQ(board.getPtr(obj->getKey()), obj);
    EXPECT_EQ(board.calls, Story{"add"});
    EXPECT_EQ(m_recorder.operations(), Story{"added"});
}

TEST_F(BulletinBoardTest, ReplaceRemovesDestroysAndAdds)
{
    const auto replace = [this](void (BulletinBoard::*operation)(Bulletin*))
    {
        Watched board;
        Tracked* const oldObj = make("obj");
        board.add(oldObj);
        m_recorder.during = [this](const Heard& message) { m_story.push_back(message.operation); };
        m_recorder.observe(board);
        m_recorder.observe(*oldObj);
        auto* const obj = new Tracked(m_story, "new", oldObj->getKey());
        (board.*operation)(obj);
        EXPECT_EQ(board.getPtr(obj->getKey()), obj);
        EXPECT_EQ(board.size(), 1u);
        EXPECT_EQ(board.calls, (Story{"add", "remove", "add"}));
        EXPECT_EQ(m_recorder.heard,
                  (std::vector<Heard>{{"removed", &board, oldObj}, {"deleted", oldObj}, {"added", &board, obj}}));
        EXPECT_EQ(m_story, (Story{"removed", "obj?", "obj!", "deleted", "~obj", "added"}));
        m_recorder.detachAll();
        m_recorder.heard.clear();
        board.deleteAll();
        m_story.clear();
    };
    replace(&BulletinBoard::replace);
    replace(&BulletinBoard::addOrReplace);
}

TEST_F(BulletinBoardTest, ReplacedBulletinThatRefusesIsOffTheBoardAllTheSame)
{
    const std::unique_ptr<Tracked> oldObj(add("obj"));
    oldObj->refuses = true;
    auto* const obj = new Tracked(m_story, "new", oldObj->getKey());
    m_board.replace(obj);
    EXPECT_EQ(m_board.getPtr(obj->getKey()), obj);
    EXPECT_EQ(m_story, Story{"obj?"});
}

TEST_F(BulletinBoardTest, ReplacedBulletinThatAThrowingObserverPutsBackStays)
{
    Tracked* const oldObj = add("obj");
    m_recorder.during = [&](const Heard& message)
    {
        if (message.operation != "removed")
            return;
        m_board.add(oldObj);
        throw std::runtime_error("no");
    };
    m_recorder.observe(m_board);
    Tracked obj(m_story, "new", oldObj->getKey());
    EXPECT_THROW(m_board.replace(&obj), std::runtime_error);
    EXPECT_EQ(m_board.getPtr(obj.getKey()), oldObj);
    EXPECT_TRUE(m_story.empty());
}

TEST_F(BulletinBoardTest, ReplaceLeavesABulletinAloneThatIsOnTheBoardUnderAnotherKeyThanItsOwn)
{
    Tracked* const oldObj = make("obj");
    const BulletinKey key("other");
    m_board.add(key, oldObj);
    Tracked obj(m_story, "new", key);
    EXPECT_ASSERTION(m_board.replace(&obj), "hasKey(key)");
    EXPECT_EQ(m_board.getPtr(key), oldObj);
    EXPECT_TRUE(m_story.empty());
}

TEST_F(BulletinBoardTest, ReplaceLeavesABoardAloneThatAThrowingObserverHasDestroyed)
{
    auto* const board = new BulletinBoard;
    Tracked* const oldObj = make("obj");
    board->add(oldObj);
    m_recorder.during = [board](const Heard& message)
    {
        if (message.operation != "removed")
            return;
        Bulletin::destroy(board, false);
        throw std::runtime_error("no");
    };
    m_recorder.observe(*board);
    Tracked obj(m_story, "new", oldObj->getKey());
    EXPECT_THROW(board->replace(&obj), std::runtime_error);
    EXPECT_EQ(m_story.back(), "~obj");
}

TEST_F(BulletinBoardTest, ReplaceByItselfThrowsAfterTheRemoval)
{
    const std::unique_ptr<Tracked> obj(add("obj"));
    m_recorder.observe(m_board);
    EXPECT_ASSERTION(m_board.addOrReplace(obj.get()), "oldObj != *obj");
    EXPECT_FALSE(m_board.hasKey(obj->getKey()));
    EXPECT_EQ(m_recorder.operations(), Story{"removed"});

    m_board.add(obj.get());
    EXPECT_ASSERTION(m_board.replace(obj.get()), "oldObj != *obj");
    EXPECT_TRUE(m_board.empty());
    EXPECT_TRUE(m_story.empty());
}

TEST_F(BulletinBoardTest, FindsTheFirstOfSeveralNames)
{
    const Tracked* const first = add("first");
    const Tracked* const second = add("second");
    EXPECT_EQ(m_board.getPtrByName("first"), first);
    EXPECT_EQ(m_board.getPtrByName("second|first"), second);
    EXPECT_EQ(m_board.getPtrByName("|absent||second|"), second);
    EXPECT_EQ(m_board.getPtrByName("absent|missing"), nullptr);
    EXPECT_EQ(m_board.getPtrByName(""), nullptr);
    EXPECT_EQ(m_board.getPtrByName("|"), nullptr);
}

TEST_F(BulletinBoardTest, FindingByNameMakesTheNamesTriedKnown)
{
    add("second");
    const unsigned before = BulletinKey().getNumber();
    m_board.getPtrByName("unknown|second|never tried");
    EXPECT_EQ(BulletinKey("unknown").getNumber(), before + 1);
    EXPECT_EQ(BulletinKey().getNumber(), before + 2);
}

TEST_F(BulletinBoardTest, FindsByTypeUnderItsStaticKey)
{
    EXPECT_EQ(m_board.getPtr<Service>(), nullptr);
    auto* const service = new SpecialService;
    m_board.add(service);
    EXPECT_EQ(m_board.getPtr<Service>(), service);
    EXPECT_EQ(m_board.getPtr<SpecialService>(), service);
}

TEST_F(BulletinBoardTest, DoesNotFindAnotherTypeUnderTheStaticKey)
{
    m_board.add(new Bulletin(Service::getStaticKey()));
    EXPECT_EQ(m_board.getPtr<Service>(), nullptr);
    const BulletinBoard& board = m_board;
    EXPECT_NE(board.getPtr(Service::getStaticKey()), nullptr);
}

TEST_F(BulletinBoardTest, CreatesWhatIsMissingOnce)
{
    Watched board;
    m_recorder.observe(board);
    Service& service = board.getOrCreate<Service>();
    EXPECT_EQ(&board.getOrCreate<Service>(), &service);
    EXPECT_EQ(board.calls, Story{"add"});
    EXPECT_EQ(m_recorder.heard, (std::vector<Heard>{{"added", &board, &service}}));
}

TEST_F(BulletinBoardTest, DoesNotCreateWhatAnotherTypeStandsFor)
{
    m_board.add(new Bulletin(Service::getStaticKey()));
    EXPECT_ASSERTION(m_board.getOrCreate<Service>(), "!hasKey(key)");
    EXPECT_EQ(Service::s_alive, 0);
    m_board.deleteAll();
    m_board.getOrCreate<Service>();
    EXPECT_EQ(Service::s_alive, 1);
}

TEST_F(BulletinBoardTest, OwnsACreatedBulletinWhoseAdditionMadeAnObserverThrow)
{
    m_recorder.observe(m_board);
    m_recorder.during = [](const Heard&) { throw std::runtime_error("no"); };
    EXPECT_THROW(m_board.getOrCreate<Service>(), std::runtime_error);
    EXPECT_EQ(Service::s_alive, 1);
    EXPECT_NE(m_board.getPtr<Service>(), nullptr);
    m_board.deleteAll();
    EXPECT_EQ(Service::s_alive, 0);
}

TEST_F(BulletinBoardTest, ForgetsACreatedBulletinThatWasDestroyedByAThrowingObserver)
{
    m_recorder.observe(m_board);
    m_recorder.during = [this](const Heard&)
    {
        m_board.deleteAll();
        throw std::runtime_error("no");
    };
    EXPECT_THROW(m_board.getOrCreate<Service>(), std::runtime_error);
    EXPECT_EQ(Service::s_alive, 0);
    EXPECT_TRUE(m_board.empty());
}

TEST_F(BulletinBoardTest, CreatesWhileAnotherIsBeingAdded)
{
    m_recorder.observe(m_board);
    m_recorder.during = [this](const Heard& message)
    {
        if (dynamic_cast<const Service*>(message.second) != nullptr)
            m_board.incrementUse();
    };
    m_board.getOrCreate<Service>();
    EXPECT_EQ(m_board.size(), 2u);
    EXPECT_TRUE(m_board.isInUse());
    m_board.deleteAll();
    EXPECT_EQ(Service::s_alive, 0);
}

TEST_F(BulletinBoardTest, WholeOrNothingIsCreatedWhenMemoryRunsOut)
{
    allocations::failEachInTurn([this] { m_board.getOrCreate<Service>(); },
                                [this]
                                {
                                    EXPECT_TRUE(m_board.empty());
                                    EXPECT_EQ(Service::s_alive, 0);
                                });
    EXPECT_NE(m_board.getPtr<Service>(), nullptr);
}

TEST_F(BulletinBoardTest, ClearDropsEverythingAndDeletesNothing)
{
    const std::unique_ptr<Tracked> obj(add("obj"));
    m_recorder.observe(m_board);
    m_recorder.observe(*obj);
    m_board.clear();
    EXPECT_TRUE(m_board.empty());
    EXPECT_TRUE(m_recorder.heard.empty());
    EXPECT_TRUE(m_story.empty());
}

TEST_F(BulletinBoardTest, DeleteAllDestroysInKeyOrderAndTellsOnlyTheirObservers)
{
    Watched board;
    Tracked* const first = make("first");
    board.add(make("second"));
    board.add(first);
    m_recorder.observe(board);
    Recorder own;
    own.observe(*first);
    board.deleteAll();
    EXPECT_EQ(m_story, (Story{"first?", "first!", "~first", "second?", "second!", "~second"}));
    EXPECT_TRUE(board.empty());
    EXPECT_TRUE(m_recorder.heard.empty());
    EXPECT_EQ(own.operations(), Story{"deleted"});
    EXPECT_EQ(board.calls, (Story{"add", "add", "clear"}));
}

TEST_F(BulletinBoardTest, DeleteAllDropsABulletinThatRefuses)
{
    const std::unique_ptr<Tracked> obj(add("obj"));
    obj->refuses = true;
    m_board.deleteAll();
    EXPECT_TRUE(m_board.empty());
    EXPECT_EQ(m_story, Story{"obj?"});
}

TEST_F(BulletinBoardTest, DeleteAllGivesUpOneUseOfAnInnerBoard)
{
    const auto inner = std::make_unique<BulletinBoard>();
    inner->incrementUse();
    inner->incrementUse();
    m_board.add(inner.get());
    m_board.deleteAll();
    EXPECT_TRUE(m_board.empty());
    EXPECT_EQ(inner->getPtr<Use>()->getCounter().getCount(), 1u);
}

TEST_F(BulletinBoardTest, EntryIsOnTheBoardWhileItsDeletionIsAnnouncedAndOffRightAfter)
{
    Tracked* const first = add("first");
    Tracked* const second = add("second");
    std::vector<std::size_t> sizes;
    Recorder own([&](const Heard&) { sizes.push_back(m_board.size()); });
    own.observe(*first);
    own.observe(*second);
    m_board.deleteAll();
    EXPECT_EQ(sizes, (std::vector<std::size_t>{2, 1}));
}

TEST_F(BulletinBoardTest, DeleteAllStopsAtAThrowingObserverAndKeepsOnlyTheLiving)
{
    add("first");
    Tracked* const second = add("second");
    add("third");
    Recorder own([](const Heard&) { throw std::runtime_error("no"); });
    own.observe(*second);
    EXPECT_THROW(m_board.deleteAll(), std::runtime_error);
    EXPECT_EQ(m_board.size(), 2u);
    EXPECT_FALSE(m_board.hasKey(BulletinKey("first")));
    EXPECT_EQ(m_board.getPtr(BulletinKey("second")), second);

    own.during = nullptr;
    m_board.deleteAll();
    EXPECT_TRUE(m_board.empty());
    EXPECT_EQ(std::count(m_story.begin(), m_story.end(), "~third"), 1);
}

TEST_F(BulletinBoardTest, DeleteAllToleratesObserversThatChangeTheBoard)
{
    Tracked* const first = add("first");
    Tracked* const second = add("second");
    Tracked* const third = add("third");
    const auto late = std::make_unique<Tracked>(m_story, "late");
    Recorder own(
        [&](const Heard& message)
        {
            if (message.first != first)
                return;
            m_board.remove(*first);
            m_board.add(BulletinKey("first"), late.get());
            m_board.remove(*second);
            Bulletin::destroy(second, false);
        });
    own.observe(*first);
    own.observe(*third);
    m_board.deleteAll();
    EXPECT_TRUE(m_board.empty());
    EXPECT_EQ(m_story,
              (Story{"first?", "first!", "second?", "second!", "~second", "~first", "third?", "third!", "~third"}));
}

TEST_F(BulletinBoardTest, DeleteAllWalksNoFurtherThanTheEntriesThatItStandsBefore)
{
    Tracked* const first = add("first");
    const BulletinKey between;
    Tracked* const last = add("last");
    std::vector<std::unique_ptr<Tracked>> late;
    Recorder own;
    own.during = [&](const Heard& message)
    {
        late.push_back(message.first == first ? std::make_unique<Tracked>(m_story, "between", between)
                                              : std::make_unique<Tracked>(m_story, "behind"));
        late.back()->refuses = true;
        m_board.add(late.back().get());
    };
    own.observe(*first);
    own.observe(*last);
    m_board.deleteAll();
    EXPECT_TRUE(m_board.empty());
    EXPECT_EQ(m_story, (Story{"first?", "first!", "~first", "last?", "last!", "~last"}));
}

TEST_F(BulletinBoardTest, DeletesEverythingAtItsEndAlthoughAnObserverThrows)
{
    auto board = std::make_unique<BulletinBoard>();
    Tracked* const first = make("first");
    board->add(first);
    board->add(make("second"));
    Recorder own([](const Heard&) { throw std::runtime_error("no"); });
    own.observe(*first);
    EXPECT_NO_THROW(board.reset());
    EXPECT_EQ(m_story, (Story{"first?", "first!", "~first", "second?", "second!", "~second"}));
}

TEST_F(BulletinBoardTest, LeavesABulletinThatRefusesAtItsEnd)
{
    const std::unique_ptr<Tracked> obj(make("obj"));
    obj->refuses = true;
    {
        BulletinBoard board;
        board.add(obj.get());
    }
    EXPECT_EQ(m_story, Story{"obj?"});
}

TEST_F(BulletinBoardTest, CopyHasTheKeyAndClonesOfTheEntries)
{
    const Tracked* const obj = add("obj");
    const BulletinBoard copy(m_board);
    EXPECT_EQ(copy.getKey(), m_board.getKey());
    ASSERT_EQ(copy.size(), 1u);
    const Bulletin* const clone = copy.getPtr(obj->getKey());
    EXPECT_NE(clone, obj);
    EXPECT_NE(dynamic_cast<const Tracked*>(clone), nullptr);
    EXPECT_EQ(m_board.size(), 1u);
}

TEST_F(BulletinBoardTest, CopySkipsWhatCannotBeClonedSuchAsItsUses)
{
    add("obj");
    m_board.add(new Unclonable);
    m_board.incrementUse();
    const BulletinBoard copy(m_board);
    EXPECT_EQ(copy.size(), 1u);
    EXPECT_FALSE(copy.isInUse());
    EXPECT_TRUE(m_board.isInUse());
}

TEST_F(BulletinBoardTest, CopyOfAnEmptyBoardIsEmpty)
{
    EXPECT_TRUE(BulletinBoard(m_board).empty());
}

TEST_F(BulletinBoardTest, CopyHoldsAnEntryUnderItsOwnKey)
{
    m_board.add(BulletinKey("other"), make("obj"));
    const BulletinBoard copy(m_board);
    EXPECT_TRUE(copy.hasKey(BulletinKey("obj")));
    EXPECT_FALSE(copy.hasKey(BulletinKey("other")));
}

TEST_F(BulletinBoardTest, FailedCopyDestroysTheClonesMadeSoFar)
{
    add("obj");
    m_board.add(new FailsToClone);
    EXPECT_THROW(BulletinBoard{m_board}, std::runtime_error);
    EXPECT_EQ(m_story, (Story{"obj?", "obj!", "~obj"}));
}

TEST_F(BulletinBoardTest, CloneOfACloneUnderATakenKeyIsNotLeaked)
{
    add("obj");
    m_board.add(BulletinKey("other"), new Tracked(m_story, "twin", BulletinKey("obj")));
    EXPECT_ASSERTION(BulletinBoard{m_board}, "!hasKey(key)");
    EXPECT_EQ(std::count(m_story.begin(), m_story.end(), "~twin"), 1);
    EXPECT_EQ(std::count(m_story.begin(), m_story.end(), "~obj"), 1);
}

TEST_F(BulletinBoardTest, CountsItsUsesInABulletinOfItsOwn)
{
    EXPECT_FALSE(m_board.isInUse());
    EXPECT_TRUE(m_board.empty());
    EXPECT_TRUE(m_board.incrementUse());
    EXPECT_FALSE(m_board.incrementUse());
    EXPECT_TRUE(m_board.isInUse());
    EXPECT_EQ(m_board.size(), 1u);
    EXPECT_NE(m_board.getPtr<Use>(), nullptr);
    EXPECT_FALSE(m_board.decrementUse());
    EXPECT_TRUE(m_board.decrementUse());
    EXPECT_FALSE(m_board.isInUse());
    EXPECT_EQ(m_board.size(), 1u);
}

TEST_F(BulletinBoardTest, InUseIsDeletedByTheDestroyThatGivesUpTheLastUse)
{
    auto* const board = new BulletinBoard;
    board->add(make("obj"));
    board->incrementUse();
    board->incrementUse();
    Bulletin::destroy(board, false);
    EXPECT_TRUE(m_story.empty());
    EXPECT_TRUE(board->isInUse());
    Bulletin::destroy(board, false);
    EXPECT_EQ(m_story.back(), "~obj");
}

TEST_F(BulletinBoardTest, NotInUseCanBeDeleted)
{
    EXPECT_TRUE(m_board.canDelete());
    m_board.incrementUse();
    EXPECT_TRUE(m_board.canDelete());
    m_board.incrementUse();
    m_board.incrementUse();
    EXPECT_FALSE(m_board.canDelete());
    EXPECT_TRUE(m_board.canDelete());
}

TEST_F(BulletinBoardTest, ForcedDestroyGivesUpAUseToo)
{
    auto* const board = new BulletinBoard;
    board->incrementUse();
    board->incrementUse();
    unsigned usesAtTheEnd = 0;
    Recorder own([&](const Heard&) { usesAtTheEnd = board->getPtr<Use>()->getCounter().getCount(); });
    own.observe(*board);
    Bulletin::destroy(board, true);
    EXPECT_EQ(usesAtTheEnd, 1u);
}
