// SPDX-License-Identifier: MIT
// libkel: Foundations
#include <kel/pool.h>

#include "support/allocations.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <iomanip>
#include <iterator>
#include <locale>
#include <memory>
#include <new>
#include <set>
#include <sstream>
#include <stack>
#include <string>
#include <type_traits>
#include <vector>

namespace
{
/// Pools are never given back, as in a program: they stay registered.
Pool& makePool(const char* name, unsigned objectSize, Pool::ChunkSize chunkSize)
{
    static std::vector<Pool*>& pools = *new std::vector<Pool*>;
    pools.push_back(new Pool(name, objectSize, chunkSize));
    return *pools.back();
}

std::string getInfo(const Pool& pool)
{
    std::ostringstream os;
    pool.info(os);
    return os.str();
}

std::string getInfoOfAll()
{
    std::ostringstream os;
    Pool::infoAll(os);
    return os.str();
}

/// What the register reports beyond the pools that were there before: the library's own, and those of other cases.
class Register
{
public:
    Register() : m_before(getInfoOfAll()) {}

    std::string getNew() const
    {
        const std::string all = getInfoOfAll();
        const std::size_t lines = getLines(m_before).size();
        EXPECT_EQ(all.substr(0, lines), getLines(m_before));
        return getLines(all).substr(lines) + "Total bytes = " + std::to_string(getTotal(all) - getTotal(m_before)) +
               all.substr(all.size() - 2);
    }

private:
    static constexpr const char* s_total = "Total bytes = ";

    static std::string getLines(const std::string& info) { return info.substr(0, info.rfind(s_total)); }
    static unsigned long getTotal(const std::string& info)
    {
        return std::stoul(info.substr(info.rfind(s_total) + std::string(s_total).size()));
    }

    const std::string m_before;
};

std::vector<char*> takeObjects(Pool& pool, unsigned count)
{
    std::vector<char*> objects;
    for (unsigned i = 0; i < count; ++i)
        objects.push_back(static_cast<char*>(pool.newObject()));
    return objects;
}

/// Groups digits, which plain numbers in a report must not follow.
class Grouping : public std::numpunct<char>
{
    char do_thousands_sep() const override { return ','; }
    std::string do_grouping() const override { return "\3"; }
};
} // namespace

TEST(Pool, TakesNoMemoryForObjectsBeforeTheFirst)
{
    EXPECT_EQ(getInfo(makePool("Point", 8, Pool::Chunk10)), "Point: sizeof = 8, chunks = 0, bytes = 0\n");
}

TEST(Pool, TheFirstObjectAddsAChunk)
{
    Pool& pool = makePool("Point", 8, Pool::Chunk10);
    pool.newObject();
    EXPECT_EQ(getInfo(pool), "Point: sizeof = 8, chunks = 1, bytes = 80\n");
}

TEST(Pool, AChunkHoldsTheObjectsOfItsTableEntry)
{
    const unsigned counts[] = {10, 100, 1000, 10000, 100000};
    const Pool::ChunkSize sizes[] = {Pool::Chunk10, Pool::Chunk100, Pool::Chunk1000, Pool::Chunk10000,
                                     Pool::Chunk100000};
    for (std::size_t i = 0; i < std::size(counts); ++i)
    {
        SCOPED_TRACE(counts[i]);
        Pool& pool = makePool("Key", 4, sizes[i]);
        takeObjects(pool, counts[i]);
        const std::string bytes = std::to_string(4 * counts[i]);
        EXPECT_EQ(getInfo(pool), "Key: sizeof = 4, chunks = 1, bytes = " + bytes + "\n");
        pool.newObject();
        const std::string doubled = std::to_string(8 * counts[i]);
        EXPECT_EQ(getInfo(pool), "Key: sizeof = 4, chunks = 2, bytes = " + doubled + "\n");
    }
}

TEST(Pool, AFreshChunkHandsOutItsHighestBlockFirst)
{
    const std::vector<char*> objects = takeObjects(makePool("Point", 24, Pool::Chunk10), 10);
    for (std::size_t i = 1; i < objects.size(); ++i)
        EXPECT_EQ(objects[i - 1] - objects[i], 24);
}

TEST(Pool, BlocksDoNotOverlap)
{
    std::set<char*> objects;
    for (char* const object : takeObjects(makePool("Point", 5, Pool::Chunk100), 250))
    {
        std::memset(object, 0xAB, 5);
        objects.insert(object);
    }
    ASSERT_EQ(objects.size(), 250u);
    for (auto it = objects.begin(); std::next(it) != objects.end(); ++it)
        EXPECT_GE(*std::next(it) - *it, 5);
}

