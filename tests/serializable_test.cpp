// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/serializable.h>

#include <kel/reader.h>
#include <kel/serializablecreator.h>
#include <kel/writer.h>

#include "support/persistable.h"
#include "support/problem.h"
#include "support/streams.h"
#include "support/teststatus.h"

namespace
{
/// Overrides nothing but what a stream cannot do without.
class Bare : public Serializable
{
public:
    SerializableCreator* getCreator() override { return &s_creator; }

    static inline CreatorOf<Bare> s_creator{"Bare"};
};

class WithoutCreator : public Serializable
{
};
} // namespace

TEST(Serializable, IsWritableUnlessOverridden)
{
    EXPECT_TRUE(Bare().isWritable());
}

TEST(Serializable, FailsWithoutACreatorOfItsOwn)
{
    EXPECT_ASSERTION(WithoutCreator().getCreator(), "false");
}

TEST(Serializable, FailsWithoutACreatorWhenItIsWritten)
{
    WithoutCreator object;
    EXPECT_ASSERTION(write(&object), "false");
}

TEST(Serializable, WritesAndReadsNothingUnlessOverridden)
{
    TestStatus status;
    Bare object;
    EXPECT_EQ(write(&object), "0 4 Bare \n");
    const std::unique_ptr<Bare> read(::read<Bare>("0 4 Bare \n"));
    EXPECT_TRUE(read);
}

TEST(Serializable, IsDeletedThroughItsBase)
{
    Serializable* const node = new Node();
    EXPECT_EQ(Persistable::getCount(), 1u);
    delete node;
    EXPECT_EQ(Persistable::getCount(), 0u);
}
