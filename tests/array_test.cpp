// SPDX-License-Identifier: MIT
// libkel: Foundations
#include <kel/array.h>

#include <kel/ztring.h>

#include "support/allocations.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

namespace
{
using testing::ElementsAre;
using testing::IsEmpty;

/// A number whose copies can be made to fail.
class Fragile
{
public:
    Fragile() = default;
    Fragile(int number) : m_number(number) {}
    Fragile(const Fragile& other) = default;
    Fragile& operator=(const Fragile& other)
    {
        if (s_copiesLeft == 0)
            throw std::runtime_error("copy");
        --s_copiesLeft;
        m_number = other.m_number;
        return *this;
    }
    ~Fragile() = default;

    bool operator==(const Fragile& other) const { return m_number == other.m_number; }

    static constexpr int s_unlimited = 1000;
    static inline int s_copiesLeft = s_unlimited;

private:
    int m_number = 0;
};

/// While it lives, only that many further copies succeed.
class CopyLimit
{
public:
    explicit CopyLimit(int copies) { Fragile::s_copiesLeft = copies; }
    CopyLimit(const CopyLimit&) = delete;
    CopyLimit& operator=(const CopyLimit&) = delete;
    ~CopyLimit() { Fragile::s_copiesLeft = Fragile::s_unlimited; }
};

template <class T, class... Values>
Array<T> makeArray(Values... values)
{
    Array<T> array;
    (array.push_back(values), ...);
    return array;
}
} // namespace

TEST(Array, StartsEmptyWithoutStorage)
{
    const Array<int> array;
    EXPECT_TRUE(array.empty());
    EXPECT_EQ(array.size(), 0u);
    EXPECT_EQ(array.capacity(), 0u);
    EXPECT_EQ(array.begin(), array.end());
}

TEST(Array, CapacityIsTwoAtFirstAndDoublesWhenFull)
{
    Array<int> array;
    std::string capacities;
    for (int i = 0; i < 9; ++i)
    {
        array.push_back(i);
        capacities += std::to_string(array.capacity()) + " ";
    }
    EXPECT_EQ(capacities, "2 2 4 4 8 8 8 8 16 ");
    EXPECT_THAT(array, ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8));
}

TEST(Array, GrowsFromAReservedCapacityByDoubling)
{
    Array<int> array;
    array.reserve(3);
    for (int i = 0; i < 4; ++i)
        array.push_back(i);
    EXPECT_EQ(array.capacity(), 6u);
}

TEST(Array, ElementsAreReadAndWrittenByIndex)
{
    Array<std::string> array = makeArray<std::string>("a", "b");
    array[1] = "c";
    const Array<std::string>& reading = array;
    EXPECT_EQ(reading[0], "a");
    EXPECT_EQ(reading[1], "c");
}

TEST(Array, IteratorsWriteThrough)
{
    Array<int> array = makeArray<int>(1, 2, 3);
    for (int& element : array)
        element *= 10;
    EXPECT_THAT(array, ElementsAre(10, 20, 30));
}

TEST(Array, ClearKeepsTheStorage)
{
    Array<int> array = makeArray<int>(1, 2, 3);
    const int* const block = array.begin();
    array.clear();
    EXPECT_TRUE(array.empty());
    EXPECT_EQ(array.capacity(), 4u);
    EXPECT_EQ(array.begin(), block);
}

TEST(Array, ReserveMakesExactlyThatCapacityAndKeepsTheElements)
{
    Array<std::string> array = makeArray<std::string>("a", "b");
    array.reserve(7);
    EXPECT_EQ(array.capacity(), 7u);
    EXPECT_THAT(array, ElementsAre("a", "b"));
}

TEST(Array, ReserveBelowTheSizeCutsTheSize)
{
    Array<int> array = makeArray<int>(1, 2, 3);
    array.reserve(2);
    EXPECT_EQ(array.capacity(), 2u);
    EXPECT_THAT(array, ElementsAre(1, 2));
    array.reserve(0);
    EXPECT_EQ(array.capacity(), 0u);
    EXPECT_THAT(array, IsEmpty());
}

TEST(Array, ElementsOfANewBlockAreDefaultConstructed)
{
    Array<std::string> array;
    array.reserve(2);
    EXPECT_EQ(array.size(), 0u);
    EXPECT_EQ(array[0], "");
    EXPECT_EQ(array[1], "");
}

TEST(Array, EraseRemovesTheFirstEqualElement)
{
    Array<int> array = makeArray<int>(1, 2, 3, 2);
    array.erase(2);
    EXPECT_THAT(array, ElementsAre(1, 3, 2));
    EXPECT_EQ(array.capacity(), 4u);
}

TEST(Array, EraseTakesAnElementOfTheArrayItself)
{
    Array<std::string> array = makeArray<std::string>("a", "b", "c");
    array.erase(array[0]);
    EXPECT_THAT(array, ElementsAre("b", "c"));
}

TEST(Array, EraseOfAnAbsentValueDropsTheLastElement)
{
    Array<int> array = makeArray<int>(1, 2, 3);
    array.erase(4);
    EXPECT_THAT(array, ElementsAre(1, 2));
}

TEST(Array, CopyHasTheCapacityOfItsSize)
{
    const Array<int> array = makeArray<int>(1, 2, 3);
    const Array<int> copy(array); // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_THAT(copy, ElementsAre(1, 2, 3));
    EXPECT_EQ(copy.capacity(), 3u);
    EXPECT_EQ(array.capacity(), 4u);
    EXPECT_NE(copy.begin(), array.begin());
}

