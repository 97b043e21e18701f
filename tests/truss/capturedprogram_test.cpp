// SPDX-License-Identifier: MIT
// Real processes, and what they write.
#include <support/installed.h>
#include <support/problem.h>
#include <support/temporarydirectory.h>
#include <support/teststatus.h>
#include <support/testtask.h>
#include <truss/support/lifeline.h>

#include "truss/platform/capturedprogram.h"
#include "truss/platform/linuxplatform.h"

#include <kel/file_kel.h>
#include <kel/interrupted.h>
#include <kel/stdouterr.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>

namespace
{
/// Runs shell scripts, with temporary files in a directory of their own.
class CapturedProgram : public testing::Test
{
protected:
    CapturedProgram()
    {
        std::filesystem::create_directory(directory / "temporary");
        setenv("TMPDIR", (directory / "temporary").c_str(), 1);
    }

    ~CapturedProgram() override { unsetenv("TMPDIR"); }

    bool hasTemporaryFiles() const { return !std::filesystem::is_empty(directory / "temporary"); }

    void run(const std::string& commandLine) { program->run(commandLine, Kel::File(Ztring())); }

    void runScript(const std::string& text) { program->run("sh", Kel::File(directory.write("a script", text))); }

    /// The lines up to the end, which throws when the program has complained.
    std::string readOutput()
    {
        std::string text;
        for (std::string line; program->getOutput().getMore(line);)
            text += line + "\n";
        return text;
    }

    /// Runs the script, which opens the life line as its descriptor 3, and presses Stop once it has written to it.
    void interruptScript(const std::string& text)
    {
        const LifeLine life(directory / "life");
        status.onUpdate = [&](int)
        {
            if (life.hasBegun())
                status.setInterrupted();
        };
        EXPECT_THROW(runScript("exec 3>'" + directory / "life" + "'\n" + text), Interrupted);
        EXPECT_EQ(life.waitForEnd(), "begun\n");
    }

