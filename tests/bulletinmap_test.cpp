// SPDX-License-Identifier: MIT
#include <kel/bulletinmap.h>

#include <kel/bulletin.h>

#include "support/allocations.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <vector>

using testing::ElementsAre;
using testing::Pair;

namespace
{
class BulletinMapTest : public testing::Test
{
protected:
    /// The bulletin that belongs to a number; only its address matters.
    Bulletin* obj(unsigned number) { return &m_objs[number % std::size(m_objs)]; }

    void insert(unsigned number)
    {
        EXPECT_TRUE(m_map.insert(number, obj(number))) << number;
        m_expected[number] = obj(number);
    }

    void erase(unsigned number)
    {
        EXPECT_EQ(m_map.erase(number), m_expected.at(number)) << number;
        m_expected.erase(number);
    }

    /// Compares every way of reading with what is expected.
    void check() const
    {
        ASSERT_EQ(m_map.size(), m_expected.size());
        EXPECT_EQ(m_map.empty(), m_expected.empty());
        auto it = m_map.begin();
        for (const auto& [number, bulletin] : m_expected)
        {
            ASSERT_NE(it, m_map.end());
            ASSERT_EQ(it->first, number);
            ASSERT_EQ(it->second, bulletin);
            ASSERT_EQ(m_map.find(number), bulletin);
            ++it;
        }
        EXPECT_EQ(it, m_map.end());
    }

    /// Looks numbers up that are on the map and that are not.
    void checkNumbers(unsigned from, unsigned to) const
    {
        for (unsigned number = from; number != to; ++number)
            ASSERT_EQ(m_map.find(number) != nullptr, m_expected.count(number) == 1) << number;
    }

    /// The numbers met by a walk in which something is done at each step.
    template <class Step>
    std::vector<unsigned> walk(Step step)
    {
        std::vector<unsigned> met;
        for (const auto& [number, bulletin] : m_map)
        {
            step(number);
            EXPECT_EQ(bulletin, obj(number)); // the entry stays what it was
            met.push_back(number);
        }
        return met;
    }

    BulletinMap m_map;
    std::map<unsigned, Bulletin*> m_expected;

private:
    Bulletin m_objs[7];
};
} // namespace

TEST_F(BulletinMapTest, IsEmptyAtFirst)
{
    check();
    checkNumbers(0, 3);
    EXPECT_EQ(m_map.erase(1), nullptr);
    EXPECT_EQ(m_map.begin(), m_map.end());
}

TEST_F(BulletinMapTest, ReadsLikePairs)
{
    insert(2);
    insert(1);
    EXPECT_THAT(m_map, ElementsAre(Pair(1u, obj(1)), Pair(2u, obj(2))));
    for (auto [number, bulletin] : m_map)
        EXPECT_EQ(bulletin, obj(number));
    for (auto& [number, bulletin] : m_map)
        EXPECT_EQ(bulletin, obj(number));
    const auto& kept = *m_map.begin();
    insert(0);
    EXPECT_EQ(kept.first, 1u);
    erase(0);
    const std::pair<unsigned, Bulletin*> first = *m_map.begin();
    EXPECT_EQ(first.first, 1u);
    const std::map<unsigned, Bulletin*> copied(m_map.begin(), m_map.end());
    EXPECT_THAT(copied, ElementsAre(Pair(1u, obj(1)), Pair(2u, obj(2))));
    auto it = m_map.begin();
    EXPECT_EQ((it++)->first, 1u);
    EXPECT_EQ((*it).first, 2u);
}

TEST_F(BulletinMapTest, TakenNumberChangesNothing)
{
    insert(1);
    EXPECT_FALSE(m_map.insert(1, obj(2)));
    check();
}

TEST_F(BulletinMapTest, KeepsTheLargestAndTheSmallestNumber)
{
    const unsigned largest = static_cast<unsigned>(-1);
    insert(largest);
    insert(0);
    check();
}

TEST_F(BulletinMapTest, AppendsInIncreasingOrder)
{
    for (unsigned i = 1; i <= 2000; ++i)
        insert(i);
    check();
    checkNumbers(0, 2003);
}

TEST_F(BulletinMapTest, InsertsInDecreasingOrder)
{
    for (unsigned i = 2000; i > 0; --i)
        insert(i);
    check();
    checkNumbers(0, 2003);
}

TEST_F(BulletinMapTest, ErasesFromTheFront)
{
    for (unsigned i = 1; i <= 1000; ++i)
        insert(i);
    for (unsigned i = 1; i <= 1000; ++i)
    {
        erase(i);
        ASSERT_EQ(m_map.find(i), nullptr);
    }
    check();
}

