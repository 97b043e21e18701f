// SPDX-License-Identifier: MIT
#include <kel/orderedbulletins.h>

#include "support/recorder.h"
#include "support/tracked.h"

#include <gmock/gmock.h>

#include <memory>
#include <stdexcept>

using testing::ElementsAre;

namespace
{
class OrderedBulletinsTest : public testing::Test
{
protected:
    void append(std::initializer_list<Bulletin*> bulletins)
    {
        for (Bulletin* const bulletin : bulletins)
            m_list.append(bulletin);
    }

    Bulletin m_a;
    Bulletin m_b;
    Bulletin m_c;
    OrderedBulletins m_list{BulletinKey("list")};
};
} // namespace

TEST_F(OrderedBulletinsTest, StaticKeyIsNamedForTheClass)
{
    EXPECT_EQ(OrderedBulletins::getStaticKey(), BulletinKey("OrderedBulletins"));
}

TEST_F(OrderedBulletinsTest, IsEmptyWithRoomForFive)
{
    EXPECT_EQ(m_list.getKey(), BulletinKey("list"));
    EXPECT_EQ(m_list.size(), 0u);
    EXPECT_TRUE(m_list.empty());
    EXPECT_EQ(m_list.capacity(), 5u);
    EXPECT_EQ(m_list.begin(), m_list.end());
}

TEST_F(OrderedBulletinsTest, KeepsTheOrderOfInsertionAndDuplicates)
{
    append({&m_b, &m_a, &m_b});
    EXPECT_THAT(m_list, ElementsAre(&m_b, &m_a, &m_b));
    EXPECT_EQ(m_list[1], &m_a);
    EXPECT_EQ(m_list.size(), 3u);
    EXPECT_FALSE(m_list.empty());
}

TEST_F(OrderedBulletinsTest, AppendDoublesTheRoom)
{
    append({&m_a, &m_a, &m_a, &m_a, &m_a});
    EXPECT_EQ(m_list.capacity(), 5u);
    append({&m_b});
    EXPECT_EQ(m_list.capacity(), 10u);
    EXPECT_THAT(m_list, ElementsAre(&m_a, &m_a, &m_a, &m_a, &m_a, &m_b));
}

TEST_F(OrderedBulletinsTest, CopyHasTheKeyAndNoMoreRoomThanItNeeds)
{
    append({&m_a, &m_b});
    OrderedBulletins copy(m_list);
    EXPECT_EQ(copy.getKey(), m_list.getKey());
    EXPECT_THAT(copy, ElementsAre(&m_a, &m_b));
    EXPECT_EQ(copy.capacity(), 2u);
    copy.append(&m_c);
    EXPECT_EQ(m_list.size(), 2u);
}

TEST_F(OrderedBulletinsTest, CopyOfAnEmptyListHasNoRoomAndStillGrows)
{
    OrderedBulletins copy(m_list);
    EXPECT_EQ(copy.capacity(), 0u);
    copy.append(&m_a);
    EXPECT_EQ(copy.capacity(), 2u);
    EXPECT_THAT(copy, ElementsAre(&m_a));
}

TEST_F(OrderedBulletinsTest, AssignmentTakesTheListAndKeepsTheKeyAndTheRoom)
{
    OrderedBulletins target(BulletinKey("target"));
    target.append(&m_c);
    append({&m_a, &m_b});
    target = m_list;
    EXPECT_EQ(target.getKey(), BulletinKey("target"));
    EXPECT_THAT(target, ElementsAre(&m_a, &m_b));
    EXPECT_EQ(target.capacity(), 5u);
}

TEST_F(OrderedBulletinsTest, AssignmentMakesExactlyEnoughRoom)
{
    OrderedBulletins target(BulletinKey("target"));
    append({&m_a, &m_b, &m_c, &m_a, &m_b, &m_c, &m_a});
    target = m_list;
    EXPECT_THAT(target, ElementsAre(&m_a, &m_b, &m_c, &m_a, &m_b, &m_c, &m_a));
    EXPECT_EQ(target.capacity(), 7u);
}

TEST_F(OrderedBulletinsTest, AssignmentToItselfChangesNothing)
{
    append({&m_a, &m_b});
    const OrderedBulletins& same = m_list;
    m_list = same;
    EXPECT_THAT(m_list, ElementsAre(&m_a, &m_b));
}

TEST_F(OrderedBulletinsTest, AddAppendsAnotherList)
{
    append({&m_a});
    OrderedBulletins other(BulletinKey("other"));
    other.append(&m_c);
    other.append(&m_b);
    m_list.add(other);
    EXPECT_THAT(m_list, ElementsAre(&m_a, &m_c, &m_b));
    EXPECT_EQ(m_list.capacity(), 5u);
    EXPECT_EQ(other.size(), 2u);
}

TEST_F(OrderedBulletinsTest, AddMakesExactlyEnoughRoom)
{
    append({&m_a, &m_a, &m_a, &m_a});
    OrderedBulletins other(BulletinKey("other"));
    other.append(&m_b);
    other.append(&m_c);
    m_list.add(other);
    EXPECT_EQ(m_list.capacity(), 6u);
    EXPECT_THAT(m_list, ElementsAre(&m_a, &m_a, &m_a, &m_a, &m_b, &m_c));
}

