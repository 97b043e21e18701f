// SPDX-License-Identifier: MIT
// truss: platform
#include "truss/platform/childprocess.h"

#include "truss/platform/filedescriptor.h"
#include "truss/platform/spawnsettings.h"
#include "truss/platform/systemproblem.h"
#include "truss/platform/timers.h"
#include "truss/text/text.h"

#include <kel/interrupted.h>
#include <kel/status.h>
#include <kel/timer.h>
#include <kel/translator.h>

#include <poll.h>
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
    const SpawnSettings settings(redirection);
    auto copies = words;
    const int error = posix_spawnp(&m_id, m_name.c_str(), settings.getFileActions(), settings.getAttributes(),
                                   toArguments(copies).data(), environ);
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
    while (poll(&ended, 1, 0) != 1)         // a signal may end the call early
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

bool ChildProcess::reapIfEnded() const
{
    return waitpid(m_id, nullptr, WNOHANG) != 0;
}

int ChildProcess::reap() const
{
    int status = 0;
    while (waitpid(m_id, &status, 0) < 0 && errno == EINTR)
        ;
    return status;
}
} // namespace truss
