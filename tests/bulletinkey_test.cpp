// SPDX-License-Identifier: MIT
#include <kel/bulletinkey.h>

#include <kel/emptystring_kel.h>
#include <kel/pool.h>

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <sstream>

TEST(BulletinKey, WithoutANameIsDistinctFromEveryOtherKey)
{
    const BulletinKey named("named");
    std::set<unsigned> numbers{named.getNumber()};
    for (int i = 0; i < 100; ++i)
        EXPECT_TRUE(numbers.insert(BulletinKey().getNumber()).second);
}

TEST(BulletinKey, WithoutANameHasTheSharedEmptyOne)
{
    EXPECT_EQ(&BulletinKey().getName(), &Kel::emptyString);
}

TEST(BulletinKey, NumbersIncreaseByOneAndAreNeverZero)
{
    const BulletinKey first;
    const BulletinKey second("second");
    const BulletinKey third;
    EXPECT_NE(first.getNumber(), 0u);
    EXPECT_EQ(second.getNumber(), first.getNumber() + 1);
    EXPECT_EQ(third.getNumber(), first.getNumber() + 2);
}

TEST(BulletinKey, OfOneNameIsOneKey)
{
    const BulletinKey key("name");
    EXPECT_EQ(BulletinKey("name"), key);
    EXPECT_EQ(BulletinKey(std::string("name")), key);
    EXPECT_EQ(key.getName(), "name");
    EXPECT_NE(BulletinKey("Name"), key);
}

TEST(BulletinKey, NamesAreComparedByteByByte)
{
    const BulletinKey whole(std::string("a\0b", 3));
    EXPECT_NE(BulletinKey("a"), whole);
    EXPECT_EQ(whole.getName(), std::string("a\0b", 3));
}

TEST(BulletinKey, OfTheEmptyNameIsRegisteredLikeAnyOther)
{
    const BulletinKey key("");
    EXPECT_EQ(BulletinKey(std::string()), key);
    EXPECT_EQ(key.getName(), "");
    EXPECT_NE(BulletinKey(), key);
}

TEST(BulletinKey, AliasLeadsToTheKeyAndItsPrimaryName)
{
    const BulletinKey key("primary", "alias");
    const BulletinKey byAlias("alias");
    EXPECT_EQ(byAlias, key);
    EXPECT_EQ(byAlias.getName(), "primary");
    EXPECT_EQ(BulletinKey(std::string("primary"), std::string("alias")), key);
}

TEST(BulletinKey, AliasThatNamesAnExistingKeyIsIgnored)
{
    const BulletinKey old("old");
    const BulletinKey key("new", "old");
    EXPECT_NE(key, old);
    EXPECT_EQ(BulletinKey("old"), old);
    EXPECT_EQ(key.getName(), "new");
}

TEST(BulletinKey, CopiesTakeTheNumber)
{
    const BulletinKey key("name");
    const BulletinKey copy(key);
    BulletinKey assigned;
    assigned = key;
    EXPECT_EQ(copy, key);
    EXPECT_EQ(assigned, key);
    EXPECT_EQ(assigned.getNumber(), key.getNumber());
}

TEST(BulletinKey, OlderKeySortsFirst)
{
    const BulletinKey older("zz older");
    const BulletinKey newer("aa newer");
    EXPECT_LT(older, newer);
    EXPECT_FALSE(newer < older);
    EXPECT_FALSE(older < older);
}

TEST(BulletinKey, OnTheHeapLivesInItsPool)
{
    const auto key = std::make_unique<BulletinKey>("name");
    std::ostringstream report;
    EXPECT_EQ(BulletinKey::getPool().info(report), 40000u);
    EXPECT_EQ(report.str(), "BulletinKey: sizeof = 4, chunks = 1, bytes = 40000\n");
    EXPECT_EQ(*key, BulletinKey("name"));
}

TEST(BulletinKey, OnTheHeapTakesTheBlockThatWasFreedLast)
{
    auto key = std::make_unique<BulletinKey>();
    const void* const block = key.get();
    key.reset();
    key.reset(new BulletinKey("name"));
    EXPECT_EQ(key.get(), block);
}
