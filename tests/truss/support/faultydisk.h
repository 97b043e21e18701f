// SPDX-License-Identifier: MIT
// Lets chosen calls of the system fail, write less than asked for, or kill the process. It replaces the functions of
// the whole program, the C++ library's calls included: include it in one source file of an executable only.
#pragma once

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <string>
#include <type_traits>
#include <vector>

/// While it lives, the calls that reach files below a directory are recorded, and the faults of a plan strike. One
/// lives at a time.
class FaultyDisk
{
public:
    enum class Fault
    {
        None,
        Fail,  ///< with the error; a call that gives something back to the system has given it back
        Short, ///< a write writes half
        KillBefore,
        KillInside, ///< in the midst of a write
        KillAfter
    };

    struct Plan
    {
        Fault fault = Fault::None;
        std::size_t number = 0; ///< of the call, from 1; kills count only the calls that change the disk
        int error = 0;
        bool onwards = false; ///< whether the calls that come after are struck too
        double share = 0.5;   ///< of its bytes that a short write writes, or one that is killed in the midst
    };

    struct Call
    {
        std::string name;
        std::string path;
        bool changesDisk;
        bool struck;
    };

    FaultyDisk(const std::string& directory, const Plan& plan) : m_directory(directory), m_plan(plan)
    {
        s_active = this;
    }
    FaultyDisk(const FaultyDisk&) = delete;
    FaultyDisk& operator=(const FaultyDisk&) = delete;
    ~FaultyDisk() { s_active = nullptr; }

    const std::vector<Call>& getCalls() const { return m_calls; }

    /// The function of that name which this header's hides.
    template <class Function>
    static Function* find(const char* name)
    {
        return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
    }

    static std::string getPath(int file)
    {
        char path[4096];
        const ssize_t size = readlink(("/proc/self/fd/" + std::to_string(file)).c_str(), path, sizeof path);
        return std::string(path, size < 0 ? 0 : static_cast<std::size_t>(size));
    }

    /// A share of the bytes, but not none, which would be asked for again and again.
    static std::size_t getShare(std::size_t size, double share)
    {
        const auto part = static_cast<std::size_t>(static_cast<double>(size) * share);
        return part == 0 && size != 0 ? 1 : part;
    }

    /// Makes a call, unless a fault strikes it. `act` gets the share of its bytes to write.
    template <class Act>
    static auto perform(const char* name, const std::string& path, bool changesDisk, const Act& act)
    {
        FaultyDisk* const disk = s_active;
        if (disk == nullptr || path.compare(0, disk->m_directory.size(), disk->m_directory) != 0)
            return act(1.0);
        s_active = nullptr; // what the fault itself does is nobody's call
        const auto result = disk->meet(name, path, changesDisk, act);
        const int error = errno;
        s_active = disk;
        errno = error;
        return result;
    }

private:
    template <class Act>
    auto meet(const std::string& name, const std::string& path, bool changesDisk, const Act& act)
    {
        using Result = decltype(act(1.0));
        const Fault fault = next(changesDisk);
        m_calls.push_back({name, path, changesDisk, fault != Fault::None});
        if (fault == Fault::KillBefore)
            raise(SIGKILL);
        if (fault == Fault::KillInside)
        {
            act(m_plan.share);
            raise(SIGKILL);
        }
        if (fault == Fault::Short)
            return act(m_plan.share);
        if (fault == Fault::Fail)
        {
            if (name == "close" || name == "fclose")
                act(1.0);
            errno = m_plan.error;
            if constexpr (std::is_pointer_v<Result>)
                return Result(nullptr);
            else
                return Result(-1);
        }
        const Result result = act(1.0);
        if (fault == Fault::KillAfter)
            raise(SIGKILL);
        return result;
    }

    /// What strikes the next call.
    Fault next(bool changesDisk)
    {
        const bool kills =
            m_plan.fault == Fault::KillBefore || m_plan.fault == Fault::KillInside || m_plan.fault == Fault::KillAfter;
        if (kills && !changesDisk)
            return Fault::None;
        ++m_number;
        const bool strikes = m_number == m_plan.number || (m_plan.onwards && m_number > m_plan.number);
        return strikes ? m_plan.fault : Fault::None;
    }

    static inline FaultyDisk* s_active = nullptr;

    std::string m_directory;
    Plan m_plan;
    std::size_t m_number = 0;
    std::vector<Call> m_calls;
};