TEST(Pool, AFreedBlockIsUsedNext)
{
    Pool& pool = makePool("Point", 8, Pool::Chunk10);
    const std::vector<char*> objects = takeObjects(pool, 3);
    pool.deleteObject(objects[1]);
    EXPECT_EQ(pool.newObject(), objects[1]);
}

TEST(Pool, FreedBlocksAreReusedLastInFirstOut)
{
    Pool& pool = makePool("Point", 8, Pool::Chunk10);
    const std::vector<char*> objects = takeObjects(pool, 10);
    pool.deleteObject(objects[4]);
    pool.deleteObject(objects[7]);
    EXPECT_EQ(pool.newObject(), objects[7]);
    EXPECT_EQ(pool.newObject(), objects[4]);
    EXPECT_EQ(getInfo(pool), "Point: sizeof = 8, chunks = 1, bytes = 80\n");
}

TEST(Pool, FreedBlocksAreReusedBeforeTheRestOfAChunk)
{
    Pool& pool = makePool("Point", 8, Pool::Chunk10);
    const std::vector<char*> objects = takeObjects(pool, 3);
    pool.deleteObject(objects[0]);
    pool.deleteObject(objects[2]);
    const std::vector<char*> expected = {objects[2], objects[0], objects[2] - 8, objects[2] - 16};
    EXPECT_EQ(takeObjects(pool, 4), expected);
}

TEST(Pool, GivingBackNeverAllocates)
{
    Pool& pool = makePool("Point", 8, Pool::Chunk10);
    const std::vector<char*> objects = takeObjects(pool, 1000);
    const allocations::Limit limit(0);
    for (char* const object : objects)
        pool.deleteObject(object);
}

TEST(Pool, WhatIsNotItsOwnIsHandedOutAsWell)
{
    Pool& pool = makePool("Point", 8, Pool::Chunk10);
    double foreign[3] = {};
    for (double& object : foreign)
        pool.deleteObject(&object);
    for (double* object = std::end(foreign); object != std::begin(foreign);)
        EXPECT_EQ(pool.newObject(), --object);
    EXPECT_EQ(getInfo(pool), "Point: sizeof = 8, chunks = 0, bytes = 0\n");
}

TEST(Pool, BlocksGivenBackTwiceAreHandedOutTwice)
{
    Pool& pool = makePool("Point", 8, Pool::Chunk10);
    const std::vector<char*> objects = takeObjects(pool, 10);
    for (int times = 0; times < 2; ++times)
    {
        for (char* const object : objects)
            pool.deleteObject(object);
    }
    const std::vector<char*> expected(objects.rbegin(), objects.rend());
    EXPECT_EQ(takeObjects(pool, 10), expected);
    EXPECT_EQ(takeObjects(pool, 10), expected);
    EXPECT_EQ(getInfo(pool), "Point: sizeof = 8, chunks = 1, bytes = 80\n");
}

TEST(Pool, ClearGivesAllChunksBack)
{
    Pool& pool = makePool("Point", 8, Pool::Chunk10);
    const std::vector<char*> objects = takeObjects(pool, 25);
    pool.deleteObject(objects[0]);
    pool.clear();
    EXPECT_EQ(getInfo(pool), "Point: sizeof = 8, chunks = 0, bytes = 0\n");
    pool.newObject();
    EXPECT_EQ(getInfo(pool), "Point: sizeof = 8, chunks = 1, bytes = 80\n");
}

TEST(Pool, ManyChunksCanBeCleared)
{
    Pool& pool = makePool("Point", 1, Pool::Chunk10);
    takeObjects(pool, 2000000);
    pool.clear();
    EXPECT_EQ(getInfo(pool), "Point: sizeof = 1, chunks = 0, bytes = 0\n");
}

TEST(Pool, ClearNeedsNoMemory)
{
    Pool& pool = makePool("Point", 8, Pool::Chunk10);
    pool.newObject();
    {
        const allocations::Limit limit(0);
        pool.clear();
    }
    EXPECT_EQ(getInfo(pool), "Point: sizeof = 8, chunks = 0, bytes = 0\n");
}

