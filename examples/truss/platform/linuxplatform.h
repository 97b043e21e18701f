// SPDX-License-Identifier: MIT
// truss: platform
#pragma once

#include "truss/platform/childprocess.h"
#include "truss/platform/redirection.h"
#include "truss/platform/timers.h"

#include <kel/platform.h>

#include <chrono>
#include <vector>

namespace truss
{
/// The operating system's services as the library asks for them, and what this application needs besides.
class LinuxPlatform : public Platform
{
public:
    /// The installed platform, or null when another one, or none, is installed.
    static LinuxPlatform* getSingleton();

    /// Starts a program, without a shell between unless asked for. With waiting it has to end with status 0, otherwise
    /// a Problem; the user can interrupt the waiting, which ends the program.
    void execute(const Ztring& commandLine, bool wait, bool shell) override;
    /// Runs a program to its end with its standard streams in files.
    void runRedirected(const Ztring& commandLine, const Kel::File& file, const Redirection& redirection);

    /// Quietly: a file that cannot be deleted is no Problem then. The old file of a Replacement is left to moveFile.
    void deleteFile(const Kel::File& file, bool quiet) override;
    /// Replaces `to`, if it exists, in one step, as DurableMove does. When that fails in a Replacement, `from` is
    /// deleted, since the old file is still there.
    void moveFile(const Kel::File& from, const Kel::File& to, bool quiet) override;

    /// Takes ownership of the task, which is run until its repeat() says no.
    void startTimer(Task* task, unsigned int intervalMs) override;
    using Platform::startTimer;
    Timers& getTimers() { return m_timers; }

    /// "linux".
    std::string getOsName() override;
    /// The distribution and its version, for example "debian-12".
    std::string getReleaseName() override;

    /// The time that posting a form may take; two minutes unless set.
    void setPostLimit(std::chrono::milliseconds limit) { m_postLimit = limit; }
    /// `where` and `path` together are the address, with its scheme. Each character of the body becomes one byte; one
    /// that is no byte is a Problem, and so is a server that does not accept the form.
    void postForm(const Ztring& where, const Ztring& path, const Ztring& headerName, const Ztring& headerValue,
                  FormDataPoster& form, Ztring& response) override;

private:
    Redirection m_redirection; // of the next program
    std::vector<ChildProcess> m_unattended;
    Timers m_timers;
    std::chrono::milliseconds m_postLimit = std::chrono::minutes(2);
};
} // namespace truss
