// SPDX-License-Identifier: MIT
// libkel: Commands and undo
#include <kel/commandcontroller.h>

#include <kel/changedreceiver.h>
#include <kel/command.h>
#include <kel/dynamicfactory.h>
#include <kel/receiver.h>
#include <kel/undoredostate.h>

#include "support/allocations.h"
#include "support/problem.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace
{
using testing::ElementsAre;
using testing::IsEmpty;

using Journal = std::vector<std::string>;

/// Enters what happens to it, and does what the test gives it to do.
class TestCommand : public Command
{
public:
    TestCommand(Journal& journal, const std::string& label) : m_journal(journal), m_label(label) {}
    ~TestCommand() override
    {
        m_journal.push_back("delete " + m_label);
        if (onDelete)
            onDelete();
    }

    void execute() override { act("do ", onExecute); }
    void undo() override { act("undo ", onUndo); }
    void redo() override { act("redo ", onRedo); }

    bool isUndoable() const override
    {
        if (isUndoableFails)
            throw std::runtime_error("isUndoable");
        return undoable;
    }

    Ztring getLabel() const override
    {
        if (onLabel)
            onLabel();
        return m_label;
    }

    std::function<void()> onExecute;
    std::function<void()> onUndo;
    std::function<void()> onRedo;
    std::function<void()> onDelete;
    std::function<void()> onLabel;
    bool undoable = true;
    bool isUndoableFails = false;

private:
    void act(const std::string& verb, const std::function<void()>& action)
    {
        m_journal.push_back(verb + m_label);
        if (action)
            action();
    }

    Journal& m_journal;
    std::string m_label;
};

/// Enters the labels that the menu would show, "-" where there is nothing.
class Menu : public Receiver, public ChangedReceiver
{
public:
    explicit Menu(Journal& journal) : m_journal(journal) {}

    void changed(Bulletin& what, const Bulletin& how) override
    {
        m_journal.push_back("menu " + describe(dynamic_cast<const UndoRedoState&>(how)));
        sender = &what;
        if (fails)
            throw std::runtime_error("menu");
    }

    static std::string describe(const UndoRedoState& state)
    {
        return (state.hasUndo() ? state.getUndo().toUtf8() : "-") + "|" +
               (state.hasRedo() ? state.getRedo().toUtf8() : "-");
    }

    Bulletin* sender = nullptr;
    bool fails = false;

private:
    Journal& m_journal;
};

struct CommandControllerTest : testing::Test
{
    CommandControllerTest() { menu.observe(controller); }

    TestCommand& execute(const std::string& label)
    {
        auto* const command = new TestCommand(journal, label);
        controller.execute(command);
        return *command;
    }

    void executeAll(const std::vector<std::string>& labels)
    {
        for (const std::string& label : labels)
            execute(label);
        journal.clear();
    }

    std::string getLabels() const { return Menu::describe(controller.getUndoRedoState()); }

    Journal takeJournal() { return std::exchange(journal, {}); }

    Journal journal;
    CommandController controller;
    Menu menu{journal};
};
} // namespace

TEST_F(CommandControllerTest, StartsWithNothingToUndoOrRedo)
{
    EXPECT_EQ(getLabels(), "-|-");
    EXPECT_ASSERTION(controller.undo(), "!m_undo.empty()");
    EXPECT_ASSERTION(controller.redo(), "!m_redo.empty()");
    EXPECT_THAT(journal, IsEmpty());
}

TEST_F(CommandControllerTest, ExecutesKeepsAndAnnounces)
{
    execute("a");
    EXPECT_THAT(journal, ElementsAre("do a", "menu a|-"));
    EXPECT_EQ(menu.sender, &controller);
}

TEST_F(CommandControllerTest, UndoAndRedoMoveTheCommandBetweenTheStacks)
{
    executeAll({"a", "b"});
    controller.undo();
    EXPECT_THAT(takeJournal(), ElementsAre("undo b", "menu a|b"));
    controller.undo();
    EXPECT_THAT(takeJournal(), ElementsAre("undo a", "menu -|a"));
    controller.redo();
    EXPECT_THAT(takeJournal(), ElementsAre("redo a", "menu a|b"));
    controller.redo();
    EXPECT_THAT(takeJournal(), ElementsAre("redo b", "menu b|-"));
}

