// SPDX-License-Identifier: MIT
// libkel: Application services
#include <kel/platform.h>

#include <kel/timer.h>

#include "support/installed.h"
#include "support/testplatform.h"
#include "support/testtask.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using testing::ElementsAre;
} // namespace

TEST(Platform, IsNullUntilTheApplicationInstallsOne)
{
    EXPECT_EQ(Platform::getSingleton(), nullptr);
    {
        const Installed<TestPlatform> platform;
        EXPECT_EQ(Platform::getSingleton(), &*platform);
    }
    EXPECT_EQ(Platform::getSingleton(), nullptr);
}

TEST(Platform, CarriesItsKey)
{
    EXPECT_EQ(TestPlatform().getKey(), Platform::getStaticKey());
    EXPECT_EQ(Platform::getStaticKey().getName(), "Platform");
}

TEST(Platform, RunsACommandWithTheArgumentsAndTheFileThatThereAre)
{
    struct Row
    {
        const char* name;
        const char* arguments;
        const char* file;
        bool flag1;
        bool flag2;
        const char* call;
    };
    const Row rows[] = {
        {"command alone", "", "", false, false, "execute prog false false"},
        {"arguments", "-a -b", "", true, false, "execute prog -a -b true false"},
        {"file", "", "my file.x", false, true, "execute prog \"my file.x\" false true"},
        {"both", "-a", "x", false, false, "execute prog -a \"x\" false false"},
    };
    for (const Row& row : rows)
    {
        TestPlatform platform;
        platform.run("prog", row.arguments, Kel::File(row.file), row.flag1, row.flag2);
        EXPECT_THAT(platform.calls, ElementsAre(row.call)) << row.name;
    }
}

TEST(Platform, RunsTimersAtTheStaticInterval)
{
    TestPlatform platform;
    TestTask::Journal journal;
    TestTask task(journal, "task");
    platform.startTimer(&task);
    EXPECT_THAT(platform.calls, ElementsAre("startTimer 250"));
    EXPECT_EQ(platform.timerTask, &task);
    Timer::setStaticIntervals(40);
    platform.startTimer(&task);
    Timer::setStaticIntervals(250);
    EXPECT_EQ(platform.calls.back(), "startTimer 40");
}

TEST(Platform, NamesTheWordSizeBehindTheOperatingSystem)
{
    TestPlatform platform;
    EXPECT_EQ(Platform::getArchBit(), 64u);
    EXPECT_EQ(platform.getOsBitName(), "linux64");
    platform.osName = "mac";
    EXPECT_EQ(platform.getOsBitName(), "mac64");
}
