// SPDX-License-Identifier: MIT
// Saving and opening while the disk fails: a fault at every single call.
#include <truss/support/faultydisk.h>
#include <truss/support/savingtest.h>

#include <support/tally.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace
{
using Fault = FaultyDisk::Fault;

Tally s_faults("faults of the disk");

class DiskFaults : public SavingTest
{
protected:
    void SetUp() override
    {
        prepare(400);
        restore();
    }

    /// The failure that a call is to lead to when it cannot be done; empty for none.
    std::string expectMessage(const FaultyDisk::Call& call, int error) const
    {
        const std::string temporary = directory / "a.truss.tmp";
        const bool isOfTemporary = call.path == temporary;
        if (call.name == "fopen")
            return isOfTemporary ? failedToOpen() : "";
        if (call.name == "write")
            return failedToSave();
        if (call.name == "fsync" && !isOfTemporary)
            return error == EINVAL
                       ? ""
                       : "File '" + directory / "a.truss" + "' is in its place, but may not survive a loss of power\n" +
                             std::strerror(error);
        // A file is closed when the system has its bytes; fsync reports, to any descriptor, what that cannot write.
        const bool isHarmless =
            call.name == "close" || call.name == "fclose" || call.name == "fchown" || call.name == "remove";
        return isHarmless ? "" : failedToMove(std::strerror(error));
    }

    std::string expectMessage(const FaultyDisk& disk, int error) const
    {
        for (const FaultyDisk::Call& call : disk.getCalls())
        {
            std::string message = call.struck && error != 0 ? expectMessage(call, error) : "";
            if (!message.empty())
                return message;
        }
        return "";
    }

    /// Saves with the fault in force and looks what became of the files. @return whether the fault was met.
    bool trySaveWith(const FaultyDisk::Plan& plan)
    {
        SCOPED_TRACE(testing::Message() << "call " << plan.number << (plan.onwards ? " and all after it" : "") << ": "
                                        << std::strerror(plan.error));
        restore();
        std::vector<FaultyDisk::Call> calls;
        std::string message;
        std::string expected;
        {
            const FaultyDisk disk(directory.getPath(), plan);
            message = trySave();
            expected = expectMessage(disk, plan.error);
            calls = disk.getCalls();
        }
        EXPECT_EQ(message, expected);
        const bool isSaved = message.empty() || message.rfind("File '", 0) == 0;
        EXPECT_TRUE(isSaved ? isNew() : isOld());
        // What fails from then on may keep the temporary file from being looked for, which is done by opening it, too.
        const auto keepsTemporary = [](const FaultyDisk::Call& call)
        { return call.struck && (call.name == "remove" || (call.name == "fopen" && !call.changesDisk)); };
        if (!plan.onwards || std::none_of(calls.begin(), calls.end(), keepsTemporary))
        {
            EXPECT_FALSE(hasTemporary());
        }
        const bool isMet = calls.size() >= plan.number;
        s_faults.add(isMet ? 1 : 0);
        return isMet;
    }

    /// The number of faults met.
    unsigned sweep(FaultyDisk::Plan plan)
    {
        unsigned count = 0;
        for (plan.number = 1; trySaveWith(plan) && !HasFailure(); ++plan.number)
            ++count;
        return count;
    }
};

TEST_F(DiskFaults, AnyCallThatFailsLeavesTheOldFileOrTheNewOneAndSaysWhich)
{
    unsigned count = 0;
    for (const int error : {ENOSPC, EIO, EACCES, EISDIR, EMFILE, EDQUOT, EROFS, EFBIG, EINVAL})
    {
        for (const bool onwards : {false, true})
            count += sweep({.fault = Fault::Fail, .error = error, .onwards = onwards});
    }
    EXPECT_GT(count, 200u);
}

TEST_F(DiskFaults, WritesThatAreShortOrInterruptedAreGoneOnWith)
{
    EXPECT_GT(sweep({.fault = Fault::Short}), 10u);
    EXPECT_GT(sweep({.fault = Fault::Short, .onwards = true}), 10u);
    restore();
    const FaultyDisk disk(directory.getPath(), {.fault = Fault::Fail, .number = 2, .error = EINTR});
    EXPECT_EQ(trySave(), "");
    EXPECT_EQ(disk.getCalls().at(1).name, "write");
}

TEST_F(DiskFaults, AFileThatCannotBeReadIsRefusedAtWhicheverRead)
{
    unsigned reads = 0;
    std::string last;
    for (const bool onwards : {false, true})
    {
        for (std::size_t number = 1;; ++number)
        {
            const FaultyDisk disk(directory.getPath(),
                                  {.fault = Fault::Fail, .number = number, .error = EIO, .onwards = onwards});
            std::string message;
            try
            {
                truss::DocumentFile::open(file("a.truss"));
            }
            catch (const Problem& problem)
            {
                message = problem.getMessage().toUtf8();
            }
            const std::vector<FaultyDisk::Call>& calls = disk.getCalls();
            if (calls.size() < number)
                break;
            if (calls[number - 1].name != "read")
                continue;
            ++reads;
            s_faults.add();
            EXPECT_EQ(message.rfind("Failed to read file: '" + directory / "a.truss" + "'\n", 0), 0u) << message;
            last = message;
        }
    }
    EXPECT_GT(reads, 6u);
    EXPECT_EQ(last, "Failed to read file: '" + directory / "a.truss" + "'\nThe file cannot be read to its end")
        << "the read that finds the end";
}
} // namespace
