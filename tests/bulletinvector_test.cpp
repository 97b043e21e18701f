// SPDX-License-Identifier: MIT
#include <kel/bulletinvector.h>

#include <kel/bulletin.h>

#include <gtest/gtest.h>

#include <type_traits>

TEST(BulletinVector, IsAnArrayOfBulletinsThatItDoesNotOwn)
{
    static_assert(std::is_base_of_v<Array<Bulletin*>, BulletinVector>);
    Bulletin obj;
    BulletinVector vector;
    EXPECT_EQ(vector.capacity(), 0u);
    vector.push_back(&obj);
    vector.push_back(&obj);
    vector.push_back(&obj);
    EXPECT_EQ(vector.size(), 3u);
    EXPECT_EQ(vector.capacity(), 4u);
    const BulletinVector copy(vector);
    EXPECT_EQ(copy.capacity(), 3u);
    EXPECT_EQ(copy[2], &obj);
}
