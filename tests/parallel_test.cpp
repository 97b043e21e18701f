// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#include <kel/parallel.h>

#include "support/catalogue.h"
#include "support/installed.h"
#include "support/testlog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ctime>
#include <limits>
#include <optional>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>

namespace
{
using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;

struct ParallelTest : testing::Test
{
    // Each case leaves the settings of the process as it found them.
    ~ParallelTest() override
    {
        parallel.setThreadCount(1);
        parallel.setChunkSize(1000);
        parallel.setShowDiagnostics(false);
    }

    Parallel& parallel = *Parallel::getSingleton();
};

struct ParallelInfoTest : ParallelTest
{
    ParallelInfoTest() { parallel.setShowDiagnostics(true); }

    /// The messages logged since the last call, which all are plain information.
    std::vector<std::string> takeLines()
    {
        std::vector<std::string> lines;
        for (const auto& [type, text] : std::exchange(log->messages, {}))
        {
            EXPECT_EQ(type, Message::Info);
            lines.push_back(text);
        }
        return lines;
    }

    static std::string getAddress(const Parallel::Info& info)
    {
        std::ostringstream address;
        address << &info;
        return address.str();
    }

    static double getDuration(const std::string& endLine)
    {
        std::smatch match;
        EXPECT_TRUE(std::regex_search(endLine, match, std::regex(", Duration: ([-+.e0-9]+)s$"))) << endLine;
        return std::stod(match[1]);
    }

    /// Uses up processor time, so that a duration since the start of the process is more than one since now.
    static void burn(double seconds)
    {
        const std::clock_t end = std::clock() + static_cast<std::clock_t>(seconds * CLOCKS_PER_SEC);
        while (std::clock() < end)
            continue;
    }

    Installed<TestLog> log;
};
} // namespace

TEST_F(ParallelTest, ThereIsOneSetOfSettings)
{
    EXPECT_EQ(Parallel::getSingleton(), &parallel);
}

TEST(Parallel, OtherSettingsStartWithTheDefaults)
{
    Parallel other;
    EXPECT_EQ(other.getThreadCount(), 1u);
    other.setThreadCount(8);
    EXPECT_EQ(other.setThreads(2500, 8), 3u);
    EXPECT_EQ(Parallel::getSingleton()->getThreadCount(), 1u);
}

TEST_F(ParallelTest, OffersOneThreadAndLeadsTheRun)
{
    EXPECT_EQ(parallel.getMaxThreadCount(), 1u);
    EXPECT_EQ(parallel.getThreadCount(), 1u);
    EXPECT_TRUE(parallel.isMaster());
    parallel.setThreadCount(8);
    EXPECT_EQ(parallel.getMaxThreadCount(), 1u);
    EXPECT_EQ(parallel.getThreadCount(), 8u);
}

TEST_F(ParallelTest, EveryTaskGetsOneThreadAtFirst)
{
    for (const unsigned int taskSize : {0u, 400u, 2500u, 1000000u})
        EXPECT_EQ(parallel.setThreads(taskSize, 8), 1u) << taskSize;
}

TEST_F(ParallelTest, CountsChunksRoundedHalfUpWithinTheBounds)
{
    struct Row
    {
        const char* name;
        unsigned int threadCount;
        unsigned int chunkSize;
        unsigned int taskSize;
        unsigned int maxThreads;
        unsigned int threads;
    };
    const unsigned int largest = std::numeric_limits<unsigned int>::max();
    const Row rows[] = {
        {"less than half a chunk", 8, 1000, 400, 8, 1},
        {"just below a half", 8, 1000, 1499, 8, 1},
        {"a half", 8, 1000, 1500, 8, 2},
        {"rounded down", 8, 1000, 2400, 8, 2},
        {"rounded up", 8, 1000, 2500, 8, 3},
        {"no work", 8, 1000, 0, 8, 1},
        {"bounded by the user", 4, 1000, 100000, 8, 4},
        {"bounded by the caller", 8, 1000, 100000, 2, 2},
        {"caller wants none", 8, 1000, 100000, 0, 0},
        {"user allows none", 0, 1000, 0, 8, 0},
        {"other chunk size", 8, 10, 45, 8, 5},
        {"largest task", 8, 1, largest, 8, 8},
        {"largest numbers", largest, 1, largest, largest, largest},
    };
    for (const Row& row : rows)
    {
        parallel.setThreadCount(row.threadCount);
        parallel.setChunkSize(row.chunkSize);
        EXPECT_EQ(parallel.setThreads(row.taskSize, row.maxThreads), row.threads) << row.name;
        EXPECT_EQ(parallel.getThreads(row.taskSize, row.maxThreads), row.threads) << row.name;
        EXPECT_EQ(parallel.getThreadCount(), row.threadCount) << row.name;
    }
}

TEST_F(ParallelInfoTest, LogsNothingUnlessDiagnosticsAreShown)
{
    parallel.setShowDiagnostics(false);
    {
        Parallel::Info info("Assemble", 2500, 8);
        EXPECT_FALSE(info.report(2, 2500));
        info.restartTimer();
    }
    EXPECT_THAT(takeLines(), IsEmpty());
}

