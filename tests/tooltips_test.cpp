// SPDX-License-Identifier: MIT
#include <kel/tooltips.h>

#include <kel/bulletinkey.h>

#include <gtest/gtest.h>

TEST(ToolTips, SingletonIsOneRegistry)
{
    EXPECT_EQ(&ToolTips::getSingleton(), &ToolTips::getSingleton());
}

TEST(ToolTips, KeyWithoutATextGivesTheSharedEmptyOne)
{
    EXPECT_EQ(&ToolTips::getSingleton().get(BulletinKey()), &Ztring::emptyZtring);
}

TEST(ToolTips, GiveTheTextOfTheKey)
{
    ToolTips tips;
    const BulletinKey key("key");
    const BulletinKey other("other");
    tips.add(key, "tip");
    tips.add(other, "other tip");
    EXPECT_EQ(tips.get(key), Ztring("tip"));
    EXPECT_EQ(tips.get(other), Ztring("other tip"));
}

TEST(ToolTips, FirstTextWins)
{
    ToolTips tips;
    const BulletinKey key;
    tips.add(key, "first");
    tips.add(key, "second");
    EXPECT_EQ(tips.get(key), Ztring("first"));
}

TEST(ToolTips, EmptyTextIsATextToo)
{
    ToolTips tips;
    const BulletinKey key;
    tips.add(key, "");
    tips.add(key, "second");
    EXPECT_TRUE(tips.get(key).empty());
}
