// SPDX-License-Identifier: MIT
// Saving while the system sets a limit: real ones, without a fault of the tests' own.
#include <truss/document/replacement.h>

#include <kel/file_kel.h>
#include <kel/platform.h>

#include <truss/support/limit.h>
#include <truss/support/savingtest.h>

#include <support/tally.h>

#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

namespace
{
Tally s_limits("limits of the system");

class DiskLimits : public SavingTest
{
protected:
    void SetUp() override
    {
        prepare(400);
        restore();
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
};

/// For limits that are tried at every byte: a document of two writes.
class DiskLimitsOfASmallDocument : public DiskLimits
{
protected:
    void SetUp() override
    {
        prepare(140);
        restore();
    }
};

TEST_F(DiskLimits, AFullDeviceLeavesTheOldFile)
{
    std::filesystem::create_symlink("/dev/full", directory / "a.truss.tmp");
    EXPECT_EQ(trySave(), failedToSave());
    expectOldFileAlone();
}

TEST_F(DiskLimitsOfASmallDocument, ALimitOfTheFileSizeLeavesTheOldFileWhereverItIs)
{
    ASSERT_GT(edited.size(), 8191u) << "takes less than two writes";
    for (std::size_t limit = 0; limit < edited.size(); ++limit)
    {
        std::string message;
        {
            const Limit full(RLIMIT_FSIZE, limit);
            message = trySave();
        }
        s_limits.add();
        ASSERT_EQ(message, failedToSave()) << limit;
        expectOldFileAlone();
    }
    const Limit enough(RLIMIT_FSIZE, edited.size());
    EXPECT_EQ(trySave(), "");
    EXPECT_TRUE(isNew());
}

TEST_F(DiskLimits, AFileSystemThatIsFullLeavesTheOldFileWhateverItsSize)
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

TEST_F(DiskLimits, TooFewDescriptorsLeaveTheOldFile)
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

TEST_F(DiskLimits, AFolderThatCannotBeWrittenLeavesTheOldFile)
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

TEST_F(DiskLimits, AFolderInThePlaceOfTheTemporaryFileLeavesTheOldFile)
{
    std::filesystem::create_directory(directory / "a.truss.tmp");
    EXPECT_EQ(trySave(), failedToOpen());
    EXPECT_TRUE(isOld());
}

TEST_F(DiskLimits, AFolderOrAPipeIsNoPlaceForADocument)
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

TEST_F(DiskLimits, AFolderOrAPipeIsNotOpenedAsADocument)
{
    std::filesystem::create_directory(directory / "folder");
    ASSERT_EQ(mkfifo((directory / "pipe").c_str(), 0600), 0);
    for (const char* name : {"folder", "pipe"})
    {
        const std::string path = directory / name;
        EXPECT_PROBLEM(truss::DocumentFile::open(file(name)),
                       "Failed to read file: '" + path + "'\nFailed to open file: '" + path + "'");
    }
}
} // namespace
