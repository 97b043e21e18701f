// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#include <kel/task.h>

#include <kel/interrupted.h>

#include "support/catalogue.h"
#include "support/installed.h"
#include "support/problem.h"
#include "support/testlog.h"
#include "support/testtask.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace
{
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

using Journal = TestTask::Journal;

/// Enters the reports that it hears.
class Listener : public Task::ErrorInterruptListener
{
public:
    Listener(Journal& journal, const std::string& name) : m_journal(journal), m_name(name) {}

    void onError(Problem& problem) override { enter("error", problem); }
    void onInterrupted(Problem& problem) override { enter("interrupted", problem); }

    std::function<void(Problem&)> onReport;

private:
    void enter(const std::string& kind, Problem& problem)
    {
        m_journal.push_back(m_name + " " + kind + ": " + problem.getMessage().toUtf8());
        // Called through a copy, which survives an action that replaces or destroys the listener's.
        if (const auto action = onReport)
            action(problem);
    }

    Journal& m_journal;
    std::string m_name;
};

class SilentListener : public Task::ErrorInterruptListener
{
};

struct TaskTest : testing::Test
{
    void runFailing() const
    {
        TestTask task(ignored, "failing");
        task.onAction = [] { Problem::throwProblem("no mesh"); };
        task.execute();
    }

    void runInterrupted() const
    {
        TestTask task(ignored, "interrupted");
        task.onAction = [] { throw Interrupted(); };
        task.execute();
    }

    Journal journal;
    mutable Journal ignored;
    Installed<TestLog> log;
};
} // namespace

TEST_F(TaskTest, IsNeitherQuietNorRepeatedUnlessItSaysSo)
{
    class PlainTask : public Task
    {
        void performAction() override {}
    };
    PlainTask task;
    EXPECT_FALSE(task.isQuiet());
    EXPECT_FALSE(task.repeat());
    EXPECT_TRUE(TestTask(ignored, "quiet").beQuiet()->isQuiet());
}

TEST_F(TaskTest, SuccessfulStepIsNotReported)
{
    const Listener listener(journal, "a");
    TestTask task(journal, "task", 2);
    task.execute();
    EXPECT_THAT(journal, ElementsAre("run task"));
    EXPECT_THAT(log->messages, IsEmpty());
}

TEST_F(TaskTest, DoesNotAskWhetherToRepeat)
{
    TestTask task(ignored, "task");
    bool wasAsked = false;
    task.onRepeat = [&] { wasAsked = true; };
    task.execute();
    EXPECT_FALSE(wasAsked);
}

TEST_F(TaskTest, ProblemGoesToTheListenersInOrderAndToTheLog)
{
    const Listener a(journal, "a");
    const Listener b(journal, "b");
    runFailing();
    EXPECT_THAT(journal, ElementsAre("a error: no mesh", "b error: no mesh"));
    EXPECT_THAT(log->messages, ElementsAre(Pair(Message::Error, "no mesh")));
}

TEST_F(TaskTest, ListenersAreToldBeforeTheLog)
{
    const Listener listener(journal, "a");
    log->onAppend = [&] { journal.emplace_back("log"); };
    runFailing();
    runInterrupted();
    EXPECT_THAT(journal, ElementsAre("a error: no mesh", "log", "a interrupted: ", "log"));
}

TEST_F(TaskTest, AnnotationOfAListenerReachesLaterListenersAndTheLog)
{
    Listener a(journal, "a");
    a.onReport = [](Problem& problem) { problem.annotate("Meshing"); };
    const Listener b(journal, "b");
    runFailing();
    EXPECT_THAT(journal, ElementsAre("a error: no mesh", "b error: Meshing\nno mesh"));
    EXPECT_THAT(log->messages, ElementsAre(Pair(Message::Error, "Meshing\nno mesh")));
}

TEST_F(TaskTest, StandardExceptionIsReportedWithItsOwnText)
{
    const Listener listener(journal, "a");
    TestTask task(ignored, "task");
    task.onAction = [] { throw std::out_of_range("index 7"); };
    task.execute();
    EXPECT_THAT(journal, ElementsAre("a error: index 7"));
    EXPECT_THAT(log->messages, ElementsAre(Pair(Message::Error, "index 7")));
}