TEST_F(CommandControllerTest, NewCommandDeletesWhatCouldBeRedone)
{
    executeAll({"a", "b", "c"});
    controller.undo();
    controller.undo();
    takeJournal();
    execute("d");
    EXPECT_THAT(journal, ElementsAre("do d", "delete c", "delete b", "menu d|-"));
    EXPECT_ASSERTION(controller.redo(), "!m_redo.empty()");
    controller.undo();
    EXPECT_EQ(getLabels(), "a|d");
}

TEST_F(CommandControllerTest, NewCommandIsNotOnTheStackYetWhileTheRedoStackIsEmptied)
{
    executeAll({"a"});
    std::string labels;
    execute("b").onDelete = [&] { labels = getLabels(); };
    controller.undo();
    execute("c");
    EXPECT_EQ(labels, "a|-");
    EXPECT_EQ(getLabels(), "c|-");
}

TEST_F(CommandControllerTest, CommandThatIsNotUndoableLeavesNoTrace)
{
    executeAll({"a", "b"});
    controller.undo();
    takeJournal();
    auto* const command = new TestCommand(journal, "save");
    command->undoable = false;
    controller.execute(command);
    EXPECT_THAT(journal, ElementsAre("do save", "delete save"));
    EXPECT_EQ(getLabels(), "a|b");
}

TEST_F(CommandControllerTest, ThrowingCommandIsDeletedAndNothingElseChanges)
{
    executeAll({"a", "b"});
    controller.undo();
    takeJournal();
    auto* const command = new TestCommand(journal, "c");
    command->onExecute = [] { Problem::throwProblem("failed"); };
    EXPECT_PROBLEM(controller.execute(command), "failed");
    EXPECT_THAT(journal, ElementsAre("do c", "delete c"));
    EXPECT_EQ(getLabels(), "a|b");
}

TEST_F(CommandControllerTest, CommandThatCannotTellWhetherItIsUndoableIsDeleted)
{
    auto* const command = new TestCommand(journal, "a");
    command->isUndoableFails = true;
    EXPECT_THROW(controller.execute(command), std::runtime_error);
    EXPECT_THAT(journal, ElementsAre("do a", "delete a"));
    EXPECT_EQ(getLabels(), "-|-");
}

TEST_F(CommandControllerTest, CommandMayExecuteAnotherWhichEndsUpBelowIt)
{
    auto* const command = new TestCommand(journal, "outer");
    command->onExecute = [&] { execute("inner"); };
    controller.execute(command);
    EXPECT_THAT(takeJournal(), ElementsAre("do outer", "do inner", "menu inner|-", "menu outer|-"));
    controller.undo();
    EXPECT_EQ(getLabels(), "inner|outer");
}

TEST_F(CommandControllerTest, CommandWithoutLabelShowsNothingToUndo)
{
    execute("");
    EXPECT_FALSE(controller.getUndoRedoState().hasUndo());
    controller.undo();
    EXPECT_THAT(journal, ElementsAre("do ", "menu -|-", "undo ", "menu -|-"));
}

TEST_F(CommandControllerTest, FailingUndoDiscardsTheUndoHistory)
{
    executeAll({"a", "b"});
    execute("c").onUndo = [] { Problem::throwProblem("failed"); };
    execute("d");
    controller.undo();
    takeJournal();
    EXPECT_PROBLEM(controller.undo(), "failed");
    EXPECT_THAT(journal, ElementsAre("undo c", "delete c", "delete a", "delete b", "menu -|d"));
    EXPECT_EQ(getLabels(), "-|d");
}

