// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/kelversion.h>

#include <kel/bulletinkey.h>
#include <kel/reader.h>
#include <kel/version.h>
#include <kel/versions.h>

#include "support/problem.h"
#include "support/streams.h"

#include <gtest/gtest.h>

#include <sstream>
#include <utility>

namespace
{
constexpr const char* incompatible =
    "Incompatible old version.  Update to latest version using Help->Check for Updates";

bool check(unsigned major, unsigned minor, unsigned patch)
{
    return KelVersion::checkCompiledVersion(Version(major, minor, patch, BulletinKey("Module")));
}
} // namespace

TEST(KelVersion, HasTheKeyOfItsName)
{
    EXPECT_EQ(KelVersion::getStaticKey(), BulletinKey("KelVersion"));
}

TEST(KelVersion, CurrentIsTheVersionOfTheLibrary)
{
    const Version* const current = KelVersion::getCurrent();
    EXPECT_EQ(current, KelVersion::s_currentVersion);
    EXPECT_EQ(current, Versions::getSingleton().getPtr(KelVersion::getStaticKey()));
    EXPECT_TRUE(*current == Version(5, 1, 3, KelVersion::getStaticKey()));
}

TEST(KelVersion, FailsWhileThereIsNoCurrentOne)
{
    Version* const current = std::exchange(KelVersion::s_currentVersion, nullptr);
    EXPECT_ASSERTION(KelVersion::getCurrent(), "valid(s_currentVersion)");
    EXPECT_ASSERTION(check(5, 1, 3), "valid(s_currentVersion)");
    KelVersion::s_currentVersion = current;
}

TEST(KelVersion, GetFromTellsWhatTheStreamRecords)
{
    std::istringstream in("4 Test \n1 10 KelVersion 5 1 2 \n");
    Reader reader(in, "Test", false);
    EXPECT_TRUE(*KelVersion::getFrom(reader) == Version(5, 1, 2, BulletinKey("Any")));
}

TEST(KelVersion, ModuleBuiltWithThisVersionIsAccepted)
{
    EXPECT_FALSE(check(5, 1, 3));
}

TEST(KelVersion, ModuleBuiltWithAnyOtherVersionIsRefused)
{
    EXPECT_PROBLEM(check(5, 1, 2), incompatible);
    EXPECT_PROBLEM(check(5, 1, 4), incompatible);
    EXPECT_PROBLEM(check(5, 0, 3), incompatible);
    EXPECT_PROBLEM(check(6, 1, 3), incompatible);
}
