// SPDX-License-Identifier: MIT
// Tasks, their listeners, the log and the sound that throw: failures are reported or arrive as they are, and no task is
// lost.
#include <kel/batchtask.h>
#include <kel/othertasks.h>
#include <kel/sound.h>
#include <kel/tasks.h>
#include <kel/taskslistener.h>

#include "support/bomb.h"
#include "support/installed.h"
#include "support/testlog.h"
#include "support/teststatus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

using testing::ElementsAre;

namespace
{
class TestSound : public Sound
{
public:
    void play(Event, bool) override { bomb.call(); }

    Bomb bomb;
};

class ThrowingTasks : public testing::Test
{
protected:
    Bomb bomb;
    TestStatus status;
    Installed<TestLog> log;
    Installed<TestSound> sound;
};

class CallingTask : public Task
{
public:
    CallingTask(Bomb& action, Bomb& question, int steps) : m_action(action), m_question(question), m_left(steps)
    {
        ++s_count;
    }
    ~CallingTask() override { --s_count; }

    void performAction() override
    {
        --m_left;
        ++s_steps;
        m_action.call();
    }
    bool repeat() override
    {
        m_question.call();
        return m_left > 0;
    }

    static inline int s_count = 0;
    static inline int s_steps = 0;

private:
    Bomb& m_action;
    Bomb& m_question;
    int m_left;
};

class Ear : public Task::ErrorInterruptListener
{
public:
    explicit Ear(Bomb& bomb) : m_bomb(bomb) {}

    void onError(Problem& problem) override { hear("error " + problem.getMessage().toUtf8()); }
    void onInterrupted(Problem& problem) override { hear("interrupted " + problem.getMessage().toUtf8()); }

    std::vector<std::string> heard;

private:
    void hear(const std::string& message)
    {
        heard.push_back(message);
        m_bomb.call();
    }

    Bomb& m_bomb;
};

class Light : public TasksListener
{
public:
    explicit Light(Bomb& bomb) : m_bomb(bomb) { Tasks::getSingleton()->attach(this); }
    ~Light() override { Tasks::getSingleton()->detach(this); }
    Light(const Light&) = delete;
    Light& operator=(const Light&) = delete;

    void tasksChanged(bool busy) override
    {
        isOn = busy;
        m_bomb.call();
    }
    void enableMenu(bool) override { m_bomb.call(); }

    bool isOn = false;

private:
    Bomb& m_bomb;
};

/// Runs both queues until they are empty, through all failures, which it counts.
std::size_t runAll()
{
    std::size_t failures = 0;
    for (bool more = true; more;)
    {
        const std::string caught =
            caughtBy([&] { more = Tasks::getSingleton()->onIdle() || OtherTasks::getSingleton()->onIdle(); });
        failures += caught != s_nothing;
    }
    return failures;
}

/// Runs a batch of three tasks of two steps each, and returns the number of steps made.
int runBatch(bool interleave, Bomb& action, Bomb& question)
{
    BatchTask batch(interleave);
    for (int i = 0; i < 3; ++i)
        batch.add(new CallingTask(action, question, 2));
    while (batch.repeat())
        batch.execute();
    return std::exchange(CallingTask::s_steps, 0);
}
} // namespace

TEST_F(ThrowingTasks, TaskIsReportedAndTheOthersRun)
{
    Bomb calm;
    const auto getReport = [](Kind kind)
    {
        const char* const reports[] = {"error failed", "interrupted ", "error failed", "error Unknown Problem"};
        return std::string(reports[static_cast<std::size_t>(kind)]);
    };
    forEach(6,
            [&](std::size_t call, Kind kind)
            {
                Ear ear(calm);
                for (int i = 0; i < 3; ++i)
                    Tasks::getSingleton()->add(new CallingTask(bomb, calm, 2));
                bomb.arm(call, kind);
                EXPECT_EQ(runAll(), 0u);
                EXPECT_EQ(std::exchange(CallingTask::s_steps, 0), 6);
                EXPECT_EQ(CallingTask::s_count, 0);
                EXPECT_THAT(ear.heard, ElementsAre(getReport(kind)));
                EXPECT_EQ(log->messages.size(), 1u);
                log->messages.clear();
            });
}

TEST_F(ThrowingTasks, ListenerOrLogThatFailsKeepsNoReportFromTheOthers)
{
    Bomb calm;
    forEach(4,
            [&](std::size_t call, Kind kind)
            {
                Ear ears[] = {Ear(bomb), Ear(bomb), Ear(bomb)};
                log->onAppend = [this] { bomb.call(); };
                for (const Kind reported : {Kind::Problem, Kind::Interrupted})
                {
                    Bomb inside;
                    inside.arm(1, reported);
                    CallingTask task(inside, calm, 1);
                    bomb.arm(call, kind);
                    task.execute();
                    for (Ear& ear : ears)
                        EXPECT_EQ(std::exchange(ear.heard, {}).size(), 1u);
                    EXPECT_EQ(log->messages.size(), 1u);
                    log->messages.clear();
                }
                log->onAppend = nullptr;
            });
    CallingTask::s_steps = 0;
}

