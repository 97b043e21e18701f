// SPDX-License-Identifier: MIT
// truss: shell
#include "truss/shell/childprocess.h"

#include "truss/model/text.h"
#include "truss/shell/filedescriptor.h"
#include "truss/shell/redirection.h"
#include "truss/shell/systemproblem.h"
#include "truss/shell/timers.h"

#include <kel/interrupted.h>
#include <kel/status.h>
#include <kel/timer.h>
#include <kel/translator.h>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>

extern "C" // which the header of Debian 12 leaves out
{
#include <sys/pidfd.h>
}

#include <cerrno>
#include <csignal>

extern char** environ; // no header declares it

namespace truss
{
namespace
{
/// The time that a program has to end by itself once it is asked to.
constexpr int graceMs = 500;

/// What is done to the descriptors between starting the process and running the program.
class FileActions
{
public:
    FileActions() { posix_spawn_file_actions_init(&m_actions); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;
    ~FileActions() { posix_spawn_file_actions_destroy(&m_actions); }

    void open(int descriptor, const std::string& path, int flags)
    {
        if (!path.empty())
            posix_spawn_file_actions_addopen(&m_actions, descriptor, path.c_str(), flags, 0600);
    }

    const posix_spawn_file_actions_t* get() const { return &m_actions; }

private:
    posix_spawn_file_actions_t m_actions;
};

/// Makes the process the first of a group, to which all that it starts belongs too.
class GroupAttribute
{
public:
    GroupAttribute()
    {
        posix_spawnattr_init(&m_attributes);
        posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETPGROUP);
        posix_spawnattr_setpgroup(&m_attributes, 0);
    }
    GroupAttribute(const GroupAttribute&) = delete;
    GroupAttribute& operator=(const GroupAttribute&) = delete;
    ~GroupAttribute() { posix_spawnattr_destroy(&m_attributes); }

    const posix_spawnattr_t* get() const { return &m_attributes; }

private:
    posix_spawnattr_t m_attributes;
};

std::vector<char*> toArguments(std::vector<std::string>& words)
{
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    return arguments;
}
} // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& words, const Redirection& redirection)
    : m_name(words.empty() ? std::string() : words.front())
{
    FileActions actions;
    actions.open(STDIN_FILENO, redirection.in, O_RDONLY);
    actions.open(STDOUT_FILENO, redirection.out, O_WRONLY | O_CREAT | O_TRUNC);
    actions.open(STDERR_FILENO, redirection.err, O_WRONLY | O_CREAT | O_TRUNC);
    auto copies = words;
    const int error =
        posix_spawnp(&m_id, m_name.c_str(), actions.get(), GroupAttribute().get(), toArguments(copies).data(), environ);
    if (error != 0)
        SystemProblem::throwProblem(error, fill(Translator::tr("Failed to start '%1'"), fromUtf8(m_name)));
}

void ChildProcess::wait(Timers& timers)
{
    try
    {
        waitForEnd(timers);
    }
    catch (...)
    {
        end();
        throw;
    }
    checkEnd(reap());
}

void ChildProcess::waitForEnd(Timers& timers)
{
    const FileDescriptor process(pidfd_open(m_id, 0));
    if (process.get() < 0)
        SystemProblem::throwProblem(errno, fill(Translator::tr("Failed to wait for '%1'"), fromUtf8(m_name)));
    pollfd ended{process.get(), POLLIN, 0}; // can be read from the end of the process on
    while (poll(&ended, 1, 0) == 0)
    {
        timers.wait(Timer::INTERVAL, process.get());
        Status::getSingleton().checkInterrupt(-1);
    }
}

void ChildProcess::end()
{
    kill(-m_id, SIGTERM);
    const FileDescriptor process(pidfd_open(m_id, 0));
    pollfd ended{process.get(), POLLIN, 0};
    poll(&ended, 1, graceMs);
    kill(-m_id, SIGKILL); // the number stays taken until the process is reaped
    reap();
}

void ChildProcess::checkEnd(int status) const
{
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0)
        return;
    const Ztring message =
        WIFEXITED(status) ? Translator::tr("'%1' ended with status %2") : Translator::tr("'%1' was ended by signal %2");
    const int code = WIFEXITED(status) ? WEXITSTATUS(status) : WTERMSIG(status);
    Problem::throwProblem(fill(message, fromUtf8(m_name), toText(code)));
}

int ChildProcess::reap() const
{
    int status = 0;
    while (waitpid(m_id, &status, 0) < 0 && errno == EINTR)
        ;
    return status;
}
} // namespace truss
