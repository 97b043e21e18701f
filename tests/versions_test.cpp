// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/versions.h>

#include <kel/appversion.h>
#include <kel/kelversion.h>
#include <kel/reader.h>
#include <kel/version.h>
#include <kel/writer.h>

#include "support/problem.h"
#include "support/streams.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>

namespace
{
constexpr const char* newer = "File written by newer version.  Update to latest version using Help->Check for Updates";

std::string getText(const Versions& versions, const BulletinKey& key)
{
    const auto* const version = dynamic_cast<const Version*>(versions.getPtr(key));
    std::string text;
    if (version)
        version->appendVersion(text);
    return text;
}

std::string write(Versions& versions)
{
    std::ostringstream out;
    Writer writer(out, "Test", false);
    out.str("");
    versions.write(writer);
    return out.str();
}

/// A reader of a stream with the version table.
struct TableStream
{
    explicit TableStream(const std::string& table) : in("4 Test \n" + table + "\n") {}

    Versions& read()
    {
        reader = std::make_unique<Reader>(in, "Test", false);
        return *reader->getPtr<Versions>();
    }

    std::istringstream in;
    std::unique_ptr<Reader> reader;
};

Versions& getProcess()
{
    return Versions::getSingleton();
}
} // namespace

TEST(Versions, HaveTheKeyOfTheirName)
{
    EXPECT_EQ(Versions::getStaticKey(), BulletinKey("Versions"));
    EXPECT_EQ(Versions().getKey(), Versions::getStaticKey());
}

TEST(Versions, ProcessHasItsApplicationAndTheLibrary)
{
    EXPECT_EQ(&Versions::getSingleton(), &getProcess());
    EXPECT_EQ(getText(getProcess(), BulletinKey("AppVersion")), "5.0.0");
    EXPECT_EQ(getText(getProcess(), BulletinKey("KelVersion")), "5.1.3");
}

TEST(Versions, HaveModulesWhenThereIsMoreThanOneVersion)
{
    Versions versions;
    EXPECT_FALSE(versions.hasModules());
    versions.add(new Version(1, 0, 0, BulletinKey("First")));
    EXPECT_FALSE(versions.hasModules());
    versions.add(new Version(1, 0, 0, BulletinKey("Second")));
    EXPECT_TRUE(versions.hasModules());
}

TEST(Versions, AreWrittenWithTheirCountInKeyOrder)
{
    const BulletinKey first("VersionA");
    const BulletinKey second("VersionB");
    Versions versions;
    EXPECT_EQ(write(versions), "0 ");
    versions.add(new Version(4, 5, 6, second));
    versions.add(new Version(1, 2, 3, first));
    EXPECT_EQ(write(versions), "2 8 VersionA 1 2 3 8 VersionB 4 5 6 ");
}

TEST(Versions, WriteLeavesOutTheUseCountOfTheTable)
{
    Versions versions;
    versions.incrementUse();
    EXPECT_EQ(write(versions), "0 ");
}

TEST(Versions, AreReadFromTheStream)
{
    TableStream stream("3 10 AppVersion 4 9 9 6 Module 1 2 3 10 KelVersion 5 1 2 ");
    const Versions& versions = stream.read();
    EXPECT_EQ(versions.size(), 3u);
    EXPECT_EQ(getText(versions, BulletinKey("AppVersion")), "4.9.9");
    EXPECT_EQ(getText(versions, BulletinKey("Module")), "1.2.3");
    EXPECT_EQ(getText(versions, BulletinKey("KelVersion")), "5.1.2");
}

TEST(Versions, StreamOfTheSameOrAnOlderVersionIsAccepted)
{
    for (const char* const version : {"5 0 0", "4 9 9", "4 99 0", "0 0 0"})
        EXPECT_NO_THROW(TableStream("1 10 AppVersion " + std::string(version) + " ").read()) << version;
}

TEST(Versions, StreamOfANewerVersionIsRefused)
{
    for (const char* const version : {"5 0 1", "5 1 0", "6 0 0"})
        EXPECT_PROBLEM(TableStream("1 10 AppVersion " + std::string(version) + " ").read(), newer);
    EXPECT_PROBLEM(TableStream("2 10 AppVersion 5 0 0 10 KelVersion 5 1 4 ").read(), newer);
}

TEST(Versions, StreamWithAnUnknownComponentIsAccepted)
{
    EXPECT_NO_THROW(TableStream("2 10 AppVersion 5 0 0 11 UnknownPart 99 0 0 ").read());
}

TEST(Versions, StreamWithoutALibraryVersionGetsThatOfItsApplication)
{
    TableStream stream("1 10 AppVersion 4 3 2 ");
    EXPECT_EQ(getText(stream.read(), KelVersion::getStaticKey()), "4.3.2");
}

TEST(Versions, StreamWithoutAnyVersionGetsZeroForTheLibrary)
{
    TableStream stream("0 ");
    const Versions& versions = stream.read();
    EXPECT_EQ(versions.size(), 1u);
    EXPECT_EQ(getText(versions, KelVersion::getStaticKey()), "0.0.0");
}

TEST(Versions, ComponentThatStandsTwiceFailsAtItsKey)
{
    EXPECT_ASSERTION(TableStream("2 6 Module 1 2 3 6 Module 1 2 3 ").read(), "!hasKey(key)");
}

TEST(Versions, CutTableFails)
{
    const std::string whole = "4 Test \n2 10 AppVersion 5 0 0 10 KelVersion 5 1 3 ";
    for (std::size_t size = 1; size < whole.size(); ++size)
    {
        std::istringstream in(whole.substr(0, size));
        EXPECT_THROW(Reader(in, "Test", false), Problem) << size;
    }
}

TEST(Versions, AddKelVersionWhereThereIsOneFails)
{
    Versions versions;
    versions.addKelVersion();
    EXPECT_ASSERTION(versions.addKelVersion(), "!hasKey(kelVersionKey)");
    EXPECT_EQ(versions.size(), 1u);
}

TEST(Versions, AddKelVersionCopiesTheApplicationVersion)
{
    Versions versions;
    versions.add(new Version(1, 2, 3, AppVersion::getStaticKey()));
    versions.addKelVersion();
    EXPECT_EQ(getText(versions, KelVersion::getStaticKey()), "1.2.3");
    EXPECT_EQ(getText(versions, AppVersion::getStaticKey()), "1.2.3");
}
