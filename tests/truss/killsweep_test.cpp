// SPDX-License-Identifier: MIT
// The process is killed at every point of a save. What a loss of power adds is that bytes may be lost which no fsync
// has put on the disk; so the order of the calls is proved too.
#include <truss/support/faultydisk.h>
#include <truss/support/savingtest.h>

#include <support/tally.h>

#include "truss/document/leftover.h"

#include <sys/wait.h>

#include <algorithm>
#include <set>

namespace
{
using Fault = FaultyDisk::Fault;

Tally s_points("points of a save at which it was killed");

bool isWrite(const FaultyDisk::Call& call)
{
    return call.name == "write";
}

class KillSweep : public SavingTest
{
protected:
    /// The calls of a save that nothing disturbs, as far as they change the disk.
    std::vector<FaultyDisk::Call> recordCalls()
    {
        restore();
        const FaultyDisk disk(directory.getPath(), {});
        EXPECT_EQ(trySave(), "");
        std::vector<FaultyDisk::Call> calls;
        for (const FaultyDisk::Call& call : disk.getCalls())
        {
            if (call.changesDisk)
                calls.push_back(call);
        }
        return calls;
    }

    /// Saves in a process of its own, which is to be killed.
    void saveAndDie(const FaultyDisk::Plan& plan)
    {
        const pid_t process = fork();
        ASSERT_GE(process, 0);
        if (process == 0)
        {
            const FaultyDisk disk(directory.getPath(), plan);
            trySave();
            _exit(0);
        }
        int end = 0;
        ASSERT_EQ(waitpid(process, &end, 0), process);
        ASSERT_TRUE(WIFSIGNALED(end) && WTERMSIG(end) == SIGKILL);
        s_points.add();
    }

    /// Expects a.truss to be the old file or the new one, and to open; that is found out once for the same bytes.
    void expectWhole(bool replaced)
    {
        const std::string bytes = read();
        EXPECT_TRUE(replaced ? afterFirstLine(bytes) == afterFirstLine(edited) : bytes == old);
        if (m_opened.insert(bytes).second)
        {
            EXPECT_EQ(truss::DocumentFile::open(file("a.truss"))->size(),
                      replaced ? model().size() : model().size() - 1);
        }
    }

private:
    std::set<std::string> m_opened;
};

TEST_F(KillSweep, TheOldFileOrTheNewOneOpensWhereverTheSaveIsKilled)
{
    prepare(7000);
    const std::vector<FaultyDisk::Call> calls = recordCalls();
    unsigned points = 0;
    bool isReplaced = false;
    restore();
    const auto tryPoint = [&](const FaultyDisk::Plan& plan, bool replaced)
    {
        SCOPED_TRACE(testing::Message() << "point " << points << ", call " << plan.number);
        saveAndDie(plan);
        expectWhole(replaced);
        if (replaced)
            restore();
        ++points;
    };
    const auto writes = std::count_if(calls.begin(), calls.end(), isWrite);
    const auto cuts = std::max<std::ptrdiff_t>(3, 200 / writes); // in each, so that there are many
    for (std::size_t i = 0; i < calls.size() && !HasFailure(); ++i)
    {
        tryPoint({.fault = Fault::KillBefore, .number = i + 1}, isReplaced);
        for (std::ptrdiff_t cut = 1; cut <= cuts && isWrite(calls[i]); ++cut)
        {
            const double share = static_cast<double>(cut) / static_cast<double>(cuts + 1);
            tryPoint({.fault = Fault::KillInside, .number = i + 1, .share = share}, isReplaced);
        }
        isReplaced = isReplaced || calls[i].name == "rename";
        tryPoint({.fault = Fault::KillAfter, .number = i + 1}, isReplaced);
    }
    EXPECT_GE(points, 200u);
}

TEST_F(KillSweep, WhatIsLeftIsOfferedAndNeverPromoted)
{
    prepare(200);
    const std::vector<FaultyDisk::Call> calls = recordCalls();
    unsigned whole = 0;
    unsigned parts = 0;
    for (std::size_t i = 0; i < calls.size() && calls[i].name != "rename"; ++i)
    {
        SCOPED_TRACE(i);
        restore();
        saveAndDie({.fault = Fault::KillAfter, .number = i + 1});
        const truss::Leftover leftover(file("a.truss"));
        ASSERT_TRUE(leftover.exists());
        const bool isWhole = directory.read("a.truss.tmp").size() == edited.size();
        EXPECT_EQ(leftover.isWhole(), isWhole);
        leftover.report();
        ++(isWhole ? whole : parts);
        EXPECT_TRUE(isOld()) << "looking at what is left promotes nothing";
        if (isWhole)
        {
            EXPECT_EQ(toCsv(*leftover.recover()), toCsv());
            EXPECT_TRUE(isNew());
        }
        else
        {
            EXPECT_THROW(leftover.recover(), Problem);
            EXPECT_TRUE(isOld());
        }
        EXPECT_EQ(trySave(), "") << "what is left must not be in the way";
        EXPECT_TRUE(isNew());
        EXPECT_FALSE(leftover.exists());
    }
    EXPECT_GE(whole, 1u);
    EXPECT_GE(parts, 2u);
    EXPECT_EQ(log->messages.size(), whole + parts);
}

TEST_F(KillSweep, BytesAreOnTheDiskBeforeTheNameAndTheNameBeforeTheEnd)
{
    prepare(400);
    std::vector<std::string> steps;
    const std::string folder = directory.getPath();
    for (const FaultyDisk::Call& call : recordCalls())
    {
        const std::string step = call.name + ' ' + (call.path == folder ? "." : call.path.substr(folder.size() + 1));
        if (steps.empty() || steps.back() != step)
            steps.push_back(step);
    }
    EXPECT_EQ(steps, (std::vector<std::string>{"fopen a.truss.tmp", "write a.truss.tmp", "fchmod a.truss.tmp",
                                               "fsync a.truss.tmp", "rename a.truss.tmp", "fsync ."}));
}
} // namespace
