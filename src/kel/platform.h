// SPDX-License-Identifier: MIT
// libkel: Application services
#pragma once

#include <kel/bulletin.h>

#include <string>

class FormDataPoster;
class Task;

namespace Kel
{
class File;
}

/// The operating system, as far as the library needs it.
///
/// The application derives from Platform and puts its instance on the DynamicFactory board at start-up, before
/// anything starts programs, saves files or posts forms; the library does not check that it did. Failures are
/// reported by throwing a Problem where the caller is to stop.
class KEL_API Platform : public Bulletin
{
public:
    /// Carries the key of getStaticKey.
    Platform();
    ~Platform() override;

    Platform(const Platform&) = delete;
    Platform& operator=(const Platform&) = delete;

    /// The key "Platform".
    static const BulletinKey& getStaticKey();

    /// The platform on the DynamicFactory board, which owns it; null until the application has installed one.
    static Platform* getSingleton();

    /// @name What the application implements
    /// @{

    /// Called by run: starts an external program. The flags are those given to run; what they mean (waiting for the
    /// program, hiding its window) is the application's.
    virtual void execute(const Ztring& commandLine, bool flag1, bool flag2) = 0;

    /// Called to delete a file: the old target when a save completes (false), temporary files (true, which asks for no
    /// report when the file cannot be deleted).
    virtual void deleteFile(const Kel::File& file, bool quiet) = 0;

    /// Called last in a save, with false, to put the complete temporary file `from` in the place of `to`, which was
    /// deleted just before.
    virtual void moveFile(const Kel::File& from, const Kel::File& to, bool quiet) = 0;

    /// Called by startTimer(Task*): runs the task every `intervalMs` milliseconds. Who deletes the task is settled
    /// between the application and its platform.
    virtual void startTimer(Task* task, unsigned int intervalMs) = 0;

    /// Asked when download and help addresses are built: a short lower-case name of the operating system.
    virtual std::string getOsName() = 0;

    /// Asked when help addresses are built: the installed release whose help pages are wanted.
    virtual std::string getReleaseName() = 0;

    /// Called last by FormDataPoster::postTo: sends the body of the form, each character as one byte (ISO-8859-1), as
    /// an HTTP POST with the one extra header, and stores the server's reply in `response`. What `where` and `path`
    /// mean is settled between the application and its platform.
    virtual void postForm(const Ztring& where, const Ztring& path, const Ztring& headerName, const Ztring& headerValue,
                          FormDataPoster& form, Ztring& response) = 0;

    /// @}

    /// Starts an external program: executes the command, followed by the arguments and by the file's path in quotes,
    /// each after one space and left out when empty.
    void run(const Ztring& command, const Ztring& arguments, const Kel::File& file, bool flag1, bool flag2);

    /// Runs the task every Timer::INTERVAL milliseconds.
    void startTimer(Task* task);

    /// The word size of the build, in bits.
    static unsigned int getArchBit();

    /// The name of the operating system followed by the word size, such as "linux64".
    std::string getOsBitName();
};
