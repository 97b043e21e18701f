// SPDX-License-Identifier: MIT
// Saving and opening while the disk fails: real limits of the system first, then a fault at every single call.
#include <truss/document/replacement.h>

#include <kel/file_kel.h>
#include <kel/platform.h>

#include <truss/support/faultydisk.h>
#include <truss/support/limit.h>
#include <truss/support/savingtest.h>

#include <support/tally.h>

#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>

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

    bool hasTemporary() const
    {
        return std::filesystem::is_symlink(directory / "a.truss.tmp") || directory.has("a.truss.tmp");
    }

    void expectOldFileAlone()
    {
        EXPECT_TRUE(isOld());
        EXPECT_FALSE(hasTemporary());
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

    static constexpr int noFileSystem = 77;

    /// Saves on file systems that hold more and more pages. @return an exit status: 0 when all was as it is to be.
    int saveOnSmallFileSystems()
    {
        constexpr std::size_t page = 4096;
        const std::size_t oldPages = old.size() / page + 1;
        const std::size_t newPages = edited.size() / page + 1;
        if (unshare(CLONE_NEWNS) != 0)
            return noFileSystem;
        mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr);
        for (std::size_t pages = oldPages; pages < oldPages + newPages + 3; ++pages)
        {
            const std::string size = "size=" + std::to_string(pages * page);
            if (mount("none", directory.getPath().c_str(), "tmpfs", 0, size.c_str()) != 0)
                return noFileSystem;
            restore();
            const std::string message = trySave();
            const bool fits = pages >= oldPages + newPages;
            EXPECT_TRUE(fits ? message.empty() : message == failedToSave()) << pages << ": " << message;
            EXPECT_TRUE(fits ? isNew() : isOld()) << pages;
            EXPECT_FALSE(hasTemporary()) << pages;
            umount(directory.getPath().c_str());
        }
        std::fflush(stdout);
        return HasFailure() ? 1 : 0;
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

TEST_F(DiskFaults, AFullDeviceLeavesTheOldFile)
{
    std::filesystem::create_symlink("/dev/full", directory / "a.truss.tmp");
    EXPECT_EQ(trySave(), failedToSave());
    expectOldFileAlone();
}

TEST_F(DiskFaults, ALimitOfTheFileSizeLeavesTheOldFileWhereverItIs)
{
    for (std::size_t limit = 0; limit < edited.size(); limit += 500)
    {
        std::string message;
        {
            const Limit full(RLIMIT_FSIZE, limit);
            message = trySave();
        }
        s_faults.add();
        EXPECT_EQ(message, failedToSave()) << limit;
        expectOldFileAlone();
    }
    const Limit enough(RLIMIT_FSIZE, edited.size());
    EXPECT_EQ(trySave(), "");
    EXPECT_TRUE(isNew());
}

TEST_F(DiskFaults, AFileSystemThatIsFullLeavesTheOldFileWhateverItsSize)
{
    const pid_t process = fork(); // since the file system is to be seen by nobody else
    ASSERT_GE(process, 0);
    if (process == 0)
        _exit(saveOnSmallFileSystems());
    int end = 0;
    ASSERT_EQ(waitpid(process, &end, 0), process);
    ASSERT_TRUE(WIFEXITED(end));
    if (WEXITSTATUS(end) == noFileSystem)
        GTEST_SKIP() << "no file system can be mounted here";
    EXPECT_EQ(WEXITSTATUS(end), 0);
}

TEST_F(DiskFaults, TooFewDescriptorsLeaveTheOldFile)
{
    // A sanitizer takes descriptors the first time that it meets a class: let it meet those of a failure now.
    std::filesystem::create_directory(directory / "a.truss.tmp");
    ASSERT_EQ(trySave(), failedToOpen());
    std::filesystem::remove(directory / "a.truss.tmp");
    {
        const Kel::File target(directory / "a.truss");
        const truss::Replacement replacement(target);
        Platform::getSingleton()->moveFile(Kel::File(directory / "missing"), target, true);
    }
    ASSERT_TRUE(isOld());

    const auto next = static_cast<rlim_t>(truss::FileDescriptor(dup(0)).get());
    const std::string messages[] = {failedToOpen(), failedToMove("Too many open files"), ""};
    for (unsigned more = 0; more < 3; ++more)
    {
        std::string message;
        {
            const Limit few(RLIMIT_NOFILE, next + more);
            message = trySave();
        }
        EXPECT_EQ(message, messages[more]);
        EXPECT_TRUE(more < 2 ? isOld() : isNew());
        EXPECT_FALSE(hasTemporary());
    }
}

TEST_F(DiskFaults, AFolderThatCannotBeWrittenLeavesTheOldFile)
{
    const std::filesystem::path folder = directory.getPath();
    std::filesystem::permissions(folder, std::filesystem::perms(0555));
    std::filesystem::permissions(folder / "a.truss", std::filesystem::perms(0644));
    const bool isSuperuser = geteuid() == 0;
    ASSERT_EQ(seteuid(isSuperuser ? 65534 : geteuid()), 0); // permissions do not bind the superuser
    const std::string message = trySave();
    ASSERT_EQ(seteuid(isSuperuser ? 0 : geteuid()), 0);
    std::filesystem::permissions(folder, std::filesystem::perms(0755));
    EXPECT_EQ(message, failedToOpen());
    expectOldFileAlone();
}

TEST_F(DiskFaults, AFolderInThePlaceOfTheTemporaryFileLeavesTheOldFile)
{
    std::filesystem::create_directory(directory / "a.truss.tmp");
    EXPECT_EQ(trySave(), failedToOpen());
    EXPECT_TRUE(isOld());
}

TEST_F(DiskFaults, AFolderOrAPipeIsNoPlaceForADocument)
{
    for (const bool folder : {true, false})
    {
        std::filesystem::remove(directory / "a.truss");
        if (folder)
            std::filesystem::create_directory(directory / "a.truss");
        else
            ASSERT_EQ(mkfifo((directory / "a.truss").c_str(), 0600), 0);
        EXPECT_EQ(trySave(), failedToSave());
        EXPECT_EQ(std::filesystem::is_directory(directory / "a.truss"), folder);
        EXPECT_EQ(std::filesystem::is_fifo(directory / "a.truss"), !folder);
        EXPECT_FALSE(hasTemporary());
    }
}

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
