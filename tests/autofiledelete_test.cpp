// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/autofiledelete.h>

#include "support/installed.h"
#include "support/temporarydirectory.h"
#include "support/testplatform.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

class AutoFileDeleteTest : public testing::Test
{
protected:
    Installed<TestPlatform> m_platform;
    TemporaryDirectory m_directory;
    std::string m_path = m_directory.write("scratch.txt", "text");
};

TEST_F(AutoFileDeleteTest, DeletesTheFileQuietlyAtTheEndOfTheScope)
{
    {
        const AutoFileDelete guard{Kel::File(m_path)};
        EXPECT_TRUE(m_directory.has("scratch.txt"));
    }
    EXPECT_FALSE(m_directory.has("scratch.txt"));
    EXPECT_EQ(m_platform->calls, std::vector<std::string>{"deleteFile " + m_path + " true"});
}

TEST_F(AutoFileDeleteTest, ReleasedFileIsReturnedAndStays)
{
    {
        AutoFileDelete guard{Kel::File(m_path)};
        EXPECT_EQ(guard.release().getPath(), Ztring(m_path));
        EXPECT_TRUE(guard.release().empty());
    }
    EXPECT_TRUE(m_directory.has("scratch.txt"));
    EXPECT_TRUE(m_platform->calls.empty());
}

TEST_F(AutoFileDeleteTest, EmptyPathIsLeftAlone)
{
    {
        const AutoFileDelete guard{Kel::File("")};
    }
    EXPECT_TRUE(m_platform->calls.empty());
}

TEST_F(AutoFileDeleteTest, WhatThePlatformThrowsIsDropped)
{
    m_platform->failingCall = "deleteFile";
    {
        const AutoFileDelete guard{Kel::File(m_path)};
    }
    EXPECT_EQ(m_platform->calls.size(), 1u);
    EXPECT_TRUE(m_directory.has("scratch.txt"));
}