TEST(Pool, AnObjectThatFailsForMemoryLeavesThePoolAsItWas)
{
    Pool& pool = makePool("Point", 8, Pool::Chunk10);
    takeObjects(pool, 10);
    // The room for free blocks, then the chunk, then its memory: what was made before a failure is kept or given back.
    for (const std::size_t allowed : {0u, 1u, 1u})
    {
        {
            const allocations::Limit limit(allowed);
            EXPECT_THROW(pool.newObject(), std::bad_alloc);
        }
        EXPECT_EQ(getInfo(pool), "Point: sizeof = 8, chunks = 1, bytes = 80\n");
    }
    EXPECT_EQ(takeObjects(pool, 10).size(), 10u);
    EXPECT_EQ(getInfo(pool), "Point: sizeof = 8, chunks = 2, bytes = 160\n");
}

TEST(Pool, InfoReturnsTheBytes)
{
    Pool& pool = makePool("Point", 8, Pool::Chunk10);
    takeObjects(pool, 11);
    std::ostringstream os;
    EXPECT_EQ(pool.info(os), 160u);
}

TEST(Pool, InfoOfAllWithoutMorePoolsHasTheTotalOnly)
{
    const Register pools;
    EXPECT_EQ(pools.getNew(), "Total bytes = 0\n\n");
}

TEST(Pool, InfoOfAllListsThePoolsInTheOrderOfTheirConstruction)
{
    const Register pools;
    Pool& second = makePool("Zebra", 8, Pool::Chunk10);
    Pool& first = makePool("Ant", 4, Pool::Chunk100);
    first.newObject();
    second.newObject();
    EXPECT_EQ(pools.getNew(), "Zebra: sizeof = 8, chunks = 1, bytes = 80\n"
                              "Ant: sizeof = 4, chunks = 1, bytes = 400\n"
                              "Total bytes = 480\n\n");
}

TEST(Pool, InfoDoesNotFollowTheFormatOfTheStream)
{
    Pool& pool = makePool("Key", 4, Pool::Chunk10000);
    pool.newObject();
    std::ostringstream os;
    os.imbue(std::locale(std::locale::classic(), new Grouping));
    os << std::hex;
    pool.info(os);
    EXPECT_EQ(os.str(), "Key: sizeof = 4, chunks = 1, bytes = 40000\n");
    os.str("");
    Pool::infoAll(os);
    EXPECT_EQ(os.str(), getInfoOfAll());
}

TEST(Pool, TheNameIsCopied)
{
    std::string name = "Point";
    Pool& pool = makePool(name.c_str(), 8, Pool::Chunk10);
    name = "Other";
    EXPECT_EQ(getInfo(pool), "Point: sizeof = 8, chunks = 0, bytes = 0\n");
}

TEST(Pool, BlocksOutliveThePoolAndCanStillBeGivenBack)
{
    alignas(Pool) static unsigned char s_storage[sizeof(Pool)];
    Pool* const pool = new (s_storage) Pool("Point", 8, Pool::Chunk10);
    void* const object = pool->newObject();
    pool->~Pool();
    std::memset(object, 0xAB, 8);
    pool->deleteObject(object);
}

TEST(Pool, CannotBeCopied)
{
    EXPECT_FALSE(std::is_copy_constructible_v<Pool>);
    EXPECT_FALSE(std::is_copy_assignable_v<Pool>);
    EXPECT_FALSE(std::is_polymorphic_v<Pool>);
}

TEST(PoolChunk, PushesItsBlocksInIncreasingOrder)
{
    std::stack<void*> freeStack;
    const Pool::Chunk chunk(nullptr, 3, 16, freeStack);
    EXPECT_EQ(chunk.getBytes(), 48u);
    EXPECT_EQ(chunk.getNext(), nullptr);
    ASSERT_EQ(freeStack.size(), 3u);
    char* const highest = static_cast<char*>(freeStack.top());
    freeStack.pop();
    EXPECT_EQ(freeStack.top(), highest - 16);
    freeStack.pop();
    EXPECT_EQ(freeStack.top(), highest - 32);
}

TEST(PoolChunk, OwnsTheNext)
{
    std::stack<void*> freeStack;
    auto* const older = new Pool::Chunk(nullptr, 1, 8, freeStack);
    const Pool::Chunk newer(older, 1, 8, freeStack);
    EXPECT_EQ(newer.getNext(), older);
}

TEST(PoolChunk, DoesNotTakeOverTheNextWhenTheStackFails)
{
    struct FailingStack
    {
        void push(void*) { throw std::bad_alloc(); }
    };
    std::stack<void*> freeStack;
    FailingStack failing;
    auto older = std::make_unique<Pool::Chunk>(nullptr, 1, 8, freeStack);
    EXPECT_THROW(Pool::Chunk(older.get(), 1, 8, failing), std::bad_alloc);
    EXPECT_EQ(older->getBytes(), 8u);
}
