// SPDX-License-Identifier: MIT
// libkel: Commands and undo
#include <kel/memento.h>

#include <gtest/gtest.h>

#include <memory>

namespace
{
class Increment : public Memento
{
public:
    Increment(int& value, int& deleted) : m_value(value), m_deleted(deleted) {}
    ~Increment() override { ++m_deleted; }

    void execute() override { ++m_value; }

private:
    int& m_value;
    int& m_deleted;
};

struct MementoTest : testing::Test
{
    int value = 0;
    int deleted = 0;
    std::unique_ptr<Memento> memento = std::make_unique<Increment>(value, deleted);
};
} // namespace

TEST_F(MementoTest, RedoExecutesAgainUnlessOverridden)
{
    memento->execute();
    memento->redo();
    EXPECT_EQ(value, 2);
}

TEST_F(MementoTest, UndoDoesNothingUnlessOverridden)
{
    memento->execute();
    memento->undo();
    EXPECT_EQ(value, 1);
}

TEST_F(MementoTest, IsDeletedThroughItsBase)
{
    memento.reset();
    EXPECT_EQ(deleted, 1);
}
