// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#include <kel/status.h>

#include <kel/changedreceiver.h>
#include <kel/interrupted.h>
#include <kel/receiver.h>
#include <kel/timer.h>

#include "support/problem.h"
#include "support/teststatus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ctime>
#include <stdexcept>

namespace
{
using testing::ElementsAre;
using testing::IsEmpty;

/// Counts the announcements of the bulletins it observes.
class StopButton : public Receiver, public ChangedReceiver
{
public:
    void changed(Bulletin& what, const Bulletin&) override
    {
        ++count;
        wasInterrupted = dynamic_cast<Status&>(what).isInterrupted();
    }

    int count = 0;
    bool wasInterrupted = false;
};
} // namespace

TEST(Status, RegistersItselfForItsLifetime)
{
    EXPECT_EQ(Status::s_singleton, nullptr);
    {
        Status status;
        EXPECT_EQ(Status::s_singleton, &status);
        EXPECT_EQ(&Status::getSingleton(), &status);
    }
    EXPECT_EQ(Status::s_singleton, nullptr);
}

TEST(Status, SecondLiveOneFailsAndLeavesTheFirst)
{
    Status status;
    EXPECT_ASSERTION(Status(), "!valid(s_singleton)");
    EXPECT_EQ(Status::s_singleton, &status);
}

TEST(Status, AskingForItWhereThereIsNoneFails)
{
    EXPECT_ASSERTION(Status::getSingleton(), "valid(s_singleton)");
}

TEST(Status, BaseHooksDoNothing)
{
    Status status;
    status.setStatus("Solving");
    status.setStatus("Solving", 20);
    status.updateEvents(20);
    EXPECT_EQ(status.getPercentComplete(), 0u);
    EXPECT_FALSE(status.isInterrupted());
}

TEST(Status, SleepCountsTheTimeAsElapsed)
{
    Status status;
    const std::uint64_t before = Timer::s_slept;
    status.sleep(40);
    EXPECT_EQ(Timer::s_slept - before, 40000u);
    status.sleep(0);
    EXPECT_EQ(Timer::s_slept - before, 40000u);
}

TEST(Status, SleepCountsAVeryLongTime)
{
    Status status;
    const std::uint64_t before = Timer::s_slept;
    status.sleep(4000000000u);
    EXPECT_EQ(Timer::s_slept - before, 4000000000000u);
}

TEST(Status, TakesItsIntervalFromTheTimerWhenItIsMade)
{
    Timer::setStaticIntervals(100);
    const Status status;
    Timer::setStaticIntervals(250);
    EXPECT_EQ(status.getUpdateInterval(), 100u);
}

TEST(Status, UpdatesOncePerInterval)
{
    TestStatus status;
    EXPECT_FALSE(status.checkInterrupt(10));
    status.elapse();
    EXPECT_TRUE(status.checkInterrupt(20));
    EXPECT_FALSE(status.checkInterrupt(30));
    status.elapse();
    EXPECT_TRUE(status.checkInterrupt(40));
    EXPECT_THAT(status.updates, ElementsAre(20, 40));
}

TEST(Status, IsNotDueBeforeTheIntervalIsOver)
{
    TestStatus status;
    status.setUpdateInterval(100000);
    status.sleep(50000);
    EXPECT_FALSE(status.checkInterrupt(10));
    status.sleep(50001);
    EXPECT_TRUE(status.checkInterrupt(20));
    EXPECT_THAT(status.updates, ElementsAre(20));
}

// The calls differ in what they cost, so that the check has to follow the processor time and not their number.
TEST(Status, FirstCheckAfterTheIntervalOfProcessorTimeIsDue)
{
    constexpr std::clock_t interval = 10 * CLOCKS_PER_SEC / 1000;
    std::clock_t beforeUpdate = std::clock();
    TestStatus status;
    status.setUpdateInterval(10);
    std::clock_t afterUpdate = std::clock();
    for (unsigned int checks = 0; status.updates.size() < 10; ++checks)
    {
        const std::clock_t before = std::clock();
        const bool isDue = status.checkInterrupt(10);
        const std::clock_t after = std::clock();
        if (isDue)
        {
            ASSERT_GT(after - beforeUpdate, interval);
            beforeUpdate = before;
            afterUpdate = after;
            continue;
        }
        ASSERT_LE(before - afterUpdate, interval);
        while (std::clock() < after + checks % 1000)
            ;
    }
}

TEST(Status, NewIntervalCountsFromTheLastUpdate)
{
    TestStatus status;
    status.setUpdateInterval(100000);
    status.sleep(60000);
    EXPECT_FALSE(status.checkInterrupt(10));
    status.setUpdateInterval(50000);
    EXPECT_EQ(status.getUpdateInterval(), 50000u);
    EXPECT_TRUE(status.checkInterrupt(20));
}

TEST(Status, IntervalOfZeroMakesAnyElapsedTimeDue)
{
    TestStatus status;
    status.setUpdateInterval(0);
    status.elapse();
    EXPECT_TRUE(status.checkInterrupt(10));
    EXPECT_THAT(status.updates, ElementsAre(10));
}

TEST(Status, SettingTheSameIntervalChangesNothing)
{
    TestStatus status;
    status.setUpdateInterval(250);
    EXPECT_EQ(status.getUpdateInterval(), 250u);
    status.elapse();
    EXPECT_TRUE(status.checkInterrupt(10));
}

