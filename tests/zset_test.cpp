// SPDX-License-Identifier: MIT
// libkel: Foundations
#include <kel/zset.h>

#include "support/allocations.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <set>
#include <utility>
#include <vector>

namespace
{
using testing::ElementsAre;
using testing::IsEmpty;

/// Objects in the order of their addresses, and the set under test.
class ZSet : public testing::Test
{
protected:
    int* at(std::size_t index) { return &m_objects[index]; }

    void insertFirst(std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i)
            m_set.insert(at(i));
    }

    std::vector<int*> shuffled(std::size_t count)
    {
        std::vector<int*> elements;
        for (std::size_t i = 0; i < count; ++i)
            elements.push_back(at(i));
        std::shuffle(elements.begin(), elements.end(), m_random);
        return elements;
    }

    void expectEqual(const std::set<int*>& expected)
    {
        ASSERT_EQ(m_set.size(), expected.size());
        ASSERT_EQ(m_set.empty(), expected.empty());
        ASSERT_TRUE(std::equal(m_set.begin(), m_set.end(), expected.begin(), expected.end()));
    }

    /// Inserts and erases at random, more often the one than the other, and compares every result.
    void changeAtRandom(std::set<int*>& expected, int changes, double insertions, std::size_t range)
    {
        std::uniform_int_distribution<std::size_t> index(0, range - 1);
        std::bernoulli_distribution inserting(insertions);
        for (int i = 0; i < changes; ++i)
        {
            int* const element = at(index(m_random));
            ASSERT_EQ(m_set.has(element), expected.count(element) == 1);
            if (inserting(m_random))
                ASSERT_EQ(m_set.insert(element), expected.insert(element).second);
            else
                ASSERT_EQ(m_set.erase(element), expected.erase(element) == 1);
        }
    }

    std::vector<int> m_objects = std::vector<int>(100000);
    std::mt19937 m_random{20};
    zset<int> m_set;
};
} // namespace

TEST_F(ZSet, StartsEmpty)
{
    EXPECT_TRUE(m_set.empty());
    EXPECT_EQ(m_set.size(), 0u);
    EXPECT_THAT(m_set, IsEmpty());
    EXPECT_FALSE(m_set.has(at(0)));
}

TEST_F(ZSet, CopiesItsElementsInTheOrderOfAddressesHoweverManyThereAre)
{
    for (const std::size_t count : {0u, 1u, 2u, 3u, 600u, 2000u})
    {
        while (m_set.size() < count)
            m_set.insert(at(2000 - m_set.size()));
        std::vector<int*> copy(count);
        m_set.copyTo(copy.data());
        EXPECT_TRUE(std::equal(m_set.begin(), m_set.end(), copy.begin(), copy.end()));
    }
}

TEST_F(ZSet, CopiesTheElementsBehindOneInPortions)
{
    for (const std::size_t index : {1u, 3u, 5u, 7u})
        m_set.insert(at(index));
    int* portion[2] = {};
    EXPECT_EQ(m_set.copyAfter(nullptr, portion, 2), 2u);
    EXPECT_THAT(portion, ElementsAre(at(1), at(3)));
    EXPECT_EQ(m_set.copyAfter(at(4), portion, 2), 2u);
    EXPECT_THAT(portion, ElementsAre(at(5), at(7)));
    EXPECT_EQ(m_set.copyAfter(at(5), portion, 2), 1u);
    EXPECT_EQ(m_set.copyAfter(at(7), portion, 2), 0u);
}

TEST_F(ZSet, IteratesInTheOrderOfAddresses)
{
    for (const std::size_t index : {3u, 1u, 4u, 0u, 2u})
    {
        m_set.insert(at(index));
        EXPECT_TRUE(std::is_sorted(m_set.begin(), m_set.end()));
    }
    EXPECT_THAT(m_set, ElementsAre(at(0), at(1), at(2), at(3), at(4)));
}

TEST_F(ZSet, ContainsAnElementOnce)
{
    for (const std::size_t index : {0u, 1u, 2u, 3u})
    {
        EXPECT_TRUE(m_set.insert(at(index)));
        EXPECT_FALSE(m_set.insert(at(index)));
        EXPECT_FALSE(m_set.insert(at(0)));
        EXPECT_EQ(m_set.size(), index + 1);
    }
}

TEST_F(ZSet, HasWhatWasInsertedAndNotErased)
{
    insertFirst(4);
    m_set.erase(at(2));
    EXPECT_TRUE(m_set.has(at(0)));
    EXPECT_TRUE(m_set.has(at(3)));
    EXPECT_FALSE(m_set.has(at(2)));
    EXPECT_FALSE(m_set.has(at(5)));
}

TEST_F(ZSet, ErasingAnAbsentElementChangesNothing)
{
    for (const std::size_t count : {0u, 1u, 2u, 3u, 4u})
    {
        insertFirst(count);
        EXPECT_FALSE(m_set.erase(at(9)));
        EXPECT_EQ(m_set.size(), count);
    }
}

