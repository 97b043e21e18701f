// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#include <kel/tasks.h>

#include <kel/changedreceiver.h>
#include <kel/othertasks.h>
#include <kel/receiver.h>
#include <kel/sound.h>
#include <kel/taskslistener.h>

#include "support/allocations.h"
#include "support/installed.h"
#include "support/problem.h"
#include "support/teststatus.h"
#include "support/testtask.h"

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

using Journal = TestTask::Journal;

/// Enters what it is told.
class Listener : public TasksListener
{
public:
    Listener(Journal& journal, const std::string& name) : m_journal(journal), m_name(name) {}

    void tasksChanged(bool busy) override { enter(busy ? "busy" : "idle"); }
    void enableMenu(bool enable) override { enter(enable ? "enable" : "disable"); }

    std::function<void()> onTold;

private:
    void enter(const std::string& what)
    {
        m_journal.push_back(m_name + " " + what);
        // Called through a copy, which survives an action that replaces the listener's.
        if (const auto action = onTold)
            action();
    }

    Journal& m_journal;
    std::string m_name;
};

/// Enters the sounds, and fails for one of them.
class TestSound : public Sound
{
public:
    explicit TestSound(Journal& journal) : m_journal(journal) {}

    void play(Event event, bool flag) override
    {
        m_journal.push_back("sound " + std::to_string(event) + (flag ? " true" : ""));
        if (event == failing)
            throw std::runtime_error("sound");
    }

    Event failing = Event(0);

private:
    Journal& m_journal;
};

class ChangeCounter : public Receiver, public ChangedReceiver
{
public:
    void changed(Bulletin&, const Bulletin&) override { ++count; }

    int count = 0;
};

struct TasksTest : testing::Test
{
    // Each case leaves the queues of the process as it found them: empty.
    ~TasksTest() override
    {
        runAll();
        runOthers();
    }

    TestTask* make(const std::string& name, int steps = 1) { return new TestTask(journal, name, steps); }

    void attach(Listener& newListener)
    {
        tasks.attach(&newListener);
        journal.clear();
    }

    void runAll() const
    {
        while (tasks.onIdle())
            continue;
    }

    void runOthers() const
    {
        while (OtherTasks::getSingleton()->onIdle())
            continue;
    }

    Journal takeJournal() { return std::exchange(journal, {}); }

    Journal journal;
    std::unique_ptr<TestStatus> status = std::make_unique<TestStatus>();
    Installed<TestSound> sound{journal};
    Tasks& tasks = *Tasks::getSingleton();
    Listener listener{journal, "a"};
};
} // namespace

TEST_F(TasksTest, ThereIsOneQueue)
{
    EXPECT_EQ(Tasks::getSingleton(), &tasks);
}

TEST_F(TasksTest, IdleCallOfAnEmptyQueueDoesNothing)
{
    attach(listener);
    EXPECT_FALSE(tasks.onIdle());
    EXPECT_THAT(journal, IsEmpty());
    tasks.detach(&listener);
}

TEST_F(TasksTest, AddingRunsNothing)
{
    tasks.add(make("t"));
    EXPECT_THAT(journal, IsEmpty());
}

TEST_F(TasksTest, RunIsFramedBySoundsAndNotifications)
{
    attach(listener);
    tasks.add(make("s"));
    tasks.add(make("t"));
    EXPECT_TRUE(tasks.onIdle());
    EXPECT_THAT(takeJournal(), ElementsAre("sound 4", "a busy", "run s", "delete s"));
    EXPECT_FALSE(tasks.onIdle());
    EXPECT_THAT(takeJournal(), ElementsAre("run t", "delete t", "sound 5"));
    runOthers();
    EXPECT_THAT(journal, ElementsAre("a idle"));
    tasks.detach(&listener);
}

TEST_F(TasksTest, RepeatingTasksTakeTurns)
{
    tasks.add(make("s", 3));
    tasks.add(make("t", 2));
    runAll();
    EXPECT_THAT(journal,
                ElementsAre("sound 4", "run s", "run t", "run s", "run t", "delete t", "run s", "delete s", "sound 5"));
}