TEST_F(TaskTest, AnythingElseIsAnUnknownProblem)
{
    const Listener listener(journal, "a");
    TestTask task(ignored, "task");
    task.onAction = [] { throw 17; };
    task.execute();
    EXPECT_THAT(journal, ElementsAre("a error: Unknown Problem"));
    EXPECT_THAT(log->messages, ElementsAre(Pair(Message::Error, "Unknown Problem")));
}

TEST_F(TaskTest, InterruptionIsNoError)
{
    const Listener listener(journal, "a");
    runInterrupted();
    EXPECT_THAT(journal, ElementsAre("a interrupted: "));
    EXPECT_THAT(log->messages, ElementsAre(Pair(Message::Info, "Interrupted: ")));
}

TEST_F(TaskTest, InterruptionIsLoggedWithItsAnnotations)
{
    Interrupted interrupted;
    interrupted.annotate("Saving");
    Task::onInterrupted(interrupted);
    EXPECT_THAT(log->messages, ElementsAre(Pair(Message::Info, "Interrupted: Saving")));
}

TEST_F(TaskTest, OnlyItsOwnTextsAreTranslated)
{
    const Catalogue catalogue(
        {{"Unknown Problem", "Unbekannter Fehler"}, {"Interrupted: %1", "Abgebrochen: %1"}, {"index 7", "Index 7"}});
    TestTask task(ignored, "task");
    task.onAction = [] { throw 17; };
    task.execute();
    task.onAction = [] { throw std::out_of_range("index 7"); };
    task.execute();
    Interrupted interrupted;
    interrupted.annotate("index 7");
    Task::onInterrupted(interrupted);
    EXPECT_THAT(log->messages, ElementsAre(Pair(Message::Error, "Unbekannter Fehler"), Pair(Message::Error, "index 7"),
                                           Pair(Message::Info, "Abgebrochen: index 7")));
}

TEST_F(TaskTest, ListenerDoesNothingUnlessOverridden)
{
    const SilentListener listener;
    runFailing();
    runInterrupted();
    EXPECT_EQ(log->messages.size(), 2u);
}

TEST_F(TaskTest, DestroyedListenerHearsNothing)
{
    {
        const Listener listener(journal, "a");
    }
    runFailing();
    EXPECT_THAT(journal, IsEmpty());
}

TEST_F(TaskTest, ListenerAddedAgainIsToldTwice)
{
    Listener listener(journal, "a");
    Task::add(listener);
    runFailing();
    EXPECT_THAT(journal, ElementsAre("a error: no mesh", "a error: no mesh"));
    Task::remove(listener);
    journal.clear();
    runFailing();
    EXPECT_THAT(journal, ElementsAre("a error: no mesh"));
}

TEST_F(TaskTest, DestroyedListenerThatWasAddedAgainLeavesTheOtherEntry)
{
    Listener a(journal, "a");
    std::optional<Listener> b(std::in_place, journal, "b");
    Task::add(a);
    b.reset();
    runFailing();
    EXPECT_THAT(journal, ElementsAre("a error: no mesh", "a error: no mesh"));
    Task::remove(a);
}

TEST_F(TaskTest, ListenerThatWasRemovedBeforeItDiesTakesNoOtherAway)
{
    Listener a(journal, "a");
    {
        Listener b(journal, "b");
        Task::remove(b);
    }
    runFailing();
    EXPECT_THAT(journal, ElementsAre("a error: no mesh"));
}

TEST_F(TaskTest, RemovingFromNoListenersDoesNothing)
{
    Listener a(journal, "a");
    Task::remove(a);
    Task::remove(a);
    runFailing();
    EXPECT_THAT(journal, IsEmpty());
    Task::add(a);
    runFailing();
    EXPECT_THAT(journal, ElementsAre("a error: no mesh"));
}

TEST_F(TaskTest, RemovingAnAbsentListenerDropsTheLastOne)
{
    Listener a(journal, "a");
    Listener b(journal, "b");
    Task::remove(a);
    Task::remove(a);
    runFailing();
    EXPECT_THAT(journal, IsEmpty());
    Task::add(a);
    Task::add(b);
}

