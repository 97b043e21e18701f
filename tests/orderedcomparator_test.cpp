// SPDX-License-Identifier: MIT
#include <kel/orderedcomparator.h>

#include <kel/orderedbulletins.h>

#include "support/recorder.h"
#include "support/tracked.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
class OrderedComparatorTest : public testing::Test
{
protected:
    static void append(OrderedBulletins& list, std::initializer_list<Bulletin*> bulletins)
    {
        for (Bulletin* const bulletin : bulletins)
            list.append(bulletin);
    }

    Bulletin m_a;
    Bulletin m_b;
    Bulletin m_c;
    Bulletin m_d;
    OrderedBulletins m_first{BulletinKey("first")};
    OrderedBulletins m_second{BulletinKey("second")};
    OrderedBulletins m_result{BulletinKey("result")};
};
} // namespace

TEST_F(OrderedComparatorTest, GivesBothDifferencesInTheOrderOfTheirLists)
{
    append(m_first, {&m_c, &m_a, &m_b});
    append(m_second, {&m_d, &m_a});
    const OrderedComparator comparator(m_first, m_second);
    EXPECT_THAT(comparator.getOnlyInFirst(), ElementsAre(&m_c, &m_b));
    EXPECT_THAT(comparator.getOnlyInSecond(), ElementsAre(&m_d));
    EXPECT_EQ(comparator.getOnlyInFirst().getKey(), OrderedBulletins::getStaticKey());
    EXPECT_EQ(comparator.getOnlyInSecond().getKey(), OrderedBulletins::getStaticKey());
}

TEST_F(OrderedComparatorTest, EqualListsDoNotDiffer)
{
    append(m_first, {&m_a, &m_b});
    append(m_second, {&m_b, &m_a});
    const OrderedComparator comparator(m_first, m_second);
    EXPECT_THAT(comparator.getOnlyInFirst(), IsEmpty());
    EXPECT_THAT(comparator.getOnlyInSecond(), IsEmpty());
}

TEST_F(OrderedComparatorTest, EmptyListsDoNotDiffer)
{
    const OrderedComparator comparator(m_first, m_second);
    EXPECT_THAT(comparator.getOnlyInFirst(), IsEmpty());
    EXPECT_THAT(comparator.getOnlyInSecond(), IsEmpty());
}

TEST_F(OrderedComparatorTest, GoesByTheObjectAndNotByTheKey)
{
    Bulletin twin(m_a);
    append(m_first, {&m_a});
    append(m_second, {&twin});
    const OrderedComparator comparator(m_first, m_second);
    EXPECT_THAT(comparator.getOnlyInFirst(), ElementsAre(&m_a));
    EXPECT_THAT(comparator.getOnlyInSecond(), ElementsAre(&twin));
}

TEST_F(OrderedComparatorTest, TouchesNoListedBulletin)
{
    Story story;
    Tracked obj(story, "obj");
    append(m_first, {&obj});
    {
        const OrderedComparator comparator(m_first, m_second);
        EXPECT_THAT(comparator.getOnlyInFirst(), ElementsAre(&obj));
    }
    EXPECT_TRUE(story.empty());
}

TEST_F(OrderedComparatorTest, ListsAreDestroyedOneAfterTheOther)
{
    Recorder recorder;
    std::vector<Heard> expected;
    {
        const OrderedComparator comparator(m_first, m_second);
        for (const OrderedBulletins* const list : {&comparator.getOnlyInFirst(), &comparator.getOnlyInSecond()})
        {
            recorder.observe(const_cast<OrderedBulletins&>(*list));
            expected.push_back({"deleted", list});
        }
    }
    EXPECT_EQ(recorder.heard, expected);
}

TEST_F(OrderedComparatorTest, CompareCollectionsListsADuplicateTwice)
{
    append(m_first, {&m_a});
    append(m_second, {&m_b, &m_a, &m_b});
    compareCollections(m_first, m_second, m_result);
    EXPECT_THAT(m_result, ElementsAre(&m_b, &m_b));
}

TEST_F(OrderedComparatorTest, CompareCollectionsAppendsToTheResult)
{
    append(m_result, {&m_d});
    append(m_second, {&m_b});
    compareCollections(m_first, m_second, m_result);
    EXPECT_THAT(m_result, ElementsAre(&m_d, &m_b));
}

TEST_F(OrderedComparatorTest, CompareCollectionsMayAppendToItsOwnLists)
{
    append(m_second, {&m_b});
    compareCollections(m_first, m_second, m_second);
    EXPECT_THAT(m_second, ElementsAre(&m_b, &m_b));
}