TEST_F(TasksTest, QuietTaskSilencesOnlyTheEndThatItIsOn)
{
    tasks.add(make("s")->beQuiet());
    tasks.add(make("t"));
    runAll();
    EXPECT_THAT(takeJournal(), ElementsAre("run s", "delete s", "run t", "delete t", "sound 5"));
    tasks.add(make("s"));
    tasks.add(make("t")->beQuiet());
    runAll();
    EXPECT_THAT(journal, ElementsAre("sound 4", "run s", "delete s", "run t", "delete t"));
}

TEST_F(TasksTest, TaskAddedByTheDestructorOfTheLastOneBelongsToTheSameRun)
{
    class Chained : public TestTask
    {
    public:
        using TestTask::TestTask;
        ~Chained() override { Tasks::getSingleton()->add(next); }

        Task* next = nullptr;
    };
    auto* const task = new Chained(journal, "s");
    task->next = make("t");
    tasks.add(task);
    EXPECT_TRUE(tasks.onIdle());
    runAll();
    EXPECT_THAT(journal, ElementsAre("sound 4", "run s", "delete s", "run t", "delete t", "sound 5"));
}

TEST_F(TasksTest, EndOfARunResetsTheInterrupt)
{
    tasks.add(make("s"));
    tasks.add(make("t"));
    tasks.onIdle();
    status->setInterrupted();
    EXPECT_TRUE(status->isInterrupted());
    tasks.onIdle();
    EXPECT_FALSE(status->isInterrupted());
}

TEST_F(TasksTest, AddImmediateRunsTheWholeQueueInOrder)
{
    tasks.add(make("s", 2));
    tasks.addImmediate(make("t"));
    EXPECT_THAT(journal, ElementsAre("sound 4", "run s", "run t", "delete t", "run s", "delete s", "sound 5"));
}

TEST_F(TasksTest, AddImmediateInsideAStepOnlyAppends)
{
    TestTask* const task = make("s");
    task->onAction = [&] { tasks.addImmediate(make("t")); };
    tasks.add(task);
    EXPECT_TRUE(tasks.onIdle());
    EXPECT_THAT(takeJournal(), ElementsAre("sound 4", "run s", "delete s"));
    tasks.onIdle();
    EXPECT_THAT(journal, ElementsAre("run t", "delete t", "sound 5"));
}

TEST_F(TasksTest, IdleCallInsideAStepDoesNothing)
{
    bool ranInside = true;
    TestTask* const task = make("s");
    task->onAction = [&] { ranInside = tasks.onIdle(); };
    tasks.add(task);
    tasks.add(make("t"));
    tasks.onIdle();
    EXPECT_FALSE(ranInside);
    EXPECT_THAT(journal, ElementsAre("sound 4", "run s", "delete s"));
}

TEST_F(TasksTest, FailingTaskDoesNotStopTheQueue)
{
    TestTask* const task = make("s");
    task->onAction = [] { Problem::throwProblem("no mesh"); };
    tasks.add(task);
    tasks.add(make("t"));
    runAll();
    EXPECT_THAT(journal, ElementsAre("sound 4", "run s", "delete s", "run t", "delete t", "sound 5"));
}

TEST_F(TasksTest, AttachTellsTheStateAtOnce)
{
    tasks.attach(&listener);
    EXPECT_THAT(takeJournal(), ElementsAre("a idle"));
    tasks.detach(&listener);
    tasks.add(make("s", 2));
    tasks.onIdle();
    takeJournal();
    tasks.attach(&listener);
    EXPECT_THAT(journal, ElementsAre("a busy"));
    tasks.detach(&listener);
}

TEST_F(TasksTest, DetachedListenerHearsNothing)
{
    attach(listener);
    tasks.detach(&listener);
    tasks.notifyChanged();
    EXPECT_THAT(journal, IsEmpty());
}

TEST_F(TasksTest, DetachingAnAbsentListenerDropsTheLastOne)
{
    Listener b(journal, "b");
    Listener stranger(journal, "stranger");
    tasks.attach(&listener);
    attach(b);
    tasks.detach(&stranger);
    tasks.notifyChanged();
    EXPECT_THAT(journal, ElementsAre("a idle"));
    tasks.detach(&listener);
}

