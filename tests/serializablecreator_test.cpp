// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/serializablecreator.h>

#include <kel/serializablecreators.h>

#include "support/persistable.h"

#include <gtest/gtest.h>

#include <memory>

TEST(SerializableCreator, RegistersItselfUnderItsName)
{
    const auto creator = std::make_unique<CreatorOf<Node>>("Registered");
    EXPECT_EQ(SerializableCreators::getSingleton().getCreator("Registered"), creator.get());
    EXPECT_EQ(creator->getName(), "Registered");
}

TEST(SerializableCreator, NameIsBytes)
{
    const std::string name("a\0\xff b", 5);
    const CreatorOf<Node> creator(name);
    EXPECT_EQ(creator.getName(), name);
    EXPECT_EQ(SerializableCreators::getSingleton().getCreator(name), &creator);
    EXPECT_EQ(SerializableCreators::getSingleton().getCreator("a"), nullptr);
}

TEST(SerializableCreator, DoesNotUnregisterWhenItDies)
{
    auto creator = std::make_unique<CreatorOf<Node>>("Dead");
    const SerializableCreator* const address = creator.get();
    creator.reset();
    EXPECT_EQ(SerializableCreators::getSingleton().getCreator("Dead"), address);
}

TEST(SerializableCreator, MakesANewObjectEachTime)
{
    const std::unique_ptr<Serializable> first(Node::s_creator.create());
    const std::unique_ptr<Serializable> second(Node::s_creator.create());
    EXPECT_TRUE(dynamic_cast<Node*>(first.get()));
    EXPECT_NE(first, second);
}

TEST(SerializableCreator, RegisteredDuringStaticInitialisationIsFound)
{
    EXPECT_EQ(SerializableCreators::getSingleton().getCreator("Node"), &Node::s_creator);
}
