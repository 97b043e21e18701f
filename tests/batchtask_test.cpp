// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#include <kel/batchtask.h>

#include <kel/othertasks.h>
#include <kel/tasks.h>

#include "support/installed.h"
#include "support/problem.h"
#include "support/testlog.h"
#include "support/teststatus.h"
#include "support/testtask.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

namespace
{
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

struct BatchTaskTest : testing::Test
{
    // Runs what the end of a run has left for later.
    ~BatchTaskTest() override
    {
        while (OtherTasks::getSingleton()->onIdle())
            continue;
    }

    TestTask* make(const std::string& name, int steps = 1) { return new TestTask(journal, name, steps); }

    static void runAll(BatchTask& batch)
    {
        while (batch.repeat())
            batch.execute();
    }

    TestTask::Journal journal;
    std::optional<TestStatus> status{std::in_place};
};
} // namespace

TEST_F(BatchTaskTest, RunsEachSubTaskToItsEnd)
{
    BatchTask batch(false);
    batch.add(make("s", 3));
    batch.add(make("t"));
    runAll(batch);
    EXPECT_THAT(journal, ElementsAre("run s", "run s", "run s", "delete s", "run t", "delete t"));
}

TEST_F(BatchTaskTest, InterleavedSubTasksTakeTurns)
{
    BatchTask batch(true);
    batch.add(make("s", 3));
    batch.add(make("t", 2));
    runAll(batch);
    EXPECT_THAT(journal, ElementsAre("run s", "run t", "run s", "run t", "delete t", "run s", "delete s"));
}

TEST_F(BatchTaskTest, WantsToRunWhileThereIsASubTask)
{
    BatchTask batch(false);
    EXPECT_FALSE(batch.repeat());
    batch.add(make("s", 2));
    EXPECT_TRUE(batch.repeat());
    batch.execute();
    EXPECT_TRUE(batch.repeat());
    batch.execute();
    EXPECT_FALSE(batch.repeat());
}

TEST_F(BatchTaskTest, EmptyBatchMayBeQueued)
{
    Tasks::getSingleton()->addImmediate(new BatchTask(false));
    EXPECT_THAT(journal, IsEmpty());
}

TEST_F(BatchTaskTest, SubTaskMayAddAnother)
{
    BatchTask batch(false);
    TestTask* const task = make("s");
    task->onAction = [&] { batch.add(make("t")); };
    batch.add(task);
    runAll(batch);
    EXPECT_THAT(journal, ElementsAre("run s", "delete s", "run t", "delete t"));
}

TEST_F(BatchTaskTest, FailingSubTaskIsReportedAndTheBatchGoesOn)
{
    const Installed<TestLog> log;
    BatchTask batch(false);
    TestTask* const task = make("s");
    task->onAction = [] { Problem::throwProblem("no mesh"); };
    batch.add(task);
    batch.add(make("t"));
    runAll(batch);
    EXPECT_THAT(log->messages, ElementsAre(Pair(Message::Error, "no mesh")));
    EXPECT_THAT(journal, ElementsAre("run s", "delete s", "run t", "delete t"));
}

TEST_F(BatchTaskTest, InterruptDropsTheWholeBatch)
{
    BatchTask batch(false);
    TestTask* const task = make("s", 5);
    task->onAction = [&] { status->setInterrupted(); };
    batch.add(task);
    batch.add(make("t"));
    batch.add(make("u"));
    batch.execute();
    EXPECT_THAT(journal, ElementsAre("run s", "delete s", "delete t", "delete u"));
    EXPECT_FALSE(batch.repeat());
}

TEST_F(BatchTaskTest, QueueDeletesAnInterruptedBatchAndResetsTheInterrupt)
{
    auto* const batch = new BatchTask(true);
    TestTask* const task = make("s", 5);
    task->onAction = [&] { status->setInterrupted(); };
    batch->add(task);
    batch->add(make("t"));
    Tasks::getSingleton()->addImmediate(batch);
    EXPECT_THAT(journal, ElementsAre("run s", "delete s", "delete t"));
    EXPECT_FALSE(status->isInterrupted());
}

TEST_F(BatchTaskTest, CleanUpDeletesTheCurrentSubTaskFirst)
{
    BatchTask batch(false);
    batch.add(make("s", 2));
    batch.add(make("t"));
    batch.add(make("u"));
    batch.execute();
    batch.cleanUp();
    EXPECT_THAT(journal, ElementsAre("run s", "delete s", "delete t", "delete u"));
    EXPECT_FALSE(batch.repeat());
}

TEST_F(BatchTaskTest, DestructorDeletesWhatIsLeft)
{
    {
        BatchTask batch(false);
        batch.add(make("s", 2));
        batch.add(make("t"));
        batch.execute();
    }
    EXPECT_THAT(journal, ElementsAre("run s", "delete s", "delete t"));
}

TEST_F(BatchTaskTest, SubTaskThatCannotTellWhetherItRepeatsStaysCurrent)
{
    const Installed<TestLog> log;
    BatchTask batch(false);
    TestTask* const task = make("s");
    task->onRepeat = [task]
    {
        task->onRepeat = nullptr;
        throw std::runtime_error("repeat");
    };
    batch.add(task);
    batch.execute();
    EXPECT_TRUE(batch.repeat());
    EXPECT_THAT(log->messages, ElementsAre(Pair(Message::Error, "repeat")));
    batch.cleanUp();
    EXPECT_THAT(journal, ElementsAre("run s", "delete s"));
}

TEST_F(BatchTaskTest, BatchEndsWithAReportWhereThereIsNoStatus)
{
    const Installed<TestLog> log;
    status.reset();
    BatchTask batch(false);
    batch.add(make("s", 2));
    batch.add(make("t"));
    batch.execute();
    EXPECT_FALSE(batch.repeat());
    EXPECT_THAT(journal, ElementsAre("run s", "delete s", "delete t"));
    ASSERT_EQ(log->messages.size(), 1u);
    EXPECT_NE(log->messages[0].second.find("valid(s_singleton)"), std::string::npos);
}
