// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/filewriter.h>

#include <kel/branding.h>
#include <kel/file_kel.h>
#include <kel/writer.h>

#include "support/installed.h"
#include "support/persistable.h"
#include "support/problem.h"
#include "support/streams.h"
#include "support/temporarydirectory.h"
#include "support/testplatform.h"
#include "support/teststatus.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <regex>
#include <string>
#include <vector>

class FileWriterTest : public testing::Test
{
protected:
    std::string getTarget() const { return m_directory / "model.x"; }
    std::string getTemporary() const { return getTarget() + ".tmp"; }

    Writer* open() { return m_file->open(Kel::File(getTarget()), false); }

    TemporaryDirectory m_directory;
    Installed<TestPlatform> m_platform;
    std::unique_ptr<FileWriter> m_file = std::make_unique<FileWriter>();
    Node m_root;
};

TEST_F(FileWriterTest, OpenWritesHeaderAndVersionTableToTheTemporaryFile)
{
    Writer* const writer = open();
    ASSERT_TRUE(writer);
    writer->getOut().flush();
    const std::string head = "[0-9]+ Morvane Copyright \\(c\\) Pellwick [0-3][0-9] [A-Z][a-z]{2} [0-9]{4} "
                             "[0-2][0-9]:[0-5][0-9]:[0-6][0-9] \n2 10 (App|Kel)Version .* \n";
    EXPECT_TRUE(std::regex_match(m_directory.read("model.x.tmp"), std::regex(head))) << m_directory.read("model.x.tmp");
    EXPECT_FALSE(m_directory.has("model.x"));
}

TEST_F(FileWriterTest, ReportsProgressWhenAskedTo)
{
    TestStatus status;
    m_file->open(Kel::File(getTarget()), true);
    EXPECT_EQ(status.texts, std::vector<std::string>{"Writing objects"});
}

TEST_F(FileWriterTest, ClosePutsTheFileInThePlaceOfTheOldOne)
{
    m_directory.write("model.x", "old");
    open()->writeObj(&m_root);
    EXPECT_EQ(m_directory.read("model.x"), "old");
    m_file->close();
    const std::string saved = m_directory.read("model.x");
    EXPECT_EQ(saved.substr(saved.rfind("\n0 ")), "\n0 4 Node 0  0 0 0 0 0  0 0 \n");
    EXPECT_FALSE(m_directory.has("model.x.tmp"));
    EXPECT_EQ(m_platform->calls,
              (std::vector<std::string>{"deleteFile " + getTarget() + " false",
                                        "moveFile " + getTemporary() + " " + getTarget() + " false"}));
}

TEST_F(FileWriterTest, CloseWithoutAnOldFileDeletesNothing)
{
    open()->writeObj(&m_root);
    m_file->close();
    EXPECT_TRUE(m_directory.has("model.x"));
    EXPECT_EQ(m_platform->calls, std::vector<std::string>{"moveFile " + getTemporary() + " " + getTarget() + " false"});
}

TEST_F(FileWriterTest, DestructionAfterCloseDeletesNothing)
{
    open();
    m_file->close();
    m_platform->calls.clear();
    m_file.reset();
    EXPECT_TRUE(m_platform->calls.empty());
    EXPECT_TRUE(m_directory.has("model.x"));
}

TEST_F(FileWriterTest, DestructionWithoutCloseDeletesTheTemporaryFileQuietlyAndKeepsTheOldOne)
{
    m_directory.write("model.x", "old");
    open();
    m_file.reset();
    EXPECT_FALSE(m_directory.has("model.x.tmp"));
    EXPECT_EQ(m_directory.read("model.x"), "old");
    EXPECT_EQ(m_platform->calls, std::vector<std::string>{"deleteFile " + getTemporary() + " true"});
}

TEST_F(FileWriterTest, DestructionDropsWhatThePlatformThrows)
{
    open();
    m_platform->failingCall = "deleteFile";
    EXPECT_NO_THROW(m_file.reset());
    EXPECT_EQ(m_platform->calls.size(), 1u);
}