TEST_F(CommandControllerTest, FailingRedoDiscardsTheRedoHistory)
{
    executeAll({"a"});
    execute("b").onRedo = [] { Problem::throwProblem("failed"); };
    executeAll({"c", "d"});
    controller.undo();
    controller.undo();
    controller.undo();
    takeJournal();
    EXPECT_PROBLEM(controller.redo(), "failed");
    EXPECT_THAT(journal, ElementsAre("redo b", "delete b", "delete d", "delete c", "menu a|-"));
    EXPECT_EQ(getLabels(), "a|-");
}

TEST_F(CommandControllerTest, CommandNotUndoableAnyMoreIsTakenOffUnchangedAndNotDeleted)
{
    executeAll({"a"});
    TestCommand& command = execute("b");
    command.undoable = false;
    takeJournal();
    EXPECT_ASSERTION(controller.undo(), "undoCommand->isUndoable()");
    EXPECT_THAT(takeJournal(), IsEmpty());
    EXPECT_EQ(getLabels(), "a|-");
    delete &command;
}

TEST_F(CommandControllerTest, CommandNotUndoableAnyMoreIsTakenOffAfterItsRedoAndNotDeleted)
{
    executeAll({"a"});
    TestCommand& command = execute("b");
    controller.undo();
    takeJournal();
    command.onRedo = [&] { command.undoable = false; };
    EXPECT_ASSERTION(controller.redo(), "redoCommand->isUndoable()");
    EXPECT_THAT(takeJournal(), ElementsAre("redo b"));
    EXPECT_EQ(getLabels(), "a|-");
    delete &command;
}

TEST_F(CommandControllerTest, CommandThatCannotTellAnyMoreWhetherItIsUndoableStaysDoneOnTheUndoStack)
{
    executeAll({"a"});
    TestCommand& b = execute("b");
    takeJournal();
    b.isUndoableFails = true;
    EXPECT_THROW(controller.undo(), std::runtime_error);
    EXPECT_THAT(journal, IsEmpty());
    EXPECT_EQ(getLabels(), "b|-");

    b.isUndoableFails = false;
    controller.undo();
    takeJournal();
    b.isUndoableFails = true;
    EXPECT_THROW(controller.redo(), std::runtime_error);
    EXPECT_THAT(journal, ElementsAre("redo b"));
    EXPECT_EQ(getLabels(), "b|-");
}

TEST_F(CommandControllerTest, PruningTakesTheOldestUntilTheBoundIsKept)
{
    executeAll({"a", "b", "c", "d", "e"});
    controller.setMaximumUndo(2);
    EXPECT_THAT(journal, IsEmpty());
    EXPECT_TRUE(controller.pruneUndo());
    EXPECT_TRUE(controller.pruneUndo());
    EXPECT_FALSE(controller.pruneUndo());
    EXPECT_THAT(takeJournal(), ElementsAre("delete a", "delete b", "delete c"));
    EXPECT_FALSE(controller.pruneUndo());
    EXPECT_THAT(journal, IsEmpty());
    EXPECT_EQ(getLabels(), "e|-");
}

TEST_F(CommandControllerTest, AsksForTheLabelToUndoFirst)
{
    TestCommand& a = execute("a");
    TestCommand& b = execute("b");
    controller.undo();
    takeJournal();
    a.onLabel = [this] { journal.push_back("a?"); };
    b.onLabel = [this] { journal.push_back("b?"); };
    controller.getUndoRedoState();
    EXPECT_THAT(journal, ElementsAre("a?", "b?"));
}

TEST_F(CommandControllerTest, PruningAnEmptyStackDoesNothing)
{
    EXPECT_FALSE(controller.pruneUndo());
    EXPECT_THAT(journal, IsEmpty());
}

TEST_F(CommandControllerTest, PruningTheLastCommandIsAnnounced)
{
    executeAll({"a", "b"});
    EXPECT_TRUE(controller.pruneUndo());
    EXPECT_THAT(takeJournal(), ElementsAre("delete a"));
    EXPECT_FALSE(controller.pruneUndo());
    EXPECT_THAT(journal, ElementsAre("delete b", "menu -|-"));
}

TEST_F(CommandControllerTest, ExecutionDoesNotPrune)
{
    executeAll({"a", "b", "c"});
    controller.undo();
    controller.undo();
    EXPECT_EQ(getLabels(), "a|b");
}