TEST_F(ParallelInfoTest, LogsBeginAndEndUnderItsAddress)
{
    std::optional<Parallel::Info> info(std::in_place, "Assemble");
    const std::string address = getAddress(*info);
    EXPECT_THAT(takeLines(), ElementsAre("Thread::Info " + address + ", Task Begin: Assemble"));
    info.reset();
    EXPECT_THAT(takeLines(),
                ElementsAre(MatchesRegex("Thread::Info " + address + ", Task End, Duration: [-+.e0-9]+s")));
}

TEST_F(ParallelInfoTest, LogsThreadsAndTaskSizeOnRequest)
{
    Parallel::Info info("Assemble");
    takeLines();
    EXPECT_TRUE(info.report(4, 4321));
    EXPECT_THAT(takeLines(), ElementsAre("Thread::Info " + getAddress(info) + ", Threads: 4, Task Size: 4321"));
}

TEST_F(ParallelInfoTest, ReportsTheThreadsOfATaskWhenItIsMade)
{
    parallel.setThreadCount(8);
    const Parallel::Info info("Assemble", 2500, 8);
    EXPECT_THAT(takeLines(), ElementsAre("Thread::Info " + getAddress(info) + ", Task Begin: Assemble",
                                         "Thread::Info " + getAddress(info) + ", Threads: 3, Task Size: 2500"));
    EXPECT_EQ(info.getThreadCount(), 8u);
}

TEST_F(ParallelInfoTest, LinesAreTranslatedBeforeTheyAreFilled)
{
    const Catalogue catalogue({{"Thread::Info %1, Task Begin: %2", "%2 beginnt (%1)"},
                               {"Thread::Info %1, Threads: %2, Task Size: %3", "%2 Threads, Umfang %3"},
                               {"Thread::Info %1, Task End, Duration: %2s", "Ende nach %2 Sekunden"}});
    {
        const Parallel::Info info("Assemble", 2500, 8);
    }
    EXPECT_THAT(takeLines(), ElementsAre(MatchesRegex("Assemble beginnt \\(0x[0-9a-f]+\\)"), "1 Threads, Umfang 2500",
                                         MatchesRegex("Ende nach [-+.e0-9]+ Sekunden")));
}

TEST_F(ParallelInfoTest, OnlyTheOutermostIsActive)
{
    {
        const Parallel::Info outer("Outer");
        {
            Parallel::Info inner("Inner", 2500, 8);
            EXPECT_FALSE(inner.report(1, 1));
        }
        EXPECT_EQ(takeLines().size(), 1u);
    }
    EXPECT_EQ(takeLines().size(), 1u);
}

TEST_F(ParallelInfoTest, NextOneIsActiveAgain)
{
    for (const char* name : {"First", "Second"})
    {
        takeLines();
        const Parallel::Info info(name);
        EXPECT_THAT(takeLines(), ElementsAre("Thread::Info " + getAddress(info) + ", Task Begin: " + name));
    }
}

TEST_F(ParallelInfoTest, StaysActiveWhenDiagnosticsAreSwitchedOff)
{
    {
        const Parallel::Info info("Assemble");
        parallel.setShowDiagnostics(false);
    }
    EXPECT_EQ(takeLines().size(), 2u);
}

TEST_F(ParallelInfoTest, DurationCountsFromTheStartOfTheProcessUntilTheTimerIsRestarted)
{
    burn(0.01);
    const double sinceStart = static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
    {
        const Parallel::Info info("Never restarted");
    }
    EXPECT_GE(getDuration(takeLines().back()), sinceStart * 0.999);
    {
        Parallel::Info info("Restarted");
        info.restartTimer();
    }
    EXPECT_LT(getDuration(takeLines().back()), sinceStart);
}

TEST_F(ParallelInfoTest, ReportRestartsTheTimer)
{
    burn(0.01);
    const double sinceStart = static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
    {
        const Parallel::Info info("Assemble", 2500, 8);
    }
    EXPECT_LT(getDuration(takeLines().back()), sinceStart);
}

TEST_F(ParallelInfoTest, ThrowingLogDoesNotLeaveADeadInfoActive)
{
    log->onAppend = [] { throw std::runtime_error("disk full"); };
    EXPECT_THROW(Parallel::Info("Failing"), std::runtime_error);
    EXPECT_THROW(Parallel::Info("Failing", 2500, 8), std::runtime_error);
    log->onAppend = nullptr;
    takeLines();
    const Parallel::Info info("Next");
    EXPECT_EQ(takeLines().size(), 1u);
}

TEST_F(ParallelInfoTest, ThrowingLogIsIgnoredAtTheEnd)
{
    {
        const Parallel::Info info("Assemble");
        log->onAppend = [] { throw std::runtime_error("disk full"); };
    }
    log->onAppend = nullptr;
    takeLines();
    const Parallel::Info info("Next");
    EXPECT_EQ(takeLines().size(), 1u);
}
