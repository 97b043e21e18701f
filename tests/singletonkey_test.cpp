// SPDX-License-Identifier: MIT
#include <kel/singletonkey.h>

#include <gtest/gtest.h>

TEST(SingletonKey, CarriesAKeyThatNoOtherObjectHas)
{
    const SingletonKey first;
    const SingletonKey second;
    EXPECT_NE(first.getKey(), second.getKey());
    EXPECT_EQ(first.getKey().getName(), "");
    EXPECT_EQ(&first.getKey(), &first.getKey());
}
