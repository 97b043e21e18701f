// SPDX-License-Identifier: MIT
// libkel: Commands and undo
#include <kel/mementos.h>

#include <kel/interrupted.h>

#include "support/allocations.h"
#include "support/problem.h"
#include "support/teststatus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
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

/// Enters what happens to it, and lets time pass so that each progress report is made.
class Step : public Memento
{
public:
    Step(Journal& journal, const std::string& name) : m_journal(journal), m_name(name) {}
    ~Step() override { m_journal.push_back("delete " + m_name); }

    void execute() override { act("do "); }
    void undo() override { act("undo "); }
    void redo() override { act("redo "); }

    std::function<void()> onAct;

private:
    void act(const std::string& verb)
    {
        m_journal.push_back(verb + m_name);
        if (Status::s_singleton != nullptr)
            Status::s_singleton->sleep(1000);
        if (onAct)
            onAct();
    }

    Journal& m_journal;
    std::string m_name;
};

struct MementosTest : testing::Test
{
    Step& addStep(const std::string& name)
    {
        auto* const step = new Step(journal, name);
        mementos.add(step);
        return *step;
    }

    void addSteps(const std::vector<std::string>& names)
    {
        for (const std::string& name : names)
            addStep(name);
    }

    Journal takeJournal() { return std::exchange(journal, {}); }

    Journal journal;
    std::unique_ptr<TestStatus> status = std::make_unique<TestStatus>();
    Mementos mementos;
};
} // namespace

TEST_F(MementosTest, StartsEmptyAndCountsWhatIsAdded)
{
    EXPECT_TRUE(mementos.empty());
    EXPECT_EQ(mementos.size(), 0u);
    addSteps({"a", "b", "c"});
    EXPECT_FALSE(mementos.empty());
    EXPECT_EQ(mementos.size(), 3u);
}

TEST_F(MementosTest, EmptyListCanBeNeitherExecutedNorUndoneNorRedone)
{
    EXPECT_ASSERTION(mementos.execute(), "!m_mementos.empty()");
    EXPECT_ASSERTION(mementos.undo(), "!m_mementos.empty()");
    EXPECT_ASSERTION(mementos.redo(), "!m_mementos.empty()");
}

TEST_F(MementosTest, WorkWithoutAStatusFailsBeforeTheFirstStep)
{
    addSteps({"a", "b"});
    status.reset();
    EXPECT_ASSERTION(mementos.execute(), "valid(s_singleton)");
    EXPECT_ASSERTION(mementos.undo(), "valid(s_singleton)");
    EXPECT_ASSERTION(mementos.redo(), "valid(s_singleton)");
    EXPECT_THAT(journal, IsEmpty());
}

TEST_F(MementosTest, ExecutesInOrderAndStaysShortOfTheWhole)
{
    addSteps({"a", "b", "c"});
    mementos.execute();
    EXPECT_THAT(journal, ElementsAre("do a", "do b", "do c"));
    EXPECT_THAT(status->updates, ElementsAre(25, 50, 75));
}

TEST_F(MementosTest, UndoesInReverseOrder)
{
    addSteps({"a", "b", "c"});
    mementos.undo();
    EXPECT_THAT(journal, ElementsAre("undo c", "undo b", "undo a"));
    EXPECT_THAT(status->updates, ElementsAre(25, 50, 75));
}

TEST_F(MementosTest, UndoKeepsTheOrderForTheNextTime)
{
    addSteps({"a", "b", "c", "d"});
    mementos.undo();
    takeJournal();
    mementos.redo();
    EXPECT_THAT(journal, ElementsAre("redo a", "redo b", "redo c", "redo d"));
    EXPECT_EQ(status->updates.size(), 8u);
}

TEST_F(MementosTest, RedoesInOrderWithProgress)
{
    addSteps({"a", "b"});
    mementos.redo();
    EXPECT_THAT(journal, ElementsAre("redo a", "redo b"));
    EXPECT_THAT(status->updates, ElementsAre(33, 66));
}

TEST_F(MementosTest, UndoingASingleMementoReportsTheHalf)
{
    addStep("a");
    mementos.undo();
    EXPECT_THAT(journal, ElementsAre("undo a"));
    EXPECT_THAT(status->updates, ElementsAre(50));
}

TEST_F(MementosTest, ExecutionReportsWithinWhatTheEnclosingOperationLeaves)
{
    addSteps({"a", "b", "c"});
    status->percentComplete = 60;
    mementos.execute();
    EXPECT_THAT(status->updates, ElementsAre(70, 80, 90));
}

TEST_F(MementosTest, ExecutionAsksAfreshHowFarTheEnclosingOperationIs)
{
    addStep("a").onAct = [&] { status->percentComplete = 20; };
    addStep("b").onAct = [&] { status->percentComplete = 40; };
    mementos.execute();
    EXPECT_THAT(status->updates, ElementsAre(46, 80));
}

TEST_F(MementosTest, UndoAndRedoIgnoreTheEnclosingOperation)
{
    addStep("a");
    status->percentComplete = 60;
    mementos.undo();
    mementos.redo();
    EXPECT_THAT(status->updates, ElementsAre(50, 50));
}

TEST_F(MementosTest, ProgressIsThrottled)
{
    addSteps({"a", "b", "c"});
    status->setUpdateInterval(2500);
    mementos.execute();
    mementos.undo();
    EXPECT_THAT(status->updates, ElementsAre(75, 75));
}

