// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/serializablecreators.h>

#include <kel/serializablecreator.h>

#include "support/persistable.h"
#include "support/problem.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace
{
SerializableCreators& registry()
{
    return SerializableCreators::getSingleton();
}

/// Notes its name when it is deleted.
class Mortal : public CreatorOf<Node>
{
public:
    Mortal(const std::string& name, std::vector<std::string>& deleted) : CreatorOf<Node>(name), m_deleted(deleted) {}
    ~Mortal() override { m_deleted.push_back(getName()); }

private:
    std::vector<std::string>& m_deleted;
};

using Rollback = SerializableCreators::Rollback;
} // namespace

class SerializableCreatorsTest : public testing::Test
{
protected:
    /// A creator that only a rollback deletes.
    SerializableCreator* add(const std::string& name) { return new Mortal(name, deleted); }

    std::vector<std::string> deleted;
};

TEST_F(SerializableCreatorsTest, UnknownNamesHaveNoCreator)
{
    EXPECT_EQ(registry().getCreator("Unknown"), nullptr);
    EXPECT_EQ(registry().getCreator(""), nullptr);
    EXPECT_EQ(registry().getCreator("node"), nullptr);
    EXPECT_EQ(registry().getCreator("Node "), nullptr);
}

TEST_F(SerializableCreatorsTest, SecondCreatorOfANameReplacesTheFirstWhichStaysAlive)
{
    Mortal first("Twice", deleted);
    Mortal second("Twice", deleted);
    EXPECT_EQ(registry().getCreator("Twice"), &second);
    EXPECT_TRUE(deleted.empty());
}

TEST_F(SerializableCreatorsTest, OneCreatorMayHaveSeveralNames)
{
    Mortal creator("Name", deleted);
    registry().add("OtherName", &creator);
    EXPECT_EQ(registry().getCreator("Name"), &creator);
    EXPECT_EQ(registry().getCreator("OtherName"), &creator);
}

TEST_F(SerializableCreatorsTest, RollbackDeletesACreatorOfSeveralNamesOnce)
{
    SerializableCreator* const creator = add("NameBefore");
    {
        const Rollback rollback(true);
        registry().add("Name", creator);
        registry().add("OtherName", creator);
    }
    EXPECT_EQ(deleted, std::vector<std::string>{"NameBefore"});
    for (const char* const name : {"NameBefore", "Name", "OtherName"})
        EXPECT_EQ(registry().getCreator(name), nullptr);
}

TEST_F(SerializableCreatorsTest, SetOfNoRollbackFails)
{
    EXPECT_ASSERTION(registry().set(nullptr), "valid(rollback)");
}

TEST_F(SerializableCreatorsTest, RemoveDeletesAndUnregistersInOrder)
{
    add("C");
    add("A");
    const Mortal kept("B", deleted);
    Array<std::string> names;
    names.push_back("C");
    names.push_back("A");
    registry().remove(names);
    EXPECT_EQ(deleted, (std::vector<std::string>{"C", "A"}));
    EXPECT_EQ(registry().getCreator("C"), nullptr);
    EXPECT_EQ(registry().getCreator("B"), &kept);
}

TEST_F(SerializableCreatorsTest, RemoveEndsTheActiveRollback)
{
    Rollback rollback(true);
    registry().remove(Array<std::string>());
    Mortal creator("AfterRemove", deleted);
    EXPECT_TRUE(rollback.empty());
}

TEST_F(SerializableCreatorsTest, RollbackTakesBackExactlyWhatWasRegisteredMeanwhile)
{
    Mortal before("Before", deleted);
    {
        const Rollback rollback(true);
        add("Z");
        add("Y");
    }
    EXPECT_EQ(deleted, (std::vector<std::string>{"Z", "Y"}));
    EXPECT_EQ(registry().getCreator("Z"), nullptr);
    EXPECT_EQ(registry().getCreator("Y"), nullptr);
    EXPECT_EQ(registry().getCreator("Before"), &before);
}

TEST_F(SerializableCreatorsTest, RollbackListsMoreNamesThanItHasRoomFor)
{
    {
        const Rollback rollback(true);
        EXPECT_EQ(rollback.capacity(), 10u);
        for (int i = 0; i < 25; ++i)
            add("Many" + std::to_string(i));
        EXPECT_EQ(rollback.size(), 25u);
    }
    EXPECT_EQ(deleted.size(), 25u);
}

TEST_F(SerializableCreatorsTest, ClearedRollbackKeepsTheRegistrations)
{
    Mortal creator("Unused", deleted);
    {
        Rollback rollback(true);
        registry().add("Committed", &creator);
        rollback.clear();
        EXPECT_TRUE(rollback.empty());
    }
    EXPECT_EQ(registry().getCreator("Committed"), &creator);
    EXPECT_TRUE(deleted.empty());
}

TEST_F(SerializableCreatorsTest, RegistrationsAfterClearAreTakenBack)
{
    {
        Rollback rollback(true);
        rollback.clear();
        add("Late");
    }
    EXPECT_EQ(deleted, std::vector<std::string>{"Late"});
}

TEST_F(SerializableCreatorsTest, DestroyedRollbackIsNoLongerActive)
{
    {
        Rollback rollback(true);
        rollback.clear();
    }
    Mortal creator("AfterRollback", deleted);
    EXPECT_EQ(registry().getCreator("AfterRollback"), &creator);
}

TEST_F(SerializableCreatorsTest, DisabledRollbackNotesNothing)
{
    const Rollback rollback(false);
    Mortal creator("Disabled", deleted);
    EXPECT_TRUE(rollback.empty());
    EXPECT_EQ(rollback.capacity(), 0u);
}

TEST_F(SerializableCreatorsTest, DestroyingADisabledRollbackEndsTheActiveOne)
{
    Rollback active(true);
    {
        const Rollback disabled(false);
    }
    Mortal creator("Unnoted", deleted);
    EXPECT_TRUE(active.empty());
}

TEST_F(SerializableCreatorsTest, SetMakesARollbackTheActiveOne)
{
    {
        Rollback rollback(false);
        registry().set(&rollback);
        add("Set");
        EXPECT_EQ(rollback.size(), 1u);
    }
    EXPECT_EQ(deleted, std::vector<std::string>{"Set"});
}

TEST_F(SerializableCreatorsTest, RollbackOfANameRegisteredTwiceDeletesTheCreatorThatHoldsIt)
{
    Mortal first("Double", deleted);
    {
        const Rollback rollback(true);
        registry().add("Double", &first);
        add("Double");
    }
    EXPECT_EQ(deleted, std::vector<std::string>{"Double"});
    EXPECT_EQ(registry().getCreator("Double"), nullptr);
}