TEST(Status, IntervalOfZeroAtItsBeginningIsKept)
{
    Timer::setStaticIntervals(0);
    TestStatus status;
    Timer::setStaticIntervals(250);
    EXPECT_EQ(status.getUpdateInterval(), 0u);
    status.elapse();
    EXPECT_TRUE(status.checkInterrupt(10));
}

// The nearest number of single precision is 129 ms more.
TEST(Status, TicksOfTheIntervalAreRoundedToSinglePrecision)
{
    TestStatus status;
    status.setUpdateInterval(4294967167u);
    status.sleep(4294967167u);
    status.sleep(1);
    EXPECT_FALSE(status.checkInterrupt(10));
    status.sleep(200);
    EXPECT_TRUE(status.checkInterrupt(20));
}

TEST(Status, UpdateStartsTheIntervalAnewAtItsEnd)
{
    TestStatus status;
    status.onUpdate = [&](int) { status.elapse(); };
    status.elapse();
    EXPECT_TRUE(status.checkInterrupt(10));
    EXPECT_FALSE(status.checkInterrupt(20));
    EXPECT_THAT(status.updates, ElementsAre(10));
}

TEST(Status, StateWithoutProgressUpdatesNothingButStartsTheIntervalAnew)
{
    TestStatus status;
    status.setState(Status::NoProgress);
    status.elapse();
    EXPECT_TRUE(status.checkInterrupt(10));
    EXPECT_FALSE(status.checkInterrupt(20));
    EXPECT_THAT(status.updates, IsEmpty());
}

TEST(Status, StateWithoutProgressIsInterruptedAllTheSame)
{
    TestStatus status;
    status.setState(Status::NoProgress);
    status.setInterrupted();
    EXPECT_THROW(status.checkInterrupt(10), Interrupted);
}

TEST(Status, OtherStatesOfTheApplicationShowProgress)
{
    TestStatus status;
    for (const unsigned int state : {0u, 1u, 3u, 17u})
    {
        status.setState(static_cast<Status::ApplicationState>(state));
        status.elapse();
        status.checkInterrupt(static_cast<int>(state));
    }
    EXPECT_THAT(status.updates, ElementsAre(0, 1, 3, 17));
}

TEST(Status, CheckInsideAnUpdateIsDueButDoesNotUpdateAgain)
{
    TestStatus status;
    bool wasDue = false;
    status.onUpdate = [&](int)
    {
        status.elapse();
        wasDue = status.checkInterrupt(50);
    };
    status.elapse();
    status.checkInterrupt(10);
    EXPECT_TRUE(wasDue);
    EXPECT_THAT(status.updates, ElementsAre(10));
}

TEST(Status, ThrowingUpdatePassesThroughAndLeavesTheNextOneDue)
{
    TestStatus status;
    status.onUpdate = [](int percent)
    {
        if (percent == 10)
            throw std::runtime_error("window closed");
    };
    status.elapse();
    EXPECT_THROW(status.checkInterrupt(10), std::runtime_error);
    EXPECT_TRUE(status.checkInterrupt(20));
    EXPECT_THAT(status.updates, ElementsAre(10, 20));
}

TEST(Status, StopPressedDuringAnUpdateIsSeenByTheSameCheck)
{
    TestStatus status;
    status.interruptAt(2);
    status.elapse();
    EXPECT_TRUE(status.checkInterrupt(10));
    status.elapse();
    EXPECT_THROW(status.checkInterrupt(20), Interrupted);
}

TEST(Status, InterruptThrowsOnEveryCheckUntilItIsReset)
{
    TestStatus status;
    status.setInterrupted();
    EXPECT_THROW(status.checkInterrupt(10), Interrupted);
    EXPECT_THROW(status.checkInterrupt(20), Interrupted);
    EXPECT_TRUE(status.isInterrupted());
    status.resetInterrupt();
    EXPECT_FALSE(status.isInterrupted());
    EXPECT_FALSE(status.checkInterrupt(30));
}

TEST(Status, ProgressIsReportedWithoutInterruptTest)
{
    TestStatus status;
    status.setInterrupted();
    EXPECT_FALSE(status.updateProgress(10));
    status.elapse();
    EXPECT_TRUE(status.updateProgress(20));
    EXPECT_THAT(status.updates, ElementsAre(20));
}

TEST(Status, InterruptIsAnnouncedToItsObservers)
{
    Status status;
    StopButton button;
    button.observe(status);
    status.setInterrupted();
    EXPECT_EQ(button.count, 1);
    EXPECT_TRUE(button.wasInterrupted);
    status.resetInterrupt();
    EXPECT_EQ(button.count, 1);
}

TEST(Status, HeldInterruptSurvivesTheReset)
{
    TestStatus status;
    status.hold();
    status.setInterrupted();
    status.resetInterrupt();
    EXPECT_TRUE(status.isInterrupted());
}

TEST(Status, ResettingAllInterruptsReleasesTheHold)
{
    TestStatus status;
    status.hold();
    status.setInterrupted();
    status.resetInterrupts();
    EXPECT_FALSE(status.isInterrupted());
    status.setInterrupted();
    status.resetInterrupt();
    EXPECT_FALSE(status.isInterrupted());
}
