// SPDX-License-Identifier: MIT
// libkel: Application services
#include <kel/resourcepaths.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace
{
using testing::ElementsAre;
using testing::IsEmpty;

struct ResourcePathsTest : testing::Test
{
    // Each case starts with the list as the process finds it.
    ResourcePathsTest() { reset(); }
    ~ResourcePathsTest() override { reset(); }

    std::vector<Ztring> getPaths() const { return {paths.begin(), paths.end()}; }

    void reset() const
    {
        paths.clear();
        paths.reserve(5);
    }

    ResourcePaths& paths = *ResourcePaths::getSingleton();
};
} // namespace

TEST(ResourcePaths, StartsEmptyWithRoomForFive)
{
    EXPECT_TRUE(ResourcePaths::getSingleton()->empty());
    EXPECT_EQ(ResourcePaths::getSingleton()->capacity(), 5u);
}

TEST(ResourcePaths, OtherListsStartAsTheFirst)
{
    ResourcePaths other;
    EXPECT_EQ(other.capacity(), 5u);
    other.addPath("a");
    EXPECT_EQ(other.size(), 1u);
    EXPECT_TRUE(ResourcePaths::getSingleton()->empty());
}

TEST_F(ResourcePathsTest, ThereIsOneList)
{
    EXPECT_EQ(ResourcePaths::getSingleton(), &paths);
}

TEST_F(ResourcePathsTest, KeepsTheOrderOfTheFirstAddition)
{
    for (const char* path : {"a", "b", "a"})
        paths.addPath(path);
    EXPECT_THAT(getPaths(), ElementsAre("a", "b"));
}

TEST_F(ResourcePathsTest, CaseCounts)
{
    for (const char* path : {"a", "A", "a/"})
        paths.addPath(path);
    EXPECT_THAT(getPaths(), ElementsAre("a", "A", "a/"));
}

TEST_F(ResourcePathsTest, GrowsToTwiceItsRoom)
{
    for (const char* path : {"a", "b", "c", "d", "e"})
        paths.addPath(path);
    EXPECT_EQ(paths.capacity(), 5u);
    paths.addPath("f");
    EXPECT_EQ(paths.capacity(), 10u);
    EXPECT_THAT(getPaths(), ElementsAre("a", "b", "c", "d", "e", "f"));
}
