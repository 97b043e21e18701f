// SPDX-License-Identifier: MIT
#include <kel/ownedqueue.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace
{
struct Element
{
    char name;
};

using Taken = OwnedElement<Element>;

class OwnedQueueTest : public testing::Test
{
protected:
    OwnedQueueTest() { fill(queue, "abc"); }
    ~OwnedQueueTest() override { deleteOwned(queue); }

    static void fill(OwnedQueue<Element>& queue, const std::string& names)
    {
        for (const char name : names)
            pushBackOwned(queue, std::make_unique<Element>(Element{name}));
    }

    static std::string drain(OwnedQueue<Element>& queue, Taken (*take)(OwnedQueue<Element>&))
    {
        std::string names;
        while (!queue.empty())
        {
            Taken element = take(queue);
            names += element->name;
        }
        EXPECT_EQ(queue.size(), 0u);
        return names;
    }

    OwnedQueue<Element> queue;
};
} // namespace

TEST_F(OwnedQueueTest, GivesItsElementsFromEitherEnd)
{
    EXPECT_EQ(queue.size(), 3u);
    EXPECT_EQ(queue.front()->name, 'a');
    EXPECT_EQ(queue.back()->name, 'c');
    EXPECT_EQ(drain(queue, &Taken::takeFront), "abc");
    fill(queue, "de");
    EXPECT_EQ(drain(queue, &Taken::takeBack), "ed");
}

TEST_F(OwnedQueueTest, ElementMovesFromEitherEndToEitherEndOfAnyQueue)
{
    Taken::takeBack(queue).putFront(queue);
    EXPECT_EQ(queue.front()->name, 'c');
    OwnedQueue<Element> other;
    Taken::takeFront(queue).putFront(other);
    Taken::takeBack(queue).putFront(other);
    Taken::takeFront(queue).putBack(other);
    EXPECT_TRUE(queue.empty());
    EXPECT_EQ(other.size(), 3u);
    EXPECT_EQ(drain(other, &Taken::takeBack), "acb");
}

TEST_F(OwnedQueueTest, ElementThatIsReleasedIsTheCallers)
{
    const std::unique_ptr<Element> released(Taken::takeFront(queue).release());
    EXPECT_EQ(released->name, 'a');
    EXPECT_EQ(queue.size(), 2u);
}

TEST_F(OwnedQueueTest, PoppingTheFrontDeletesNoElement)
{
    const std::unique_ptr<Element> first(queue.front());
    queue.pop_front();
    EXPECT_EQ(first->name, 'a');
    EXPECT_EQ(drain(queue, &Taken::takeBack), "cb");
}
