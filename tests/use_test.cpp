// SPDX-License-Identifier: MIT
#include <kel/use.h>

#include <kel/bulletinboard.h>

#include "support/allocations.h"
#include "support/problem.h"
#include "support/recorder.h"

#include <limits>

namespace
{
const BulletinKey& key()
{
    static const BulletinKey counter("counter");
    return counter;
}
} // namespace

TEST(Use, StaticKeyIsNamedForTheClass)
{
    EXPECT_EQ(Use::getStaticKey(), BulletinKey("Use"));
}

TEST(Use, StartsUnusedUnderItsKey)
{
    const Use use(key());
    EXPECT_EQ(use.getKey(), key());
    EXPECT_EQ(use.getCounter().getCount(), 0u);
    EXPECT_FALSE(use.canClone());
}

TEST(Use, TellsTheFirstAndTheLastUse)
{
    BulletinBoard board;
    EXPECT_TRUE(Use::incrementFor(board, key()));
    EXPECT_FALSE(Use::incrementFor(board, key()));
    EXPECT_FALSE(Use::decrementFor(board, key()));
    EXPECT_TRUE(Use::decrementFor(board, key()));
}

TEST(Use, InUseMeansACountThatIsNotZero)
{
    BulletinBoard board;
    EXPECT_FALSE(Use::inUseFor(board, key()));
    EXPECT_TRUE(board.empty());
    Use::incrementFor(board, key());
    EXPECT_TRUE(Use::inUseFor(board, key()));
    Use::decrementFor(board, key());
    EXPECT_FALSE(Use::inUseFor(board, key()));
    EXPECT_TRUE(board.hasKey(key()));
}

TEST(Use, EntryOfAnotherTypeIsNotInUse)
{
    BulletinBoard board;
    board.add(new Bulletin(key()));
    EXPECT_FALSE(Use::inUseFor(board, key()));
}

TEST(Use, GetForCreatesTheCounterOnceAndAnnouncesIt)
{
    BulletinBoard board;
    Recorder recorder;
    recorder.observe(board);
    Use& use = Use::getFor(board, key());
    EXPECT_EQ(&Use::getFor(board, key()), &use);
    EXPECT_EQ(recorder.heard, (std::vector<Heard>{{"added", &board, &use}}));
}

TEST(Use, GetForThrowsWhereAnotherTypeHoldsTheKey)
{
    BulletinBoard board;
    board.add(new Bulletin(key()));
    EXPECT_ASSERTION(Use::getFor(board, key()), "!hasKey(key)");
    EXPECT_ASSERTION(Use::incrementFor(board, key()), "!hasKey(key)");
    EXPECT_ASSERTION(Use::decrementFor(board, key()), "!hasKey(key)");
    EXPECT_EQ(board.size(), 1u);
}

TEST(Use, DecrementWithoutACounterWraps)
{
    BulletinBoard board;
    EXPECT_FALSE(Use::decrementFor(board, key()));
    EXPECT_EQ(Use::getFor(board, key()).getCounter().getCount(), std::numeric_limits<unsigned>::max());
}

TEST(Use, KeysAreCountedApart)
{
    BulletinBoard board;
    EXPECT_TRUE(Use::incrementFor(board, key()));
    EXPECT_TRUE(Use::incrementFor(board, BulletinKey("other")));
    EXPECT_EQ(board.size(), 2u);
}

TEST(Use, NothingIsAddedWhenMemoryRunsOut)
{
    BulletinBoard board;
    const BulletinKey& counter = key();
    allocations::failEachInTurn([&] { Use::incrementFor(board, counter); }, [&] { EXPECT_TRUE(board.empty()); });
    EXPECT_EQ(Use::getFor(board, counter).getCounter().getCount(), 1u);
}
