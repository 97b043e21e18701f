// SPDX-License-Identifier: MIT
// libkel: Commands and undo
#include <kel/command.h>

#include <gtest/gtest.h>

namespace
{
class Rename : public Command
{
public:
    void execute() override { ++executed; }
    Ztring getLabel() const override { return "Rename"; }

    int executed = 0;
};
} // namespace

TEST(Command, IsUndoableUnlessOverridden)
{
    const Rename command;
    EXPECT_TRUE(command.isUndoable());
    EXPECT_EQ(command.getLabel(), "Rename");
}

TEST(Command, IsRedoneByExecutingItAgain)
{
    Rename command;
    Memento& memento = command;
    memento.execute();
    memento.undo();
    memento.redo();
    EXPECT_EQ(command.executed, 2);
}