TEST_F(TasksTest, DetachingFromNoListenersDoesNothing)
{
    tasks.detach(&listener);
    tasks.notifyChanged();
    EXPECT_THAT(journal, IsEmpty());
}

TEST_F(TasksTest, ListenersAreToldInTheOrderOfAttaching)
{
    Listener b(journal, "b");
    tasks.attach(&b);
    attach(listener);
    tasks.notifyChanged();
    tasks.enableMenu(true);
    tasks.enableMenu(false);
    EXPECT_THAT(journal, ElementsAre("b idle", "a idle", "b enable", "a enable", "b disable", "a disable"));
    tasks.detach(&b);
    tasks.detach(&listener);
}

TEST_F(TasksTest, MenusStayAsTheyAreDuringARun)
{
    attach(listener);
    tasks.add(make("s", 2));
    tasks.onIdle();
    takeJournal();
    tasks.enableMenu(false);
    EXPECT_THAT(journal, IsEmpty());
    tasks.detach(&listener);
}

TEST_F(TasksTest, NotificationCanBeLeftToTheOtherQueue)
{
    attach(listener);
    tasks.notifyChangedLater();
    EXPECT_THAT(journal, IsEmpty());
    runOthers();
    EXPECT_THAT(journal, ElementsAre("a idle"));
    tasks.detach(&listener);
}

TEST_F(TasksTest, ObserversOfTheQueueAreNotNotified)
{
    ChangeCounter counter;
    counter.observe(tasks);
    tasks.notifyChanged();
    EXPECT_EQ(counter.count, 0);
}

TEST_F(TasksTest, ListenerDetachedByAnotherIsNotToldAnyMore)
{
    Listener b(journal, "b");
    Listener c(journal, "c");
    tasks.attach(&listener);
    tasks.attach(&b);
    attach(c);
    listener.onTold = [&]
    {
        listener.onTold = nullptr;
        tasks.detach(&b);
    };
    tasks.notifyChanged();
    EXPECT_THAT(journal, ElementsAre("a idle", "c idle"));
    tasks.detach(&listener);
    tasks.detach(&c);
}

TEST_F(TasksTest, DetachingFromAnotherQueueDuringANotificationShiftsNobody)
{
    Tasks other;
    Listener b(journal, "b");
    other.attach(&listener);
    tasks.attach(&listener);
    attach(b);
    listener.onTold = [&]
    {
        listener.onTold = nullptr;
        other.detach(&listener);
    };
    tasks.notifyChanged();
    EXPECT_THAT(journal, ElementsAre("a idle", "b idle"));
    tasks.detach(&listener);
    tasks.detach(&b);
}

TEST_F(TasksTest, ListenerMayDetachItself)
{
    Listener b(journal, "b");
    tasks.attach(&listener);
    attach(b);
    listener.onTold = [&] { tasks.detach(&listener); };
    tasks.notifyChanged();
    tasks.notifyChanged();
    EXPECT_THAT(journal, ElementsAre("a idle", "b idle", "b idle"));
    tasks.detach(&b);
}

TEST_F(TasksTest, ListenerAttachedByAnotherHearsTheStateOnce)
{
    Listener b(journal, "b");
    attach(listener);
    listener.onTold = [&]
    {
        listener.onTold = nullptr;
        tasks.attach(&b);
    };
    tasks.notifyChanged();
    EXPECT_THAT(journal, ElementsAre("a idle", "b idle"));
    tasks.detach(&listener);
    tasks.detach(&b);
}

TEST_F(TasksTest, ListenerThatComesAndGoesDuringANotificationKeepsNobodyFromHearingIt)
{
    Listener b(journal, "b");
    Listener c(journal, "c");
    tasks.attach(&listener);
    attach(b);
    listener.onTold = [&]
    {
        tasks.attach(&c);
        tasks.detach(&c);
    };
    tasks.notifyChanged();
    EXPECT_THAT(journal, ElementsAre("a idle", "c idle", "b idle"));
    tasks.detach(&listener);
    tasks.detach(&b);
}

