// SPDX-License-Identifier: MIT
// truss: platform
#include "truss/platform/durablemove.h"

#include "truss/platform/filedescriptor.h"
#include "truss/platform/systemproblem.h"
#include "truss/text/text.h"

#include <kel/file_kel.h>
#include <kel/translator.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <string>

namespace truss
{
namespace
{
[[noreturn]] void fail(int error, const Kel::File& from)
{
    SystemProblem::throwProblem(error, fill(Translator::tr("Failed to move file: '%1'"), from.getPath()));
}

/// Fails with what the system says in errno.
void check(bool succeeded, const Kel::File& from)
{
    if (!succeeded)
        fail(errno, from);
}

FileDescriptor open(const std::string& path, int flags)
{
    return FileDescriptor(::open(path.c_str(), flags | O_RDONLY | O_CLOEXEC));
}

std::string getFolder(const std::string& path)
{
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    return folder.empty() ? "." : folder.string();
}

/// Gives the file the mode, owner and group of the old one; @return false where errno says why that is not possible.
bool keepAccess(int file, const struct stat& old)
{
    struct stat status
    {
    };
    if (fstat(file, &status) != 0)
        return false;
    mode_t mode = old.st_mode & ALLPERMS;
    if (status.st_uid != old.st_uid || status.st_gid != old.st_gid)
    {
        // Only the superuser can give a file away. The new group must not get what the old one had.
        if (fchown(file, old.st_uid, old.st_gid) != 0 && fchown(file, uid_t(-1), old.st_gid) != 0)
            mode &= ~mode_t(S_IRWXG);
    }
    return fchmod(file, mode) == 0;
}
} // namespace

void DurableMove::perform(const Kel::File& from, const Kel::File& to)
{
    const std::string source = from.getPath().toUtf8();
    const std::string target = to.getPath().toUtf8();
    const FileDescriptor file = open(source, O_NOFOLLOW);
    check(file.get() >= 0, from);

    struct stat old
    {
    };
    const bool replaces = lstat(target.c_str(), &old) == 0;
    check(replaces || errno == ENOENT, from);
    if (replaces && S_ISREG(old.st_mode))
        check(keepAccess(file.get(), old), from);
    else if (replaces && !S_ISLNK(old.st_mode))
        fail(S_ISDIR(old.st_mode) ? EISDIR : ENOTSUP, from);

    check(fsync(file.get()) == 0, from);
    const FileDescriptor folder = open(getFolder(target), O_DIRECTORY); // now, while a failure changes nothing
    check(folder.get() >= 0, from);
    check(std::rename(source.c_str(), target.c_str()) == 0, from);
    if (fsync(folder.get()) != 0 && errno != EINVAL) // which says that there is nothing to synchronize
        SystemProblem::throwProblem(
            errno,
            fill(Translator::tr("File '%1' is in its place, but may not survive a loss of power"), to.getPath()));
}
} // namespace truss