TEST_F(CommandControllerTest, ClearingOneStackIsNotAnnounced)
{
    executeAll({"a", "b", "c"});
    controller.undo();
    takeJournal();
    controller.clearRedo();
    EXPECT_THAT(takeJournal(), ElementsAre("delete c"));
    EXPECT_EQ(getLabels(), "b|-");
    controller.clearUndo();
    EXPECT_THAT(journal, ElementsAre("delete a", "delete b"));
    EXPECT_EQ(getLabels(), "-|-");
}

TEST_F(CommandControllerTest, ClearingBothStacksIsAnnouncedOnce)
{
    executeAll({"a", "b", "c", "d"});
    controller.undo();
    controller.undo();
    takeJournal();
    controller.clear();
    EXPECT_THAT(journal, ElementsAre("delete a", "delete b", "delete d", "delete c", "menu -|-"));
}

TEST_F(CommandControllerTest, ClearsAQueueFromFrontToBackPassingOverNull)
{
    std::deque<Command*> commands{new TestCommand(journal, "a"), nullptr, new TestCommand(journal, "b")};
    controller.clearCommands(commands);
    EXPECT_TRUE(commands.empty());
    EXPECT_THAT(journal, ElementsAre("delete a", "delete b"));
}

TEST_F(CommandControllerTest, CanAnnounceOnRequest)
{
    executeAll({"a"});
    controller.announceChange();
    EXPECT_THAT(journal, ElementsAre("menu a|-"));
}

TEST_F(CommandControllerTest, FailingObserverFindsTheStacksAlreadyChanged)
{
    menu.fails = true;
    EXPECT_THROW(execute("a"), std::runtime_error);
    EXPECT_EQ(getLabels(), "a|-");
    EXPECT_THROW(controller.undo(), std::runtime_error);
    EXPECT_EQ(getLabels(), "-|a");
    EXPECT_THROW(controller.redo(), std::runtime_error);
    EXPECT_EQ(getLabels(), "a|-");
    EXPECT_THROW(controller.clear(), std::runtime_error);
    EXPECT_EQ(getLabels(), "-|-");
    menu.fails = false;
}

TEST_F(CommandControllerTest, FailureOfAnObserverTakesThePlaceOfTheCommands)
{
    execute("a").onUndo = [] { throw std::logic_error("command"); };
    menu.fails = true;
    EXPECT_THROW(controller.undo(), std::runtime_error);
    EXPECT_EQ(getLabels(), "-|-");
}

TEST_F(CommandControllerTest, CommandThatThereIsNoRoomForIsDeletedBeforeItIsExecuted)
{
    executeAll({"a", "b"});
    controller.undo();
    takeJournal();
    journal.reserve(10);
    auto* const command = new TestCommand(journal, "c");
    bool failed = false;
    try
    {
        const allocations::Limit none(0);
        controller.execute(command);
    }
    catch (const std::bad_alloc&)
    {
        failed = true;
    }
    EXPECT_TRUE(failed);
    EXPECT_THAT(takeJournal(), ElementsAre("delete c"));
    EXPECT_EQ(getLabels(), "a|b");
}

TEST(CommandController, IsASingletonOfTheFactory)
{
    auto& controller = DynamicFactory::getSingleton().getOrCreate<CommandController>();
    EXPECT_EQ(&DynamicFactory::getSingleton().getOrCreate<CommandController>(), &controller);
    EXPECT_EQ(controller.getKey(), CommandController::getStaticKey());
    EXPECT_EQ(CommandController::getStaticKey().getName(), "CommandController");
}

TEST(CommandController, DeletesItsCommandsWithoutAnnouncingThem)
{
    Journal journal;
    Menu menu(journal);
    {
        CommandController controller;
        for (const char* label : {"a", "b", "c"})
            controller.execute(new TestCommand(journal, label));
        controller.undo();
        menu.observe(controller);
        journal.clear();
    }
    EXPECT_THAT(journal, ElementsAre("delete a", "delete b", "delete c"));
}