// The names that the linker sees are given beside the functions, since large file support renames some of them.
// Replacements cannot be inline.
// NOLINTBEGIN(misc-definitions-in-headers)
extern "C"
{
    FILE* faultyOpenStream(const char* path, const char* mode) __asm__("fopen64");
    FILE* faultyOpenStream(const char* path, const char* mode)
    {
        static auto* const real = FaultyDisk::find<FILE*(const char*, const char*)>("fopen64");
        return FaultyDisk::perform("fopen", path, *mode != 'r', [&](double) { return real(path, mode); });
    }

    int faultyCloseStream(FILE* file) __asm__("fclose");
    int faultyCloseStream(FILE* file)
    {
        static auto* const real = FaultyDisk::find<int(FILE*)>("fclose");
        return FaultyDisk::perform("fclose", FaultyDisk::getPath(fileno(file)), false,
                                   [&](double) { return real(file); });
    }

    int faultyOpen(const char* path, int flags, ...) __asm__("open64");
    int faultyOpen(const char* path, int flags, ...)
    {
        static auto* const real = FaultyDisk::find<int(const char*, int, ...)>("open64");
        va_list arguments;
        va_start(arguments, flags);
        const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
        va_end(arguments);
        return FaultyDisk::perform("open", path, (flags & (O_CREAT | O_TRUNC)) != 0,
                                   [&](double) { return real(path, flags, mode); });
    }

    int faultyClose(int file) __asm__("close");
    int faultyClose(int file)
    {
        static auto* const real = FaultyDisk::find<int(int)>("close");
        return FaultyDisk::perform("close", FaultyDisk::getPath(file), false, [&](double) { return real(file); });
    }

    ssize_t faultyRead(int file, void* bytes, size_t size) __asm__("read");
    ssize_t faultyRead(int file, void* bytes, size_t size)
    {
        static auto* const real = FaultyDisk::find<ssize_t(int, void*, size_t)>("read");
        return FaultyDisk::perform("read", FaultyDisk::getPath(file), false,
                                   [&](double share) { return real(file, bytes, FaultyDisk::getShare(size, share)); });
    }

    ssize_t faultyWrite(int file, const void* bytes, size_t size) __asm__("write");
    ssize_t faultyWrite(int file, const void* bytes, size_t size)
    {
        static auto* const real = FaultyDisk::find<ssize_t(int, const void*, size_t)>("write");
        return FaultyDisk::perform("write", FaultyDisk::getPath(file), true,
                                   [&](double share) { return real(file, bytes, FaultyDisk::getShare(size, share)); });
    }

    ssize_t faultyWriteParts(int file, const iovec* parts, int count) __asm__("writev");
    ssize_t faultyWriteParts(int file, const iovec* parts, int count)
    {
        std::string bytes;
        for (int i = 0; i < count; ++i)
            bytes.append(static_cast<const char*>(parts[i].iov_base), parts[i].iov_len);
        return faultyWrite(file, bytes.data(), bytes.size());
    }

    int faultySync(int file) __asm__("fsync");
    int faultySync(int file)
    {
        static auto* const real = FaultyDisk::find<int(int)>("fsync");
        return FaultyDisk::perform("fsync", FaultyDisk::getPath(file), true, [&](double) { return real(file); });
    }

    int faultyChangeMode(int file, mode_t mode) __asm__("fchmod");
    int faultyChangeMode(int file, mode_t mode)
    {
        static auto* const real = FaultyDisk::find<int(int, mode_t)>("fchmod");
        return FaultyDisk::perform("fchmod", FaultyDisk::getPath(file), true, [&](double) { return real(file, mode); });
    }

    int faultyChangeOwner(int file, uid_t owner, gid_t group) __asm__("fchown");
    int faultyChangeOwner(int file, uid_t owner, gid_t group)
    {
        static auto* const real = FaultyDisk::find<int(int, uid_t, gid_t)>("fchown");
        return FaultyDisk::perform("fchown", FaultyDisk::getPath(file), true,
                                   [&](double) { return real(file, owner, group); });
    }

    int faultyStatus(int file, struct stat* status) __asm__("fstat64");
    int faultyStatus(int file, struct stat* status)
    {
        static auto* const real = FaultyDisk::find<int(int, struct stat*)>("fstat64");
        return FaultyDisk::perform("fstat", FaultyDisk::getPath(file), false,
                                   [&](double) { return real(file, status); });
    }

    int faultyLinkStatus(const char* path, struct stat* status) __asm__("lstat64");
    int faultyLinkStatus(const char* path, struct stat* status)
    {
        static auto* const real = FaultyDisk::find<int(const char*, struct stat*)>("lstat64");
        return FaultyDisk::perform("lstat", path, false, [&](double) { return real(path, status); });
    }

    int faultyMove(const char* from, const char* to) __asm__("rename");
    int faultyMove(const char* from, const char* to)
    {
        static auto* const real = FaultyDisk::find<int(const char*, const char*)>("rename");
        return FaultyDisk::perform("rename", from, true, [&](double) { return real(from, to); });
    }

    int faultyRemove(const char* path) __asm__("remove");
    int faultyRemove(const char* path)
    {
        static auto* const real = FaultyDisk::find<int(const char*)>("remove");
        return FaultyDisk::perform("remove", path, true, [&](double) { return real(path); });
    }
}
// NOLINTEND(misc-definitions-in-headers)
