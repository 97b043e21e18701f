// SPDX-License-Identifier: MIT
// libkel: Application services
#include <kel/stdouterr.h>

#include "support/installed.h"
#include "support/problem.h"
#include "support/temporarydirectory.h"
#include "support/testplatform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

namespace
{
using testing::ElementsAre;
using testing::IsEmpty;

/// There are systems where a file that is open cannot be deleted.
class ParticularPlatform : public TestPlatform
{
public:
    void deleteFile(const Kel::File& file, bool flag) override
    {
        std::error_code error;
        for (const auto& descriptor : std::filesystem::directory_iterator("/proc/self/fd"))
            EXPECT_NE(std::filesystem::read_symlink(descriptor, error), file.getPath().toUtf8()) << "is open";
        TestPlatform::deleteFile(file, flag);
    }
};

struct StdOutErrTest : testing::Test
{
    /// Reads lines until there are no more.
    static std::vector<std::string> readAll(StdOutErr& output)
    {
        std::vector<std::string> lines;
        for (std::string line; output.getMore(line);)
            lines.push_back(line);
        return lines;
    }

    TemporaryDirectory directory;
    std::string outFile = directory / "out.txt";
    std::string errFile = directory / "err.txt";
    Installed<ParticularPlatform> platform;
};
} // namespace

TEST_F(StdOutErrTest, ReadsTheOutputLineByLine)
{
    directory.write("out.txt", "a\n\n c \nlast");
    directory.write("err.txt", "");
    StdOutErr output(outFile, errFile);
    EXPECT_THAT(readAll(output), ElementsAre("a", "", " c ", "last"));
}

TEST_F(StdOutErrTest, LineIsEmptiedWhenThereIsNoMore)
{
    directory.write("out.txt", "");
    StdOutErr output(outFile, errFile);
    std::string line = "before";
    EXPECT_FALSE(output.getMore(line));
    EXPECT_EQ(line, "");
}

TEST_F(StdOutErrTest, MissingFilesAreNoFailure)
{
    StdOutErr output(outFile, errFile);
    EXPECT_THAT(readAll(output), IsEmpty());
}

TEST_F(StdOutErrTest, TextInTheErrorFileIsThrownBehindTheOutput)
{
    directory.write("out.txt", "a\nb");
    directory.write("err.txt", "boom\n");
    StdOutErr output(outFile, errFile);
    std::string line;
    EXPECT_TRUE(output.getMore(line));
    EXPECT_TRUE(output.getMore(line));
    EXPECT_EQ(line, "b");
    EXPECT_PROBLEM(output.getMore(line), "boom\n");
}

TEST_F(StdOutErrTest, ErrorTextIsThrownWithoutOutputFile)
{
    directory.write("err.txt", "first\n\nsecond");
    StdOutErr output(outFile, errFile);
    std::string line;
    EXPECT_PROBLEM(output.getMore(line), "first\n\nsecond\n");
}

TEST_F(StdOutErrTest, ErrorsAreReadOnce)
{
    directory.write("err.txt", "boom");
    StdOutErr output(outFile, errFile);
    EXPECT_PROBLEM(output.checkError(), "boom\n");
    EXPECT_NO_THROW(output.checkError());
    EXPECT_THAT(readAll(output), IsEmpty());
}

TEST_F(StdOutErrTest, BothFilesAreDeletedAtTheEnd)
{
    directory.write("out.txt", "a\n");
    directory.write("err.txt", "boom\n");
    {
        const StdOutErr output(outFile, errFile);
    }
    EXPECT_THAT(platform->calls, ElementsAre("deleteFile " + outFile + " true", "deleteFile " + errFile + " true"));
    EXPECT_FALSE(directory.has("out.txt"));
    EXPECT_FALSE(directory.has("err.txt"));
}

TEST_F(StdOutErrTest, BothFilesAreDeletedAfterAnError)
{
    directory.write("err.txt", "boom\n");
    {
        StdOutErr output(outFile, errFile);
        EXPECT_PROBLEM(readAll(output), "boom\n");
    }
    EXPECT_EQ(platform->calls.size(), 2u);
    EXPECT_FALSE(directory.has("err.txt"));
}

TEST_F(StdOutErrTest, FilesThatCannotBeReadFail)
{
    const std::string folder = directory / "folder";
    std::filesystem::create_directory(folder);
    std::string line;
    {
        StdOutErr output(folder, errFile);
        EXPECT_PROBLEM(output.getMore(line), "Failed to read file: '" + folder + "'");
    }
    std::filesystem::create_directory(folder);
    StdOutErr errors(outFile, folder);
    EXPECT_PROBLEM(errors.checkError(), "Failed to read file: '" + folder + "'");
}

TEST_F(StdOutErrTest, EmptyPathsArePassedOver)
{
    {
        StdOutErr output("", "");
        EXPECT_THAT(readAll(output), IsEmpty());
    }
    EXPECT_THAT(platform->calls, IsEmpty());
    {
        const StdOutErr output("", errFile);
    }
    EXPECT_THAT(platform->calls, ElementsAre("deleteFile " + errFile + " true"));
}

TEST_F(StdOutErrTest, FailingPlatformIsIgnored)
{
    platform->failingCall = "deleteFile";
    {
        const StdOutErr output(outFile, errFile);
    }
    EXPECT_EQ(platform->calls.size(), 2u);
}

TEST_F(StdOutErrTest, PathsAreUtf8)
{
    directory.write("h\xC3\xA4user.txt", "a\n");
    Ztring path;
    path.fromUtf8(directory / "h\xC3\xA4user.txt");
    StdOutErr output(path, errFile);
    EXPECT_THAT(readAll(output), ElementsAre("a"));
}
