// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/version.h>

#include <kel/reader.h>
#include <kel/versions.h>
#include <kel/writer.h>

#include "support/problem.h"
#include "support/recorder.h"
#include "support/streams.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>

namespace
{
Version make(unsigned major, unsigned minor, unsigned patch)
{
    return Version(major, minor, patch, BulletinKey("Any"));
}

std::string toText(const Version& version)
{
    std::string text;
    version.appendVersion(text);
    return text;
}
} // namespace

TEST(Version, IsZeroUnderItsOwnKeyUnlessToldOtherwise)
{
    const Version version;
    EXPECT_EQ(toText(version), "0.0.0");
    EXPECT_EQ(version.getKey(), BulletinKey("Version"));
    EXPECT_EQ(Version::getStaticKey(), BulletinKey("Version"));
}

TEST(Version, HoldsThreeNumbersUnderTheKeyOfTheComponent)
{
    const Version version(1, 2, 4294967295u, BulletinKey("Solver"));
    EXPECT_EQ(version.getMajor(), 1u);
    EXPECT_EQ(version.getMinor(), 2u);
    EXPECT_EQ(version.getPatch(), 4294967295u);
    EXPECT_EQ(version.getKey(), BulletinKey("Solver"));
}

TEST(Version, ComparesNumbersAndNotKeys)
{
    EXPECT_TRUE(make(1, 2, 3) == Version(1, 2, 3, BulletinKey("Other")));
    EXPECT_FALSE(make(1, 2, 3) != Version(1, 2, 3, BulletinKey("Other")));
    EXPECT_TRUE(make(1, 2, 3) != make(1, 2, 4));
    EXPECT_TRUE(make(1, 2, 3) != make(1, 3, 3));
    EXPECT_TRUE(make(1, 2, 3) != make(2, 2, 3));
}

TEST(Version, OrdersByMajorThenMinorThenPatch)
{
    EXPECT_TRUE(make(1, 9, 9) < make(2, 0, 0));
    EXPECT_TRUE(make(1, 2, 9) < make(1, 3, 0));
    EXPECT_TRUE(make(1, 2, 3) < make(1, 2, 4));
    EXPECT_FALSE(make(1, 2, 3) < make(1, 2, 3));
    EXPECT_FALSE(make(2, 0, 0) < make(1, 9, 9));
}

TEST(Version, CopyHasTheSameKeyAndAssignmentKeepsTheKey)
{
    const Version version(1, 2, 3, BulletinKey("Solver"));
    EXPECT_EQ(Version(version).getKey(), BulletinKey("Solver"));
    Version assigned(0, 0, 0, BulletinKey("Mesher"));
    assigned = version;
    EXPECT_EQ(toText(assigned), "1.2.3");
    EXPECT_EQ(assigned.getKey(), BulletinKey("Mesher"));
}

TEST(Version, AppendsItsNumbers)
{
    std::string text = "v";
    make(5, 1, 3).appendVersion(text);
    EXPECT_EQ(text, "v5.1.3");
}

TEST(Version, AppendsItselfAsAnArgumentOfAWebRequest)
{
    std::string text = "?";
    Version(5, 1, 3, BulletinKey("Solver")).appendAsUrlArg(text);
    Version::appendAsUrlArg(text, "os", "linux");
    EXPECT_EQ(text, "?Solver:5.1.3;os:linux;");
}

TEST(Version, CreateRegistersTheVersionOfAComponent)
{
    const BulletinKey key("Created");
    Version* const created = Version::create(1, 2, 3, key);
    EXPECT_EQ(toText(*created), "1.2.3");
    EXPECT_EQ(Versions::getSingleton().getPtr(key), created);
}

TEST(Version, CreateForAKnownComponentReturnsTheFirst)
{
    const BulletinKey key("CreatedTwice");
    Version* const first = Version::create(1, 2, 3, key);
    EXPECT_EQ(Version::create(4, 5, 6, key), first);
    EXPECT_EQ(toText(*first), "1.2.3");
}

