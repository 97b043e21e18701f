// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#include <kel/othertasks.h>

#include "support/problem.h"
#include "support/testtask.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

namespace
{
using testing::ElementsAre;
using testing::IsEmpty;

struct OtherTasksTest : testing::Test
{
    TestTask* add(const std::string& name, int steps = 1)
    {
        auto* const task = new TestTask(journal, name, steps);
        tasks.add(task);
        return task;
    }

    void runAll() const
    {
        while (tasks.onIdle())
            continue;
    }

    TestTask::Journal journal;
    OtherTasks& tasks = *OtherTasks::getSingleton();
};
} // namespace

TEST_F(OtherTasksTest, ThereIsOneQueue)
{
    EXPECT_EQ(OtherTasks::getSingleton(), &tasks);
}

TEST_F(OtherTasksTest, OtherQueuesHaveTasksOfTheirOwn)
{
    OtherTasks other;
    other.add(new TestTask(journal, "s"));
    EXPECT_FALSE(tasks.onIdle());
    EXPECT_FALSE(other.onIdle());
    EXPECT_THAT(journal, ElementsAre("run s", "delete s"));
}

TEST_F(OtherTasksTest, IdleCallOfAnEmptyQueueDoesNothing)
{
    EXPECT_FALSE(tasks.onIdle());
}

TEST_F(OtherTasksTest, IdleCallRunsOneStepAndTellsWhetherThereIsMore)
{
    add("s");
    add("t");
    EXPECT_THAT(journal, IsEmpty());
    EXPECT_TRUE(tasks.onIdle());
    EXPECT_THAT(journal, ElementsAre("run s", "delete s"));
    EXPECT_FALSE(tasks.onIdle());
    EXPECT_THAT(journal, ElementsAre("run s", "delete s", "run t", "delete t"));
}

TEST_F(OtherTasksTest, RepeatingTasksTakeTurns)
{
    add("s", 2);
    add("t", 2);
    runAll();
    EXPECT_THAT(journal, ElementsAre("run s", "run t", "run s", "delete s", "run t", "delete t"));
}

TEST_F(OtherTasksTest, StepMayRunTheNextTaskInside)
{
    add("s")->onAction = [&] { tasks.onIdle(); };
    add("t");
    runAll();
    EXPECT_THAT(journal, ElementsAre("run s", "run t", "delete t", "delete s"));
}

TEST_F(OtherTasksTest, FailingTaskDoesNotStopTheQueue)
{
    add("s")->onAction = [] { Problem::throwProblem("failed"); };
    add("t");
    runAll();
    EXPECT_THAT(journal, ElementsAre("run s", "delete s", "run t", "delete t"));
}

TEST_F(OtherTasksTest, TaskThatCannotTellWhetherItRepeatsIsDeleted)
{
    add("s")->onRepeat = [] { throw std::runtime_error("repeat"); };
    add("t");
    EXPECT_THROW(tasks.onIdle(), std::runtime_error);
    runAll();
    EXPECT_THAT(journal, ElementsAre("run s", "delete s", "run t", "delete t"));
}

TEST_F(OtherTasksTest, TasksInAQueueThatDiesAreNotDeleted)
{
    const auto task = std::make_unique<TestTask>(journal, "s");
    OtherTasks().add(task.get());
    EXPECT_THAT(journal, IsEmpty());
}