TEST_F(TaskTest, ThrowingListenerKeepsNobodyElseFromBeingTold)
{
    Listener a(journal, "a");
    a.onReport = [](Problem&) { throw std::runtime_error("a"); };
    Listener b(journal, "b");
    b.onReport = [](Problem&) { throw 1; };
    const Listener c(journal, "c");
    runFailing();
    runInterrupted();
    EXPECT_THAT(journal, ElementsAre("a error: no mesh", "b error: no mesh", "c error: no mesh",
                                     "a interrupted: ", "b interrupted: ", "c interrupted: "));
    EXPECT_EQ(log->messages.size(), 2u);
}

TEST_F(TaskTest, ThrowingLogIsIgnored)
{
    log->onAppend = [] { throw std::runtime_error("disk full"); };
    const Listener listener(journal, "a");
    runFailing();
    runInterrupted();
    EXPECT_THAT(journal, ElementsAre("a error: no mesh", "a interrupted: "));
}

TEST_F(TaskTest, ListenerDestroyedBeforeItsTurnIsNotTold)
{
    Listener a(journal, "a");
    std::optional<Listener> b(std::in_place, journal, "b");
    const Listener c(journal, "c");
    a.onReport = [&](Problem&) { b.reset(); };
    runFailing();
    EXPECT_THAT(journal, ElementsAre("a error: no mesh", "c error: no mesh"));
}

TEST_F(TaskTest, RemovingAnAbsentListenerDuringAReportTellsNobodyTwice)
{
    Listener a(journal, "a");
    Listener b(journal, "b");
    Listener absent(journal, "absent");
    Task::remove(absent);
    a.onReport = [&](Problem&) { Task::remove(absent); };
    runFailing();
    EXPECT_THAT(journal, ElementsAre("a error: no mesh"));
    Task::add(b);
    Task::add(absent);
}

TEST_F(TaskTest, ListenerMayDestroyItself)
{
    auto* const a = new Listener(journal, "a");
    const Listener b(journal, "b");
    a->onReport = [a](Problem&) { delete a; };
    runFailing();
    runFailing();
    EXPECT_THAT(journal, ElementsAre("a error: no mesh", "b error: no mesh", "b error: no mesh"));
}

TEST_F(TaskTest, ListenerDestroyedAfterItsTurnShiftsNobody)
{
    std::optional<Listener> a(std::in_place, journal, "a");
    Listener b(journal, "b");
    const Listener c(journal, "c");
    b.onReport = [&](Problem&) { a.reset(); };
    runFailing();
    EXPECT_THAT(journal, ElementsAre("a error: no mesh", "b error: no mesh", "c error: no mesh"));
}

TEST_F(TaskTest, ListenerMadeDuringAReportHearsTheNext)
{
    Listener a(journal, "a");
    std::optional<Listener> b;
    a.onReport = [&](Problem&)
    {
        if (!b)
            b.emplace(journal, "b");
    };
    runFailing();
    runFailing();
    EXPECT_THAT(journal, ElementsAre("a error: no mesh", "a error: no mesh", "b error: no mesh"));
}

TEST_F(TaskTest, ListenerMadeInPlaceOfADestroyedOneHearsTheNext)
{
    Listener a(journal, "a");
    std::optional<Listener> b(std::in_place, journal, "b");
    a.onReport = [&](Problem&)
    {
        a.onReport = nullptr;
        b.emplace(journal, "replacement");
    };
    runFailing();
    EXPECT_THAT(journal, ElementsAre("a error: no mesh"));
    runFailing();
    EXPECT_THAT(journal, ElementsAre("a error: no mesh", "a error: no mesh", "replacement error: no mesh"));
}

TEST_F(TaskTest, ReportsMayNest)
{
    Listener a(journal, "a");
    std::optional<Listener> b(std::in_place, journal, "b");
    Listener c(journal, "c");
    a.onReport = [&](Problem&)
    {
        a.onReport = nullptr;
        runInterrupted();
    };
    c.onReport = [&](Problem&)
    {
        c.onReport = nullptr;
        b.reset();
    };
    runFailing();
    EXPECT_THAT(journal, ElementsAre("a error: no mesh",
                                     "a interrupted: ", "b interrupted: ", "c interrupted: ", "c error: no mesh"));
    EXPECT_THAT(log->messages, ElementsAre(Pair(Message::Info, "Interrupted: "), Pair(Message::Error, "no mesh")));
}