TEST(Array, CopyOfAnEmptyArrayHasNoStorage)
{
    Array<int> array;
    array.reserve(5);
    const Array<int> copy(array); // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_EQ(copy.capacity(), 0u);
    EXPECT_EQ(copy.begin(), nullptr);
}

TEST(Array, AssignmentCopies)
{
    const Array<std::string> array = makeArray<std::string>("a", "b", "c");
    Array<std::string> other = makeArray<std::string>("d");
    other = array;
    EXPECT_THAT(other, ElementsAre("a", "b", "c"));
    EXPECT_EQ(other.capacity(), 3u);
    EXPECT_THAT(array, ElementsAre("a", "b", "c"));
}

TEST(Array, AssignmentToItselfKeepsTheElements)
{
    Array<std::string> array = makeArray<std::string>("a", "b");
    const Array<std::string>& same = array;
    array = same;
    EXPECT_THAT(array, ElementsAre("a", "b"));
}

TEST(Array, MovingTakesTheBlock)
{
    Array<std::string> array = makeArray<std::string>("a", "b");
    const std::string* const block = array.begin();
    Array<std::string> moved(std::move(array));
    EXPECT_EQ(moved.begin(), block);
    Array<std::string> assigned = makeArray<std::string>("c");
    assigned = std::move(moved);
    EXPECT_EQ(assigned.begin(), block);
    EXPECT_THAT(assigned, ElementsAre("a", "b"));
}

TEST(Array, AMovedFromArrayIsEmpty)
{
    Array<int> array = makeArray<int>(1);
    const Array<int> moved(std::move(array));
    EXPECT_EQ(array.size(), 0u); // NOLINT(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
    EXPECT_EQ(array.capacity(), 0u);
}

TEST(Array, AnElementOfTheArrayItselfCanBeAppendedToAFullArray)
{
    Array<std::string> array = makeArray<std::string>("a long text that is not kept inside the string", "b");
    ASSERT_EQ(array.size(), array.capacity());
    array.push_back(array[0]);
    EXPECT_EQ(array[2], "a long text that is not kept inside the string");
    EXPECT_EQ(array[0], array[2]);
}

TEST(Array, AnElementOfTheArrayItselfCanBeAppendedWhereThereIsRoom)
{
    Array<std::string> array = makeArray<std::string>("a", "b", "c");
    ASSERT_LT(array.size(), array.capacity());
    array.push_back(array[1]);
    EXPECT_THAT(array, ElementsAre("a", "b", "c", "b"));
}

TEST(Array, AnAppendThatFailsInACopyLeavesTheArrayAsItWas)
{
    Array<Fragile> array = makeArray<Fragile>(1, 2);
    for (int copies = 0; copies < 3; ++copies)
    {
        const CopyLimit limit(copies);
        EXPECT_THROW(array.push_back(3), std::runtime_error);
        EXPECT_THAT(array, ElementsAre(Fragile(1), Fragile(2)));
        EXPECT_EQ(array.capacity(), 2u);
    }
}

TEST(Array, AReserveThatFailsInACopyLeavesTheArrayAsItWas)
{
    Array<Fragile> array = makeArray<Fragile>(1, 2);
    const CopyLimit limit(1);
    EXPECT_THROW(array.reserve(5), std::runtime_error);
    EXPECT_THAT(array, ElementsAre(Fragile(1), Fragile(2)));
    EXPECT_EQ(array.capacity(), 2u);
}

TEST(Array, AnAssignmentThatFailsInACopyLeavesTheTargetAsItWas)
{
    const Array<Fragile> array = makeArray<Fragile>(1, 2);
    Array<Fragile> target = makeArray<Fragile>(3);
    const CopyLimit limit(1);
    EXPECT_THROW(target = array, std::runtime_error);
    EXPECT_THAT(target, ElementsAre(Fragile(3)));
}

TEST(Array, RunningOutOfMemoryLeavesTheArrayAsItWas)
{
    Array<std::string> array = makeArray<std::string>("a", "b");
    const std::string text(100, 'c');
    const std::size_t failures = allocations::failEachInTurn([&] { array.push_back(text); },
                                                             [&]
                                                             {
                                                                 EXPECT_THAT(array, ElementsAre("a", "b"));
                                                                 EXPECT_EQ(array.capacity(), 2u);
                                                             });
    EXPECT_EQ(failures, 2u);
    EXPECT_THAT(array, ElementsAre("a", "b", text));
}

TEST(Array, TextsAreErasedWhereMemoryHasRunOut)
{
    Array<Ztring> array = makeArray<Ztring>("a", std::string(100, 'b'), std::string(200, 'c'));
    const Ztring& erased = array[0];
    {
        const allocations::Limit none(0);
        array.erase(erased);
    }
    EXPECT_THAT(array, ElementsAre(Ztring(std::string(100, 'b')), Ztring(std::string(200, 'c'))));
}

TEST(Array, DestructorIsVirtual)
{
    struct Derived : Array<int>
    {
        explicit Derived(bool& destroyed) : m_destroyed(destroyed) {}
        ~Derived() override { m_destroyed = true; }
        bool& m_destroyed;
    };
    bool destroyed = false;
    std::unique_ptr<Array<int>> array = std::make_unique<Derived>(destroyed);
    array.reset();
    EXPECT_TRUE(destroyed);
}
