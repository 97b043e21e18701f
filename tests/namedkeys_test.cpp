// SPDX-License-Identifier: MIT
#include <kel/namedkeys.h>

#include <kel/bulletinkey.h>
#include <kel/emptystring_kel.h>

#include <gtest/gtest.h>

namespace
{
// Names last as long as the process, so each case puts its own name in front.
std::string own(const std::string& name)
{
    return std::string(testing::UnitTest::GetInstance()->current_test_info()->name()) + ' ' + name;
}

unsigned key(const std::string& name, const std::string& alias = std::string())
{
    return NamedKeys::getSingleton().getKey(name, alias);
}

const std::string& nameOf(unsigned number)
{
    return NamedKeys::getSingleton().getName(number);
}

const BulletinKey earlyKey("early");
} // namespace

TEST(NamedKeys, SingletonIsOneRegistry)
{
    EXPECT_EQ(&NamedKeys::getSingleton(), &NamedKeys::getSingleton());
}

TEST(NamedKeys, AreThereForKeysThatAreMadeBeforeMain)
{
    EXPECT_EQ(earlyKey.getName(), "early");
    EXPECT_EQ(BulletinKey("early"), earlyKey);
}

// The library's own versions are named before any other code runs.
TEST(NamedKeys, FirstNumberIsOne)
{
    EXPECT_EQ(NamedKeys::getSingleton().getName(0), "");
    EXPECT_NE(NamedKeys::getSingleton().getName(1), "");
}

TEST(NamedKeys, GiveANameItsNumberOnFirstUse)
{
    const unsigned number = key(own("name"));
    EXPECT_NE(number, 0u);
    EXPECT_EQ(key(own("name")), number);
    EXPECT_EQ(nameOf(number), own("name"));
    EXPECT_EQ(BulletinKey(own("name")).getNumber(), number);
}

TEST(NamedKeys, DrawFromTheCounterOfTheAnonymousKeys)
{
    const unsigned before = BulletinKey().getNumber();
    EXPECT_EQ(key(own("name")), before + 1);
    EXPECT_EQ(BulletinKey().getNumber(), before + 2);
}

TEST(NamedKeys, KnownNameTakesNoNumber)
{
    key(own("name"));
    const unsigned before = BulletinKey().getNumber();
    key(own("name"), own("alias"));
    EXPECT_EQ(BulletinKey().getNumber(), before + 1);
}

TEST(NamedKeys, AliasCanBeGivenToAKnownName)
{
    const unsigned number = key(own("name"));
    EXPECT_EQ(key(own("name"), own("alias")), number);
    EXPECT_EQ(key(own("alias")), number);
    EXPECT_EQ(nameOf(number), own("name"));
}

TEST(NamedKeys, AliasCanBeGivenToAnAlias)
{
    const unsigned number = key(own("name"), own("alias"));
    EXPECT_EQ(key(own("alias"), own("second alias")), number);
    EXPECT_EQ(key(own("second alias")), number);
    EXPECT_EQ(nameOf(number), own("name"));
}

TEST(NamedKeys, LaterAliasDoesNotStealAName)
{
    const unsigned first = key(own("first"), own("alias"));
    const unsigned second = key(own("second"), own("alias"));
    EXPECT_NE(second, first);
    EXPECT_EQ(key(own("alias")), first);
}

TEST(NamedKeys, AliasEqualToTheNameChangesNothing)
{
    const unsigned number = key(own("name"), own("name"));
    EXPECT_EQ(key(own("name")), number);
    EXPECT_EQ(nameOf(number), own("name"));
}

TEST(NamedKeys, EmptyAliasIsNoAlias)
{
    const unsigned number = key(own("name"), "");
    EXPECT_NE(key(""), number);
}

TEST(NamedKeys, NumberWithoutANameHasTheSharedEmptyOne)
{
    EXPECT_EQ(&nameOf(0), &Kel::emptyString);
    EXPECT_EQ(&nameOf(BulletinKey().getNumber()), &Kel::emptyString);
}

TEST(NamedKeys, NamesStayWhereTheyAreWhileTheRegistryGrows)
{
    const unsigned number = key(own("name"));
    const std::string& name = nameOf(number);
    for (int i = 0; i < 10000; ++i)
        key(own("other") + std::to_string(i));
    EXPECT_EQ(&nameOf(number), &name);
    EXPECT_EQ(name, own("name"));
}