TEST(Version, CreateWhereAnotherBulletinHoldsTheKeyFails)
{
    const BulletinKey key("NoVersion");
    Versions::getSingleton().add(new Bulletin(key));
    EXPECT_ASSERTION(Version::create(1, 2, 3, key), "!hasKey(key)");
    Bulletin::destroy(Versions::getSingleton().removeIgnoreKey(key), false);
}

TEST(Version, CreatedVersionStaysRegisteredWhenAnObserverThrows)
{
    const BulletinKey key("Observed");
    Recorder recorder([](const Heard&) { Problem::throwProblem("observer"); });
    recorder.observe(Versions::getSingleton());
    EXPECT_PROBLEM(Version::create(1, 2, 3, key), "observer");
    EXPECT_TRUE(Versions::getSingleton().hasKey(key));
}

TEST(Version, CreatedVersionThatAnObserverDestroysBeforeItThrowsIsDestroyedOnce)
{
    const BulletinKey key("Fleeting");
    Recorder recorder;
    recorder.during = [&](const Heard& message)
    {
        if (message.operation != "added")
            return;
        Bulletin::destroy(Versions::getSingleton().removeByKey(key), false);
        Problem::throwProblem("observer");
    };
    recorder.observe(Versions::getSingleton());
    EXPECT_PROBLEM(Version::create(1, 2, 3, key), "observer");
    EXPECT_FALSE(Versions::getSingleton().hasKey(key));
}

TEST(Version, WritesKeyAndNumbers)
{
    std::ostringstream out;
    Writer writer(out, "Test", false);
    out.str("");
    Version(1, 20, 4294967295u, BulletinKey("Solver")).write(writer);
    EXPECT_EQ(out.str(), "6 Solver 1 20 4294967295 ");
}

TEST(Version, ReadsKeyAndNumbers)
{
    std::istringstream in(getPreamble() + "6 Solver 1 20 4294967295 ");
    Reader reader(in, "Test", false);
    Version version;
    version.read(reader);
    EXPECT_EQ(version.getKey(), BulletinKey("Solver"));
    EXPECT_EQ(toText(version), "1.20.4294967295");
}

TEST(Version, ReadingFailsWhereTheStreamEnds)
{
    const std::string whole = "6 Solver 1 20 3 ";
    for (std::size_t size = 1; size < whole.size(); ++size)
    {
        std::istringstream in(getPreamble() + whole.substr(0, size));
        Reader reader(in, "Test", false);
        Version version;
        EXPECT_THROW(version.read(reader), Problem) << size;
    }
}

TEST(Version, GetFromFindsTheVersionRecordedInAStream)
{
    std::istringstream in("4 Test \n2 6 Solver 1 2 3 10 KelVersion 5 0 0 \n");
    Reader reader(in, "Test", false);
    EXPECT_EQ(toText(*Version::getFrom(reader, BulletinKey("Solver"))), "1.2.3");
}

TEST(Version, GetFromGivesZeroWhereNothingIsRecorded)
{
    std::istringstream in(getPreamble());
    Reader reader(in, "Test", false);
    const Version* const version = Version::getFrom(reader, BulletinKey("Unrecorded"));
    ASSERT_TRUE(version);
    EXPECT_EQ(toText(*version), "0.0.0");
    EXPECT_EQ(version->getKey(), Version::getStaticKey());
    EXPECT_EQ(Version::getFrom(reader, BulletinKey("AlsoUnrecorded")), version);
}

TEST(Version, GetFromGivesZeroWithoutAVersionTable)
{
    std::istringstream in(getPreamble());
    Reader reader(in, "Test", false);
    Bulletin::destroy(reader.removeByKey(Versions::getStaticKey()), false);
    EXPECT_EQ(toText(*Version::getFrom(reader, BulletinKey("AppVersion"))), "0.0.0");
}