TEST_F(FileWriterTest, DestructionWithoutOpenDoesNothing)
{
    m_file.reset();
    EXPECT_TRUE(m_platform->calls.empty());
}

TEST_F(FileWriterTest, DestructionFindsTheTemporaryFileGone)
{
    open();
    std::filesystem::remove(getTemporary());
    m_file.reset();
    EXPECT_TRUE(m_platform->calls.empty());
}

TEST_F(FileWriterTest, SecondOpenFails)
{
    open();
    EXPECT_ASSERTION(open(), "!valid(m_file)");
}

TEST_F(FileWriterTest, CanBeUsedAgainAfterClose)
{
    open();
    m_file->close();
    open()->writeObj(&m_root);
    m_file->close();
    EXPECT_TRUE(m_directory.has("model.x"));
}

TEST_F(FileWriterTest, SaveThatIsAbandonedAfterOneThatWasClosedLeavesNoTemporaryFile)
{
    open()->writeObj(&m_root);
    m_file->close();
    const std::string saved = m_directory.read("model.x");
    open()->writeObj(&m_root);
    m_file.reset();
    EXPECT_FALSE(m_directory.has("model.x.tmp"));
    EXPECT_EQ(m_directory.read("model.x"), saved);
}

TEST_F(FileWriterTest, CloseWithoutOpenFails)
{
    EXPECT_ASSERTION(m_file->close(), "valid(m_file)");
    open();
    m_file->close();
    EXPECT_ASSERTION(m_file->close(), "valid(m_file)");
}

TEST_F(FileWriterTest, OpenNamesTheTemporaryFileThatItCannotOpenAndIsAsNew)
{
    const std::string target = m_directory / "missing/model.x";
    EXPECT_PROBLEM(m_file->open(Kel::File(target), false), "Failed to open file: '" + target + ".tmp'");
    EXPECT_TRUE(open());
}

TEST_F(FileWriterTest, OpenThatFailsLaterRemovesTheTemporaryFileAndIsAsNew)
{
    // Progress cannot be reported without a Status.
    EXPECT_ASSERTION(m_file->open(Kel::File(getTarget()), true), "valid(s_singleton)");
    EXPECT_FALSE(m_directory.has("model.x.tmp"));
    EXPECT_TRUE(open());
}

TEST_F(FileWriterTest, FailureToDeleteTheOldFileKeepsBothFiles)
{
    m_directory.write("model.x", "old");
    open();
    m_platform->failingCall = "deleteFile";
    EXPECT_PROBLEM(m_file->close(), "failed");
    m_file.reset();
    EXPECT_EQ(m_directory.read("model.x"), "old");
    EXPECT_TRUE(m_directory.has("model.x.tmp"));
}

TEST_F(FileWriterTest, FailureToMoveKeepsTheTemporaryFileForGood)
{
    m_directory.write("model.x", "old");
    open()->writeObj(&m_root);
    m_platform->failingCall = "moveFile";
    EXPECT_PROBLEM(m_file->close(), "failed");
    EXPECT_ASSERTION(open(), "!valid(m_file)");
    m_file.reset();
    EXPECT_FALSE(m_directory.has("model.x"));
    EXPECT_NE(m_directory.read("model.x.tmp").find("4 Node"), std::string::npos);
}

TEST_F(FileWriterTest, CloseCanBeTriedAgain)
{
    open()->writeObj(&m_root);
    m_platform->failingCall = "moveFile";
    EXPECT_PROBLEM(m_file->close(), "failed");
    m_platform->failingCall.clear();
    m_file->close();
    EXPECT_NE(m_directory.read("model.x").find("4 Node"), std::string::npos);
    EXPECT_FALSE(m_directory.has("model.x.tmp"));
}

TEST_F(FileWriterTest, CloseKeepsTheOldFileWhereTheTemporaryOneIsGone)
{
    m_directory.write("model.x", "old");
    open()->writeObj(&m_root);
    std::filesystem::remove(getTemporary());
    EXPECT_PROBLEM(m_file->close(), "Failed to open file: '" + getTemporary() + "'");
    EXPECT_EQ(m_directory.read("model.x"), "old");
    EXPECT_TRUE(m_platform->calls.empty());
}
