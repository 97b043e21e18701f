// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/filereader.h>

#include <kel/branding.h>
#include <kel/file_kel.h>
#include <kel/reader.h>

#include "support/persistable.h"
#include "support/problem.h"
#include "support/streams.h"
#include "support/temporarydirectory.h"
#include "support/teststatus.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

class FileReaderTest : public testing::Test
{
protected:
    /// A file with a root of that name.
    std::string makeFile(const std::string& header = "Morvane Copyright (c) Pellwick")
    {
        return m_directory.write("model.x", getPreamble(header) + "0 4 Node 0  0 0 0 0 4 name 0 0 \n");
    }

    PersistableGuard m_guard;
    TestStatus m_status;
    TemporaryDirectory m_directory;
    FileReader m_file;
};

TEST_F(FileReaderTest, OpensAFileThatNamesTheProduct)
{
    Reader* const reader = m_file.open(Kel::File(makeFile()), false);
    ASSERT_TRUE(reader);
    EXPECT_EQ(dynamic_cast<Node*>(reader->perform())->name, "name");
    EXPECT_TRUE(m_status.texts.empty());
}

TEST_F(FileReaderTest, ReportsProgressWhenAskedTo)
{
    m_file.open(Kel::File(makeFile()), true)->perform();
    EXPECT_EQ(m_status.texts, (std::vector<std::string>{"Reading objects", "Restore objects"}));
}

TEST_F(FileReaderTest, RefusesAFileOfAnotherProduct)
{
    EXPECT_PROBLEM(m_file.open(Kel::File(makeFile("Other")), false), "Expecting: Morvane");
}

TEST_F(FileReaderTest, AcceptsAFileWithTheMagicWord)
{
    EXPECT_TRUE(m_file.open(Kel::File(makeFile("Other Velkor")), false));
}

TEST_F(FileReaderTest, ReportsAFileThatCannotBeOpened)
{
    const std::string path = m_directory / "missing.x";
    EXPECT_PROBLEM(m_file.open(Kel::File(path), false), "Failed to open file: '" + path + "'");
}

TEST_F(FileReaderTest, SecondOpenFails)
{
    const Kel::File file(makeFile());
    m_file.open(file, false);
    EXPECT_ASSERTION(m_file.open(file, false), "!valid(m_in)");
}

TEST_F(FileReaderTest, IsAsNewAfterAFailure)
{
    EXPECT_THROW(m_file.open(Kel::File(m_directory / "missing.x"), false), Problem);
    EXPECT_THROW(m_file.open(Kel::File(makeFile("Other")), false), Problem);
    EXPECT_TRUE(m_file.open(Kel::File(makeFile()), false));
}

TEST_F(FileReaderTest, ReadsBinary)
{
    const std::string path = m_directory.write("binary.x", getPreamble("Morvane") + "0 8 Scripted 3 \r\n\x1a \n");
    Scripted::onRead = [](Scripted&, Reader& reader)
    {
        std::string text;
        reader.readString(text);
        EXPECT_EQ(text, "\r\n\x1a");
    };
    m_file.open(Kel::File(path), false)->perform();
    Scripted::onRead = nullptr;
}