TEST_F(OrderedBulletinsTest, AddOfItselfDoublesTheList)
{
    append({&m_a, &m_b, &m_c});
    m_list.add(m_list);
    EXPECT_THAT(m_list, ElementsAre(&m_a, &m_b, &m_c, &m_a, &m_b, &m_c));
}

TEST_F(OrderedBulletinsTest, FindsTheFirstOfAKey)
{
    Bulletin twin(m_b);
    append({&m_a, &m_b, &twin});
    EXPECT_EQ(m_list.getBulletin(m_b.getKey()), &m_b);
    EXPECT_EQ(m_list.getBulletin(m_c.getKey()), nullptr);
    m_list.clear();
    EXPECT_EQ(m_list.getBulletin(m_b.getKey()), nullptr);
}

TEST_F(OrderedBulletinsTest, PassesOverNullInTheSearchForAKey)
{
    append({nullptr, &m_a});
    EXPECT_EQ(m_list.getBulletin(m_a.getKey()), &m_a);
    EXPECT_EQ(m_list.getBulletin(m_b.getKey()), nullptr);
}

TEST_F(OrderedBulletinsTest, ClearDropsAllAndKeepsTheRoom)
{
    Story story;
    Tracked obj(story, "obj");
    append({&m_a, &m_a, &m_a, &m_a, &m_a, &obj});
    m_list.clear();
    EXPECT_TRUE(m_list.empty());
    EXPECT_EQ(m_list.capacity(), 10u);
    EXPECT_TRUE(story.empty());
}

TEST_F(OrderedBulletinsTest, DestroysNothingAtItsEnd)
{
    Story story;
    Tracked obj(story, "obj");
    {
        OrderedBulletins list(BulletinKey("short-lived"));
        list.append(&obj);
    }
    EXPECT_TRUE(story.empty());
}

TEST_F(OrderedBulletinsTest, CleanOutDestroysFromTheFrontAndDropsThoseThatRefuse)
{
    Story story;
    Tracked refusing(story, "refusing");
    refusing.refuses = true;
    append({new Tracked(story, "first"), &refusing, new Tracked(story, "last")});
    m_list.cleanOut();
    EXPECT_EQ(story, (Story{"first?", "first!", "~first", "refusing?", "last?", "last!", "~last"}));
    EXPECT_TRUE(m_list.empty());
    EXPECT_EQ(m_list.capacity(), 5u);
}

TEST_F(OrderedBulletinsTest, CleanOutKeepsOnlyTheLivingWhenAnObserverThrows)
{
    Story story;
    auto* const second = new Tracked(story, "second");
    auto* const third = new Tracked(story, "third");
    Recorder recorder([](const Heard&) { throw std::runtime_error("no"); });
    recorder.observe(*second);
    append({new Tracked(story, "first"), second, third});
    EXPECT_THROW(m_list.cleanOut(), std::runtime_error);
    EXPECT_THAT(m_list, ElementsAre(second, third));

    recorder.during = nullptr;
    m_list.cleanOut();
    EXPECT_EQ(story.back(), "~third");
}

TEST_F(OrderedBulletinsTest, CleanOutEndsWhenAnObserverClearsTheList)
{
    Story story;
    auto* const first = new Tracked(story, "first");
    Recorder recorder([this](const Heard&) { m_list.clear(); });
    recorder.observe(*first);
    append({first, &m_a});
    m_list.cleanOut();
    EXPECT_EQ(story.back(), "~first");
    EXPECT_TRUE(m_list.empty());
}

TEST_F(OrderedBulletinsTest, CleanOutLeavesAListThatAnObserverClearedBeforeItThrewEmpty)
{
    Story story;
    auto* const second = new Tracked(story, "second");
    Recorder recorder(
        [this](const Heard&)
        {
            m_list.clear();
            throw std::runtime_error("no");
        });
    recorder.observe(*second);
    append({new Tracked(story, "first"), second});
    EXPECT_THROW(m_list.cleanOut(), std::runtime_error);
    EXPECT_EQ(m_list.size(), 0u);

    recorder.during = nullptr;
    Bulletin::destroy(second, false);
}

// That nothing freed is touched is for the sanitized build to see.
TEST_F(OrderedBulletinsTest, CleanOutEndsWhenAnObserverDestroysTheList)
{
    for (const bool isFailing : {false, true})
    {
        Story story;
        auto* const list = new OrderedBulletins(BulletinKey("list"));
        auto* const first = new Tracked(story, "first");
        Tracked second(story, "second");
        Recorder recorder(
            [=](const Heard&)
            {
                delete list;
                if (isFailing)
                    throw std::runtime_error("no");
            });
        recorder.observe(*first);
        list->append(first);
        list->append(&second);
        if (isFailing)
        {
            EXPECT_THROW(list->cleanOut(), std::runtime_error);
            delete first;
        }
        else
        {
            list->cleanOut();
        }
        EXPECT_EQ(story, (Story{"first?", "first!", "~first"}));
    }
}