TEST_F(TasksTest, ThrowingListenerPutsTheTaskBackAndTheRunGoesOn)
{
    attach(listener);
    listener.onTold = [] { throw std::runtime_error("listener"); };
    tasks.add(make("s"));
    tasks.add(make("t"));
    EXPECT_THROW(tasks.onIdle(), std::runtime_error);
    listener.onTold = nullptr;
    EXPECT_THAT(takeJournal(), ElementsAre("sound 4", "a busy"));
    runAll();
    EXPECT_THAT(takeJournal(), ElementsAre("run s", "delete s", "run t", "delete t", "sound 5"));
    runOthers();
    EXPECT_THAT(journal, ElementsAre("a idle"));
    tasks.detach(&listener);
}

TEST_F(TasksTest, ThrowingStartSoundPutsTheTaskBack)
{
    sound->failing = Sound::WorkStarted;
    tasks.add(make("s"));
    EXPECT_THROW(tasks.onIdle(), std::runtime_error);
    EXPECT_THAT(takeJournal(), ElementsAre("sound 4"));
    EXPECT_FALSE(tasks.onIdle());
    EXPECT_THAT(journal, ElementsAre("run s", "delete s", "sound 5"));
}

TEST_F(TasksTest, ThrowingFinishSoundEndsTheRunAllTheSame)
{
    attach(listener);
    sound->failing = Sound::WorkFinished;
    tasks.add(make("s"));
    status->setInterrupted();
    EXPECT_THROW(tasks.onIdle(), std::runtime_error);
    EXPECT_FALSE(status->isInterrupted());
    takeJournal();
    runOthers();
    EXPECT_THAT(journal, ElementsAre("a idle"));
    tasks.detach(&listener);
}

TEST_F(TasksTest, TaskThatCannotTellWhetherItRepeatsIsDeletedAndTheRunEnds)
{
    TestTask* const task = make("s", 2);
    task->onRepeat = [] { throw std::runtime_error("repeat"); };
    tasks.add(task);
    EXPECT_THROW(tasks.onIdle(), std::runtime_error);
    EXPECT_THAT(takeJournal(), ElementsAre("sound 4", "run s", "delete s", "sound 5"));
    tasks.addImmediate(make("t"));
    EXPECT_THAT(journal, ElementsAre("sound 4", "run t", "delete t", "sound 5"));
}

TEST_F(TasksTest, ExceptionOutOfAddImmediateLeavesTheRestQueued)
{
    TestTask* const task = make("s");
    task->onRepeat = [] { throw std::runtime_error("repeat"); };
    tasks.add(task);
    EXPECT_THROW(tasks.addImmediate(make("t")), std::runtime_error);
    runAll();
    EXPECT_THAT(journal, ElementsAre("sound 4", "run s", "delete s", "run t", "delete t", "sound 5"));
}

TEST_F(TasksTest, RunCannotEndWithoutAStatus)
{
    status.reset();
    attach(listener);
    tasks.add(make("s"));
    EXPECT_ASSERTION(tasks.onIdle(), "valid(s_singleton)");
    journal.clear();
    OtherTasks::getSingleton()->onIdle();
    EXPECT_THAT(journal, ElementsAre("a idle"));
    tasks.detach(&listener);
    status = std::make_unique<TestStatus>();
    EXPECT_FALSE(tasks.onIdle());
}

TEST_F(TasksTest, TaskThatThereIsNoRoomForIsDeleted)
{
    tasks.add(make("a"));
    journal.reserve(10);
    TestTask* const task = make("b");
    bool failed = false;
    try
    {
        const allocations::Limit none(0);
        tasks.add(task);
    }
    catch (const std::bad_alloc&)
    {
        failed = true;
    }
    EXPECT_TRUE(failed);
    EXPECT_THAT(takeJournal(), ElementsAre("delete b"));
    runAll();
    EXPECT_THAT(takeJournal(), testing::Contains("delete a"));
}

TEST_F(TasksTest, TasksInAQueueThatDiesAreNotDeleted)
{
    const std::unique_ptr<TestTask> task(make("s"));
    Tasks().add(task.get());
    EXPECT_THAT(journal, IsEmpty());
}