    TestStatus status;
    Installed<truss::LinuxPlatform> platform;
    TemporaryDirectory directory;
    std::unique_ptr<truss::CapturedProgram> program = std::make_unique<truss::CapturedProgram>();
};

TEST_F(CapturedProgram, GivesItsOutputAndThenItsErrors)
{
    runScript("echo first; echo wrong >&2; echo second; printf 'last and\nleast' >&2");
    std::string line;
    EXPECT_TRUE(program->getOutput().getMore(line));
    EXPECT_EQ(line, "first");
    EXPECT_TRUE(program->getOutput().getMore(line));
    EXPECT_EQ(line, "second");
    EXPECT_PROBLEM(program->getOutput().getMore(line), "wrong\nlast and\nleast\n");
}

TEST_F(CapturedProgram, GivesTheOutputOfAProgramThatIsContent)
{
    runScript("printf 'one\n\ntwo'");
    EXPECT_EQ(readOutput(), "one\n\ntwo\n");
}

TEST_F(CapturedProgram, HasNoInputUnlessItIsSet)
{
    run("cat");
    EXPECT_EQ(readOutput(), "");
}

TEST_F(CapturedProgram, ReadsTheInputThatIsSet)
{
    program->setInput(Kel::File(directory.write("input", "given\n")));
    run("cat");
    EXPECT_EQ(readOutput(), "given\n");
}

TEST_F(CapturedProgram, FailingWithoutAWordIsToldByTheStatus)
{
    EXPECT_PROBLEM(runScript("echo begun; exit 3"), "'sh' ended with status 3");
    EXPECT_EQ(readOutput(), "begun\n");
}

TEST_F(CapturedProgram, FailingIsToldInItsOwnWords)
{
    EXPECT_PROBLEM(runScript("echo 'Bar too thin' >&2; exit 3"), "Bar too thin\n");
}

TEST_F(CapturedProgram, EndingByASignalIsTold)
{
    EXPECT_PROBLEM(runScript("kill -KILL $$"), "'sh' was ended by signal 9");
}

TEST_F(CapturedProgram, NotBeingFoundIsTold)
{
    EXPECT_PROBLEM(run("no-such-program -a"), "Failed to start 'no-such-program'\nNo such file or directory");
}

TEST_F(CapturedProgram, NotBeingAllowedToRunIsTold)
{
    const std::string path = directory.write("text", "no program");
    EXPECT_PROBLEM(run(path), "Failed to start '" + path + "'\nPermission denied");
}

TEST_F(CapturedProgram, NoProgramAtAllIsTold)
{
    EXPECT_PROBLEM(run(""), "Failed to start ''\nNo such file or directory");
}

TEST_F(CapturedProgram, AMillionLinesOnBothOutputsAreKept)
{
    runScript("seq 1000000; seq 1000000 >&2");
    std::string line;
    for (int i = 1; i <= 1000000; ++i)
    {
        ASSERT_TRUE(program->getOutput().getMore(line));
        ASSERT_EQ(line, std::to_string(i));
    }
    try
    {
        program->getOutput().getMore(line);
        ADD_FAILURE();
    }
    catch (const Problem& problem)
    {
        const std::string message = problem.getMessage().toUtf8();
        EXPECT_EQ(message.size(), 6888896u);
        EXPECT_EQ(message.substr(0, 6), "1\n2\n3\n");
        EXPECT_EQ(message.substr(message.size() - 16), "\n999999\n1000000\n");
    }
}

TEST_F(CapturedProgram, OneThatNeverEndsIsEndedByAnInterrupt)
{
    interruptScript("echo begun >&3; exec sleep infinity");
}

TEST_F(CapturedProgram, AnInterruptEndsWhatTheProgramHasStartedToo)
{
    interruptScript("echo begun >&3; sleep infinity; exit 1");
}

TEST_F(CapturedProgram, AnInterruptEndsOneThatTakesNoNotice)
{
    interruptScript("trap '' TERM; echo begun >&3; sleep infinity; exit 1");
}

TEST_F(CapturedProgram, WhatWasWrittenBeforeAnInterruptIsKept)
{
    interruptScript("echo so far; echo begun >&3; exec sleep infinity");
    EXPECT_EQ(readOutput(), "so far\n");
}

TEST_F(CapturedProgram, LeavesNoFilesBehind)
{
    runScript("echo out; echo err >&2");
    EXPECT_TRUE(hasTemporaryFiles());
    program.reset();
    EXPECT_FALSE(hasTemporaryFiles());
}

TEST_F(CapturedProgram, LeavesNoFilesBehindWhenItCannotStart)
{
    EXPECT_THROW(run("no-such-program"), Problem);
    program.reset();
    EXPECT_FALSE(hasTemporaryFiles());
}

TEST_F(CapturedProgram, LeavesNoFilesBehindWhenInterrupted)
{
    interruptScript("echo begun >&3; exec sleep infinity");
    program.reset();
    EXPECT_FALSE(hasTemporaryFiles());
}

TEST_F(CapturedProgram, TimersGoOnMeanwhile)
{
    ASSERT_EQ(mkfifo((directory / "pipe").c_str(), 0600), 0);
    TestTask::Journal journal;
    auto* const task = new TestTask(journal, "wake");
    task->onAction = [this] { directory.write("pipe", "awake\n"); };
    platform->startTimer(task, 1);
    runScript("cat '" + directory / "pipe" + "'");
    EXPECT_EQ(readOutput(), "awake\n");
    EXPECT_EQ(journal, (TestTask::Journal{"run wake", "delete wake"}));
}

TEST_F(CapturedProgram, AShellWritesTheFilesThatItIsTold)
{
    const std::string out = directory / "out";
    const std::string err = directory / "err";
    platform->execute("(echo $((6 * 7)); echo \"no $0\" >&2) >'" + out + "' 2>'" + err + "'", true, true);
    {
        StdOutErr output(out, err);
        std::string line;
        EXPECT_TRUE(output.getMore(line));
        EXPECT_EQ(line, "42");
        EXPECT_PROBLEM(output.getMore(line), "no /bin/sh\n");
    }
    EXPECT_FALSE(directory.has("out"));
    EXPECT_FALSE(directory.has("err"));
}

TEST_F(CapturedProgram, WithoutAShellNothingIsExpanded)
{
    run("echo $HOME * >nowhere 'a  b' \"c  d\"");
    EXPECT_EQ(readOutput(), "$HOME * >nowhere 'a b' c  d\n");
}

TEST_F(CapturedProgram, OneThatIsNotWaitedForGoesOnAlone)
{
    const LifeLine life(directory / "life");
    const Kel::File script(directory.write("a script", "exec 3>'" + directory / "life" + "'; read line <'" +
                                                           directory / "pipe" + "'; echo $line >&3"));
    ASSERT_EQ(mkfifo((directory / "pipe").c_str(), 0600), 0);
    platform->run("sh", Ztring(), script, false, false);
    std::ofstream(directory / "pipe") << "go\n"; // waits for its reader
    EXPECT_EQ(life.waitForEnd(), "go\n");
}
} // namespace
