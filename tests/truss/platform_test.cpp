// SPDX-License-Identifier: MIT
// What the example application does with the operating system.
#include <truss/platform/linuxplatform.h>

#include <truss/document/replacement.h>
#include <truss/platform/commandline.h>

#include <support/installed.h>
#include <support/problem.h>
#include <support/temporarydirectory.h>
#include <support/teststatus.h>
#include <support/testtask.h>

#include <kel/file_kel.h>
#include <kel/interrupted.h>
#include <kel/timer.h>

#include <gmock/gmock.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

namespace
{
using testing::ElementsAre;

class LinuxPlatform : public testing::Test
{
protected:
    Kel::File file(const std::string& name) { return Kel::File(directory / name); }

    /// Makes a program that a shell runs.
    std::string program(const std::string& lines)
    {
        const std::string path = directory.write("program", "#!/bin/sh\n" + lines);
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path;
    }

    void interruptSoon()
    {
        Timer::setStaticIntervals(1);
        status.setUpdateInterval(1);
        status.elapse();
        status.interruptAt(1);
    }

    TestStatus status;
    Installed<truss::LinuxPlatform> platform;
    TemporaryDirectory directory;
    const Kel::File none{Ztring()};
};

TEST(CommandLine, IsSplitAtSpacesOutsideQuotes)
{
    using truss::CommandLine;
    EXPECT_THAT(CommandLine::split("prog -a  b "), ElementsAre("prog", "-a", "b"));
    EXPECT_THAT(CommandLine::split("prog \"a b\" \"\" c\"d e\"f"), ElementsAre("prog", "a b", "", "cd ef"));
    EXPECT_THAT(CommandLine::split("a;b $c 'd e'"), ElementsAre("a;b", "$c", "'d", "e'"));
    EXPECT_TRUE(CommandLine::split(" ").empty());
}

TEST_F(LinuxPlatform, RunsAProgramToItsEndWithoutAShell)
{
    const std::string path = program("echo \"$#:$1:$2\" >'" + directory / "out" + "'\n");
    platform->run(path, "$HOME;ls", file("a b"), true, false);
    EXPECT_EQ(directory.read("out"), "2:$HOME;ls:" + directory / "a b" + "\n");
}

TEST_F(LinuxPlatform, RunsACommandLineThroughAShellWhenAskedTo)
{
    platform->run("echo one", "two >'" + directory / "out" + "'; exit 0", none, true, true);
    EXPECT_EQ(directory.read("out"), "one two\n");
}

TEST_F(LinuxPlatform, DoesNotWaitUnlessAskedTo)
{
    ASSERT_EQ(mkfifo((directory / "gate").c_str(), 0600), 0);
    platform->run(program("read line <'" + directory / "gate" + "'\n"), "", none, false, false);
    directory.write("gate", "go\n"); // would never be reached, were the program waited for
}

TEST_F(LinuxPlatform, NothingIsLeftOfAProgramThatNobodyWaitedFor)
{
    ASSERT_EQ(mkfifo((directory / "id").c_str(), 0600), 0);
    platform->run(program("echo $$ >'" + directory / "id" + "'\n"), "", none, false, false);
    const auto id = static_cast<id_t>(std::stoi(directory.read("id")));
    siginfo_t ended{};
    ASSERT_EQ(waitid(P_PID, id, &ended, WEXITED | WNOWAIT), 0);
    platform->run("true", "", none, true, false); // each one lets the platform look after the earlier ones
    EXPECT_EQ(waitid(P_PID, id, &ended, WEXITED | WNOWAIT), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST_F(LinuxPlatform, AProgramThatFailsOrIsMissingIsAProblem)
{
    const std::string failing = program("exit 3\n");
    EXPECT_PROBLEM(platform->run(failing, "", none, true, false), "'" + failing + "' ended with status 3");
    const std::string killed = program("kill -9 $$\n");
    EXPECT_PROBLEM(platform->run(killed, "", none, true, false), "'" + killed + "' was ended by signal 9");
    EXPECT_PROBLEM(platform->run("no-such-program", "", none, true, false),
                   "Failed to start 'no-such-program'\nNo such file or directory");
    EXPECT_PROBLEM(platform->run("", "", none, true, false), "Failed to start ''\nNo such file or directory");
}

TEST_F(LinuxPlatform, TimersGoOnWhileAProgramIsWaitedFor)
{
    TestTask::Journal journal;
    auto task = std::make_unique<TestTask>(journal, "tick", 3);
    task->onAction = [this, &journal]
    {
        if (journal.size() == 3)
            status.setInterrupted();
    };
    platform->startTimer(task.release(), 1);
    EXPECT_THROW(platform->run("sleep", "1000", none, true, false), Interrupted);
    EXPECT_THAT(journal, ElementsAre("run tick", "run tick", "run tick", "delete tick"));
}

TEST_F(LinuxPlatform, ATimerWithoutAnIntervalRunsToo)
{
    TestTask::Journal journal;
    platform->startTimer(new TestTask(journal, "at once", 1), 0);
    while (journal.empty())
        platform->getTimers().wait(1000);
}

TEST_F(LinuxPlatform, ATimerRunsItsTaskUntilThatHasEnough)
{
    TestTask::Journal journal;
    platform->startTimer(new TestTask(journal, "often", 3), 1);
    platform->startTimer(new TestTask(journal, "once", 1), 1);
    while (journal.size() < 6)
        platform->getTimers().wait(1000);
    EXPECT_EQ(std::count(journal.begin(), journal.end(), "run often"), 3);
    EXPECT_EQ(std::count(journal.begin(), journal.end(), "run once"), 1);
}

TEST_F(LinuxPlatform, WaitingCountsAsTimeThatPasses)
{
    const auto before = Timer::s_slept;
    platform->getTimers().wait(2);
    EXPECT_GE(Timer::s_slept, before + 2000); // clock ticks
}

TEST_F(LinuxPlatform, ATaskOfATimerMayWaitItself)
{
    TestTask::Journal journal;
    auto task = std::make_unique<TestTask>(journal, "tick");
    task->onAction = [this] { platform->getTimers().wait(1); };
    platform->startTimer(task.release(), 1);
    while (journal.empty())
        platform->getTimers().wait(1000);
    EXPECT_THAT(journal, ElementsAre("run tick", "delete tick"));
}

TEST_F(LinuxPlatform, DeletesAndMovesFiles)
{
    directory.write("a", "new");
    directory.write("b", "old");
    platform->moveFile(file("a"), file("b"), false);
    EXPECT_EQ(directory.read("b"), "new");
    EXPECT_FALSE(directory.has("a"));
    platform->deleteFile(file("b"), false);
    EXPECT_FALSE(directory.has("b"));
    EXPECT_PROBLEM(platform->moveFile(file("a"), file("b"), false),
                   "Failed to move file: '" + directory / "a" + "'\nNo such file or directory");
    platform->moveFile(file("a"), file("b"), true);
    std::filesystem::create_directory(directory / "c");
    directory.write("c/d", "");
    EXPECT_PROBLEM(platform->deleteFile(file("c"), false),
                   "Failed to delete file: '" + directory / "c" + "'\nDirectory not empty");
    platform->deleteFile(file("c"), true);
}

TEST_F(LinuxPlatform, AMovedFileTakesOverTheModeOfTheOneItReplaces)
{
    directory.write("a", "new");
    directory.write("b", "old");
    const auto mode = std::filesystem::perms(0751);
    std::filesystem::permissions(directory / "b", mode);
    platform->moveFile(file("a"), file("b"), false);
    EXPECT_EQ(directory.read("b"), "new");
    EXPECT_EQ(std::filesystem::status(directory / "b").permissions(), mode);
}

TEST_F(LinuxPlatform, AMovedFileTakesOverTheOwnerAsFarAsTheUserMayGiveItAway)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only the superuser can make a file of somebody else";
    const auto replaceFor = [this](uid_t user)
    {
        directory.write("a", "new");
        directory.write("b", "old");
        EXPECT_EQ(chown((directory / "b").c_str(), 4711, 4712), 0);
        EXPECT_EQ(chown((directory / "a").c_str(), user, 0), 0);
        std::filesystem::permissions(directory / "b", std::filesystem::perms(0664));
        std::filesystem::permissions(directory.getPath(), std::filesystem::perms(0777));
        EXPECT_EQ(seteuid(user), 0);
        platform->moveFile(file("a"), file("b"), false);
        EXPECT_EQ(seteuid(0), 0);
        struct stat now
        {
        };
        EXPECT_EQ(stat((directory / "b").c_str(), &now), 0);
        return std::vector<unsigned>{now.st_uid, now.st_gid, now.st_mode & 0777};
    };
    EXPECT_THAT(replaceFor(0), ElementsAre(4711, 4712, 0664));
    EXPECT_THAT(replaceFor(65534), ElementsAre(65534, 0, 0604)) << "another group does not get what the old one had";
}

TEST_F(LinuxPlatform, NothingButAFileIsReplaced)
{
    directory.write("a", "new");
    ASSERT_EQ(mkfifo((directory / "pipe").c_str(), 0600), 0);
    std::filesystem::create_directory(directory / "folder");
    const std::string failed = "Failed to move file: '" + directory / "a" + "'\n";
    EXPECT_PROBLEM(platform->moveFile(file("a"), file("pipe"), false), failed + "Operation not supported");
    EXPECT_PROBLEM(platform->moveFile(file("a"), file("folder"), false), failed + "Is a directory");
    EXPECT_TRUE(std::filesystem::is_fifo(directory / "pipe"));
    EXPECT_EQ(directory.read("a"), "new");
}

TEST_F(LinuxPlatform, AReplacementLeavesTheOldFileToTheMove)
{
    directory.write("a", "new");
    directory.write("b", "old");
    {
        const truss::Replacement replacement(file("b"));
        platform->deleteFile(file("b"), false);
        EXPECT_EQ(directory.read("b"), "old");
        platform->moveFile(file("a"), file("b"), false);
        EXPECT_EQ(directory.read("b"), "new");
        directory.write("c", "");
        platform->deleteFile(file("c"), false);
        EXPECT_FALSE(directory.has("c")) << "only the file that is replaced stays";
    }
    platform->deleteFile(file("b"), false);
    EXPECT_FALSE(directory.has("b")) << "afterwards a deletion is one again";
}

TEST_F(LinuxPlatform, AReplacementThatFailsDeletesTheNewFile)
{
    directory.write("a", "new");
    std::filesystem::create_directory(directory / "b");
    const truss::Replacement replacement(file("b"));
    EXPECT_PROBLEM(platform->moveFile(file("a"), file("b"), false),
                   "Failed to move file: '" + directory / "a" + "'\nIs a directory");
    EXPECT_FALSE(directory.has("a"));
}

TEST_F(LinuxPlatform, NamesTheSystem)
{
    EXPECT_EQ(platform->getOsName(), "linux");
    EXPECT_EQ(platform->getOsBitName(), "linux64");
    EXPECT_FALSE(platform->getReleaseName().empty());
    EXPECT_EQ(platform->getReleaseName().find_first_of("\"\n "), std::string::npos);
}
} // namespace
