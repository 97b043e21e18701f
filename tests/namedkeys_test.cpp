// SPDX-License-Identifier: MIT
#include <kel/namedkeys.h>

#include <kel/bulletinkey.h>
#include <kel/emptystring_kel.h>

#include <gtest/gtest.h>

namespace
{
unsigned key(const std::string& name, const std::string& alias = std::string())
{
    return NamedKeys::getSingleton().getKey(name, alias);
}

const std::string& nameOf(unsigned number)
{
    return NamedKeys::getSingleton().getName(number);
}
} // namespace

TEST(NamedKeys, SingletonIsOneRegistry)
{
    EXPECT_EQ(&NamedKeys::getSingleton(), &NamedKeys::getSingleton());
}

TEST(NamedKeys, GiveANameItsNumberOnFirstUse)
{
    const unsigned number = key("name");
    EXPECT_NE(number, 0u);
    EXPECT_EQ(key("name"), number);
    EXPECT_EQ(nameOf(number), "name");
    EXPECT_EQ(BulletinKey("name").getNumber(), number);
}

TEST(NamedKeys, DrawFromTheCounterOfTheAnonymousKeys)
{
    const unsigned before = BulletinKey().getNumber();
    EXPECT_EQ(key("name"), before + 1);
    EXPECT_EQ(BulletinKey().getNumber(), before + 2);
}

TEST(NamedKeys, KnownNameTakesNoNumber)
{
    key("name");
    const unsigned before = BulletinKey().getNumber();
    key("name", "alias");
    EXPECT_EQ(BulletinKey().getNumber(), before + 1);
}

TEST(NamedKeys, AliasOfAKnownNameIsNotRegistered)
{
    const unsigned number = key("name");
    EXPECT_EQ(key("name", "alias"), number);
    EXPECT_NE(key("alias"), number);
    EXPECT_EQ(nameOf(key("alias")), "alias");
}

TEST(NamedKeys, LaterAliasDoesNotStealAName)
{
    const unsigned first = key("first", "alias");
    const unsigned second = key("second", "alias");
    EXPECT_NE(second, first);
    EXPECT_EQ(key("alias"), first);
}

TEST(NamedKeys, AliasEqualToTheNameChangesNothing)
{
    const unsigned number = key("name", "name");
    EXPECT_EQ(key("name"), number);
    EXPECT_EQ(nameOf(number), "name");
}

TEST(NamedKeys, EmptyAliasIsNoAlias)
{
    const unsigned number = key("name", "");
    EXPECT_NE(key(""), number);
}

TEST(NamedKeys, NumberWithoutANameHasTheSharedEmptyOne)
{
    EXPECT_EQ(&nameOf(0), &Kel::emptyString);
    EXPECT_EQ(&nameOf(BulletinKey().getNumber()), &Kel::emptyString);
}

TEST(NamedKeys, NamesStayWhereTheyAreWhileTheRegistryGrows)
{
    const unsigned number = key("name");
    const std::string& name = nameOf(number);
    for (int i = 0; i < 10000; ++i)
        key("other" + std::to_string(i));
    EXPECT_EQ(&nameOf(number), &name);
    EXPECT_EQ(name, "name");
}