TEST_F(ZSet, BothOfTwoElementsCanBeErasedFirst)
{
    insertFirst(2);
    EXPECT_TRUE(m_set.erase(at(0)));
    EXPECT_THAT(m_set, ElementsAre(at(1)));
    m_set.insert(at(0));
    EXPECT_TRUE(m_set.erase(at(1)));
    EXPECT_THAT(m_set, ElementsAre(at(0)));
}

TEST_F(ZSet, CanBeEmptiedAndFilledAgain)
{
    for (int round = 0; round < 2; ++round)
    {
        insertFirst(5);
        for (std::size_t i = 0; i < 5; ++i)
            EXPECT_TRUE(m_set.erase(at(i)));
        EXPECT_THAT(m_set, IsEmpty());
    }
}

TEST_F(ZSet, TheNullPointerIsAnElementLikeAnyOther)
{
    insertFirst(3);
    EXPECT_TRUE(m_set.insert(nullptr));
    EXPECT_TRUE(m_set.has(nullptr));
    EXPECT_EQ(*m_set.begin(), nullptr);
    EXPECT_TRUE(m_set.erase(nullptr));
}

TEST_F(ZSet, BehavesAsASetInAscendingOrder)
{
    std::set<int*> expected;
    for (std::size_t i = 0; i < 5000; ++i)
    {
        m_set.insert(at(i));
        expected.insert(at(i));
    }
    expectEqual(expected);
}

TEST_F(ZSet, BehavesAsASetInDescendingOrder)
{
    std::set<int*> expected;
    for (std::size_t i = 5000; i-- > 0;)
    {
        m_set.insert(at(i));
        expected.insert(at(i));
    }
    expectEqual(expected);
}

TEST_F(ZSet, BehavesAsASetWhileFewElementsComeAndGo)
{
    std::set<int*> expected;
    for (int round = 0; round < 500; ++round)
    {
        changeAtRandom(expected, 20, 0.5, 6);
        expectEqual(expected);
    }
}

TEST_F(ZSet, BehavesAsASetWhileItGrowsAndShrinks)
{
    std::set<int*> expected;
    for (const double insertions : {0.9, 0.2, 0.7, 0.05})
    {
        changeAtRandom(expected, 40000, insertions, 30000);
        expectEqual(expected);
    }
}

TEST_F(ZSet, CanBeEmptiedInAnyOrder)
{
    insertFirst(m_objects.size());
    EXPECT_EQ(m_set.size(), m_objects.size());
    for (int* const element : shuffled(m_objects.size()))
        ASSERT_TRUE(m_set.erase(element));
    EXPECT_THAT(m_set, IsEmpty());
    EXPECT_TRUE(m_set.insert(at(7)));
    EXPECT_THAT(m_set, ElementsAre(at(7)));
}

TEST_F(ZSet, IteratorsCanBeCopiedAndCompared)
{
    insertFirst(3);
    zset<int>::const_iterator it = m_set.begin();
    const zset<int>::const_iterator first = it++;
    EXPECT_EQ(*first, at(0));
    EXPECT_EQ(*it, at(1));
    EXPECT_NE(first, it);
    EXPECT_EQ(std::next(first), it);
    EXPECT_EQ(std::distance(m_set.begin(), m_set.end()), 3);
}

TEST_F(ZSet, ACopyIsIndependent)
{
    for (const std::size_t count : {2u, 3u, 2000u})
    {
        insertFirst(count);
        zset<int> copy(m_set);
        copy.erase(at(0));
        EXPECT_TRUE(m_set.has(at(0)));
        EXPECT_EQ(copy.size(), count - 1);
        copy = m_set;
        EXPECT_TRUE(std::equal(copy.begin(), copy.end(), m_set.begin(), m_set.end()));
    }
}

TEST_F(ZSet, MovingEmptiesTheSource)
{
    for (const std::size_t count : {2u, 3u})
    {
        insertFirst(count);
        zset<int> moved(std::move(m_set));
        EXPECT_EQ(moved.size(), count);
        EXPECT_THAT(m_set, IsEmpty()); // NOLINT(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
        m_set = std::move(moved);
        EXPECT_EQ(m_set.size(), count);
    }
}

TEST_F(ZSet, TwoElementsCostNoAllocation)
{
    const std::size_t before = allocations::getCount();
    for (int round = 0; round < 3; ++round)
    {
        insertFirst(2);
        m_set.erase(at(1));
        m_set.erase(at(0));
    }
    EXPECT_EQ(allocations::getCount(), before);
}

TEST_F(ZSet, ErasingAllocatesNothing)
{
    insertFirst(5000);
    const std::vector<int*> elements = shuffled(5000);
    const std::size_t before = allocations::getCount();
    for (int* const element : elements)
        m_set.erase(element);
    EXPECT_EQ(allocations::getCount(), before);
}

TEST_F(ZSet, RunningOutOfMemoryLeavesTheSetAsItWas)
{
    std::set<int*> expected;
    std::size_t failures = 0;
    for (int* const element : shuffled(3000))
    {
        failures += allocations::failEachInTurn([&] { m_set.insert(element); }, [&] { expectEqual(expected); });
        expected.insert(element);
    }
    expectEqual(expected);
    EXPECT_GT(failures, 0u);
}