TEST_F(BulletinMapTest, ErasesFromTheBack)
{
    for (unsigned i = 1; i <= 1000; ++i)
        insert(i);
    for (unsigned i = 1000; i > 0; --i)
        erase(i);
    check();
}

TEST_F(BulletinMapTest, ErasesEverySecondEntryAndTakesItBack)
{
    for (unsigned i = 1; i <= 1000; ++i)
        insert(i);
    for (unsigned i = 1; i <= 1000; i += 2)
        erase(i);
    check();
    checkNumbers(0, 1003);
    EXPECT_EQ(m_map.erase(1), nullptr);
    EXPECT_EQ(m_map.erase(501), nullptr);
    for (unsigned i = 1; i <= 1000; i += 2)
        insert(i);
    check();
}

TEST_F(BulletinMapTest, ServesAsAQueue)
{
    for (unsigned i = 1; i <= 3; ++i)
        insert(i);
    for (unsigned i = 4; i <= 2000; ++i)
    {
        insert(i);
        erase(i - 3);
    }
    check();
    EXPECT_EQ(m_map.size(), 3u);
}

TEST_F(BulletinMapTest, GoesOnAfterItWasCleared)
{
    for (unsigned i = 1; i <= 1000; ++i)
        insert(i);
    m_map.clear();
    m_expected.clear();
    check();
    insert(5);
    insert(3);
    check();
}

TEST_F(BulletinMapTest, WalkMeetsWhatIsEnteredBeforeIt)
{
    for (unsigned i = 1; i <= 1000; i += 2)
        insert(i);
    const std::vector<unsigned> met = walk(
        [this](unsigned number)
        {
            if (number % 2 == 1)
                insert(number + 1);
        });
    ASSERT_EQ(met.size(), 1000u);
    for (unsigned i = 0; i < 1000; ++i)
        EXPECT_EQ(met[i], i + 1);
    check();
}

TEST_F(BulletinMapTest, WalkGoesOnWhenItsOwnEntryIsTakenOut)
{
    for (unsigned i = 1; i <= 1000; ++i)
        insert(i);
    EXPECT_EQ(walk([this](unsigned number) { erase(number); }).size(), 1000u);
    check();
}

TEST_F(BulletinMapTest, WalkPassesOverWhatIsTakenOutBeforeIt)
{
    for (unsigned i = 1; i <= 1000; ++i)
        insert(i);
    EXPECT_EQ(walk([this](unsigned number) { erase(number + 1); }).size(), 500u);
    check();
}

TEST_F(BulletinMapTest, WalkEndsWhenTheMapIsCleared)
{
    for (unsigned i = 1; i <= 1000; ++i)
        insert(i);
    EXPECT_EQ(walk([this](unsigned) { m_map.clear(); }).size(), 1u);
    m_expected.clear();
    check();
}

TEST_F(BulletinMapTest, HoldsWhatAnyOrderOfChangesLeaves)
{
    std::mt19937 random(1);
    // Numbers close together, with gaps, and far apart; first mostly growing, then mostly shrinking.
    for (const unsigned range : {500u, 5000u, 4000000000u})
    {
        for (const unsigned erasedOutOfTen : {2u, 8u})
        {
            for (int i = 0; i < 5000; ++i)
            {
                const auto number = static_cast<unsigned>(random() % range);
                if (random() % 10 >= erasedOutOfTen)
                {
                    EXPECT_EQ(m_map.insert(number, obj(number)), m_expected.emplace(number, obj(number)).second);
                    continue;
                }
                const auto next = m_expected.lower_bound(number);
                if (next != m_expected.end())
                    erase(next->first);
            }
            check();
        }
        checkNumbers(0, 6000);
        m_map.clear();
        m_expected.clear();
    }
}

TEST_F(BulletinMapTest, IsUnchangedWhenMemoryRunsOut)
{
    const auto insertWhole = [this](unsigned number)
    {
        allocations::failEachInTurn([&] { m_map.insert(number, obj(number)); }, [this] { check(); });
        m_expected[number] = obj(number);
    };
    // At the end, at the beginning and in the middle of full blocks.
    for (unsigned i = 10000; i < 10600; i += 2)
        insertWhole(i);
    for (unsigned i = 9998; i > 9000; i -= 2)
        insertWhole(i);
    for (unsigned i = 9501; i < 10500; i += 2)
        insertWhole(i);
    check();
}