TEST_F(ThrowingTasks, QuestionToATaskThatFailsCostsThatTask)
{
    Bomb calm;
    forEach(6,
            [&](std::size_t call, Kind kind)
            {
                Light light(calm);
                for (int i = 0; i < 3; ++i)
                    Tasks::getSingleton()->add(new CallingTask(calm, bomb, 2));
                bomb.arm(call, kind);
                EXPECT_EQ(runAll(), 1u);
                // Cut short in its first step or after its last.
                EXPECT_EQ(std::exchange(CallingTask::s_steps, 0), call <= 3 ? 5 : 6);
                EXPECT_EQ(CallingTask::s_count, 0);
                EXPECT_FALSE(light.isOn);

                for (int i = 0; i < 3; ++i)
                    OtherTasks::getSingleton()->add(new CallingTask(calm, bomb, 2));
                bomb.arm(call, kind);
                EXPECT_EQ(runAll(), 1u);
                EXPECT_EQ(std::exchange(CallingTask::s_steps, 0), call <= 3 ? 5 : 6);
                EXPECT_EQ(CallingTask::s_count, 0);
            });
}

TEST_F(ThrowingTasks, SoundOrListenerThatFailsAtAStartOrAnEndLosesNoTask)
{
    Bomb calm;
    forEach(2,
            [&](std::size_t call, Kind kind)
            {
                for (Bomb* const failing : {&bomb, &sound->bomb})
                {
                    Light first(calm);
                    Light second(bomb);
                    for (int i = 0; i < 3; ++i)
                        Tasks::getSingleton()->add(new CallingTask(calm, calm, 2));
                    status.setInterrupted();
                    failing->arm(call, kind);
                    runAll();
                    failing->disarm();
                    EXPECT_EQ(std::exchange(CallingTask::s_steps, 0), 6);
                    EXPECT_EQ(CallingTask::s_count, 0);
                    EXPECT_FALSE(first.isOn);
                    EXPECT_FALSE(second.isOn);
                    EXPECT_FALSE(status.isInterrupted());
                    log->messages.clear();
                }
            });
}

TEST_F(ThrowingTasks, ListenerThatFailsWhenMenusAreEnabledEndsThatOnly)
{
    forEach(2,
            [&](std::size_t call, Kind kind)
            {
                Light first(bomb);
                Light second(bomb);
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([] { Tasks::getSingleton()->enableMenu(true); }), getName(kind));
                Tasks::getSingleton()->enableMenu(true);
            });
}

TEST_F(ThrowingTasks, SubTaskIsReportedAndTheBatchGoesOn)
{
    Bomb calm;
    for (const bool interleave : {false, true})
    {
        forEach(6,
                [&](std::size_t call, Kind kind)
                {
                    bomb.arm(call, kind);
                    EXPECT_EQ(runBatch(interleave, bomb, calm), 6);
                    EXPECT_EQ(CallingTask::s_count, 0);
                    EXPECT_EQ(std::exchange(log->messages, {}).size(), 1u);
                });
    }
}

TEST_F(ThrowingTasks, QuestionToASubTaskThatFailsIsReportedAndCostsNoTask)
{
    Bomb calm;
    for (const bool interleave : {false, true})
    {
        forEach(6,
                [&](std::size_t call, Kind kind)
                {
                    bomb.arm(call, kind);
                    const int steps = runBatch(interleave, calm, bomb);
                    // It stays the current one: after its last step it runs once more.
                    const bool isAfterLast = interleave ? call > 3 : call % 2 == 0;
                    EXPECT_EQ(steps, isAfterLast ? 7 : 6);
                    EXPECT_EQ(CallingTask::s_count, 0);
                    EXPECT_EQ(std::exchange(log->messages, {}).size(), 1u);
                });
    }
}

TEST_F(ThrowingTasks, QuestionToAnImmediateTaskThatFailsCostsThatTask)
{
    Bomb calm;
    forEach(4,
            [&](std::size_t call, Kind kind)
            {
                Tasks& tasks = *Tasks::getSingleton();
                tasks.add(new CallingTask(calm, bomb, 2));
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { tasks.addImmediate(new CallingTask(calm, bomb, 2)); }), getName(kind));
                EXPECT_EQ(runAll(), 0u);
                // The two take turns.
                EXPECT_EQ(std::exchange(CallingTask::s_steps, 0), call <= 2 ? 3 : 4);
                EXPECT_EQ(CallingTask::s_count, 0);
                tasks.addImmediate(new CallingTask(calm, calm, 1));
                EXPECT_EQ(std::exchange(CallingTask::s_steps, 0), 1);
                EXPECT_EQ(runAll(), 0u);
            });
}

TEST_F(ThrowingTasks, ListenerThatFailsWhenItIsAttachedIsAttached)
{
    forEach(1,
            [this](std::size_t call, Kind kind)
            {
                Light light(bomb);
                Tasks::getSingleton()->detach(&light);
                light.isOn = true;
                bomb.arm(call, kind);
                EXPECT_EQ(caughtBy([&] { Tasks::getSingleton()->attach(&light); }), getName(kind));
                EXPECT_FALSE(light.isOn);
                light.isOn = true;
                Tasks::getSingleton()->notifyChanged();
                EXPECT_FALSE(light.isOn);
            });
}
