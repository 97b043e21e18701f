// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/appversion.h>

#include <kel/bulletinkey.h>
#include <kel/reader.h>
#include <kel/version.h>
#include <kel/versions.h>

#include "support/problem.h"
#include "support/streams.h"

#include <gtest/gtest.h>

#include <sstream>
#include <utility>

TEST(AppVersion, HasTheKeyOfItsName)
{
    EXPECT_EQ(AppVersion::getStaticKey(), BulletinKey("AppVersion"));
}

TEST(AppVersion, CurrentIsTheVersionOfTheProcess)
{
    const Version* const current = AppVersion::getCurrent();
    EXPECT_EQ(current, AppVersion::s_currentVersion);
    EXPECT_EQ(current, Versions::getSingleton().getPtr(AppVersion::getStaticKey()));
    EXPECT_TRUE(*current == Version(5, 0, 0, AppVersion::getStaticKey()));
}

TEST(AppVersion, CurrentFailsWhileThereIsNone)
{
    Version* const current = std::exchange(AppVersion::s_currentVersion, nullptr);
    EXPECT_ASSERTION(AppVersion::getCurrent(), "valid(s_currentVersion)");
    AppVersion::s_currentVersion = current;
}

TEST(AppVersion, GetFromTellsWhatTheStreamRecords)
{
    std::istringstream in("4 Test \n1 10 AppVersion 4 9 9 \n");
    Reader reader(in, "Test", false);
    EXPECT_TRUE(*AppVersion::getFrom(reader) == Version(4, 9, 9, BulletinKey("Any")));
}

TEST(AppVersion, GetFromIsZeroWhereTheStreamRecordsNone)
{
    std::istringstream in("4 Test \n0 \n");
    Reader reader(in, "Test", false);
    ASSERT_TRUE(AppVersion::getFrom(reader));
    EXPECT_TRUE(*AppVersion::getFrom(reader) == Version());
}