TEST_F(MementosTest, UndoAndRedoReportNothingWithoutProgressOrInsideAnUpdate)
{
    addSteps({"a", "b"});
    status->setState(Status::NoProgress);
    mementos.undo();
    mementos.redo();
    EXPECT_THAT(status->updates, IsEmpty());
    status->setState(Status::ApplicationState(0));
    status->onUpdate = [this](int)
    {
        mementos.undo();
        mementos.redo();
    };
    status->elapse();
    status->checkInterrupt(7);
    EXPECT_THAT(status->updates, ElementsAre(7));
}

TEST_F(MementosTest, InterruptedDuringTheCheckKeepsOnlyWhatRan)
{
    addSteps({"a", "b", "c", "d"});
    status->interruptAt(2);
    mementos.execute();
    EXPECT_THAT(takeJournal(), ElementsAre("do a", "do b", "delete c", "delete d"));
    EXPECT_EQ(mementos.size(), 2u);
    mementos.undo();
    EXPECT_THAT(journal, ElementsAre("undo b", "undo a"));
}

TEST_F(MementosTest, InterruptedInsideAMementoKeepsThatOne)
{
    addStep("a").onAct = [] { throw Interrupted(); };
    addSteps({"b", "c"});
    mementos.execute();
    EXPECT_THAT(journal, ElementsAre("do a", "delete b", "delete c"));
    EXPECT_EQ(mementos.size(), 1u);
}

TEST_F(MementosTest, InterruptedDuringTheLastOneKeepsAll)
{
    addSteps({"a", "b"});
    status->interruptAt(2);
    mementos.execute();
    EXPECT_THAT(journal, ElementsAre("do a", "do b"));
    EXPECT_EQ(mementos.size(), 2u);
}

TEST_F(MementosTest, InterruptionLeavesTheRequestInForce)
{
    addSteps({"a", "b"});
    status->interruptAt(1);
    mementos.execute();
    EXPECT_TRUE(status->isInterrupted());
}

TEST_F(MementosTest, ListThatWasCutCanGrowAgain)
{
    addSteps({"a", "b", "c"});
    status->interruptAt(1);
    mementos.execute();
    status->resetInterrupt();
    addStep("d");
    takeJournal();
    mementos.redo();
    EXPECT_THAT(journal, ElementsAre("redo a", "redo d"));
}

TEST_F(MementosTest, MementosAddedByAnInterruptedOneAreDeletedToo)
{
    addStep("a").onAct = [&]
    {
        addStep("b");
        throw Interrupted();
    };
    mementos.execute();
    EXPECT_THAT(journal, ElementsAre("do a", "delete b"));
    EXPECT_EQ(mementos.size(), 1u);
}

TEST_F(MementosTest, AnyOtherExceptionFromExecutionPassesAndLeavesTheListWhole)
{
    addStep("a");
    addStep("b").onAct = [] { throw std::runtime_error("b"); };
    addStep("c");
    EXPECT_THROW(mementos.execute(), std::runtime_error);
    EXPECT_THAT(journal, ElementsAre("do a", "do b"));
    EXPECT_EQ(mementos.size(), 3u);
}

TEST_F(MementosTest, UndoAndRedoCannotBeInterrupted)
{
    addSteps({"a", "b"});
    status->setInterrupted();
    mementos.undo();
    mementos.redo();
    EXPECT_THAT(journal, ElementsAre("undo b", "undo a", "redo a", "redo b"));
}

TEST_F(MementosTest, ExceptionFromUndoLeavesTheListReversed)
{
    addStep("a");
    addStep("b").onAct = [] { throw std::runtime_error("b"); };
    addStep("c");
    EXPECT_THROW(mementos.undo(), std::runtime_error);
    EXPECT_THAT(takeJournal(), ElementsAre("undo c", "undo b"));
    EXPECT_THROW(mementos.redo(), std::runtime_error);
    EXPECT_THAT(journal, ElementsAre("redo c", "redo b"));
}

TEST_F(MementosTest, ExceptionFromRedoPasses)
{
    addStep("a").onAct = [] { throw std::runtime_error("a"); };
    addStep("b");
    EXPECT_THROW(mementos.redo(), std::runtime_error);
    EXPECT_THAT(journal, ElementsAre("redo a"));
}

TEST_F(MementosTest, IsAMementoOfAnotherList)
{
    addStep("a");
    auto* const inner = new Mementos;
    inner->add(new Step(journal, "b"));
    inner->add(new Step(journal, "c"));
    mementos.add(inner);
    mementos.execute();
    mementos.undo();
    EXPECT_THAT(journal, ElementsAre("do a", "do b", "do c", "undo c", "undo b", "undo a"));
}

TEST(Mementos, DeletesInTheOrderOfAddingAndPassesOverNull)
{
    Journal journal;
    {
        Mementos mementos;
        mementos.add(new Step(journal, "a"));
        mementos.add(nullptr);
        mementos.add(new Step(journal, "b"));
    }
    EXPECT_THAT(journal, ElementsAre("delete a", "delete b"));
}

TEST(Mementos, OwnsAMementoThatItHasNoRoomFor)
{
    Journal journal;
    journal.reserve(10);
    Mementos mementos;
    auto* const step = new Step(journal, "a");
    {
        const allocations::Limit none(0);
        EXPECT_THROW(mementos.add(step), std::bad_alloc);
    }
    EXPECT_THAT(journal, ElementsAre("delete a"));
    EXPECT_TRUE(mementos.empty());
}
