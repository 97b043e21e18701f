// SPDX-License-Identifier: MIT
// libkel: Application services
#pragma once

#include <kel/bulletin.h>
#include <kel/message.h>

#include <fstream>
#include <memory>

class Problem;

namespace Kel
{
/// Where the library sends text meant for the user.
///
/// The library only routes messages here. The application derives from Log and puts its instance on the
/// DynamicFactory board before anything is logged; until it does, messages are dropped.
///
///     class ConsoleLog : public Kel::Log
///     {
///         using Kel::Log::append; // the one for a Problem, which would be hidden
///         void append(const Ztring& text, Message::Type) override { std::cerr << text << '\n'; }
///     };
///
///     DynamicFactory::getSingleton().add(new ConsoleLog);
class KEL_API Log : public Bulletin
{
public:
    /// Carries the key of getStaticKey.
    Log();
    ~Log() override;

    Log(const Log&) = delete;
    Log& operator=(const Log&) = delete;

    /// The key "Kel::Log".
    static const BulletinKey& getStaticKey();

    /// The log on the DynamicFactory board, which owns it. Makes a silent one there when it has none. Another bulletin
    /// under its key fails with the assertion "!hasKey(key)".
    static Log* getSingleton();

    /// Called for every message, in the order in which they arise; the override shows or stores it. The base does
    /// nothing.
    virtual void append(const Ztring& text, Message::Type type);

    /// Called by the application to bring the log to the user's attention. The base does nothing.
    virtual void show();

    /// Logs the problem's whole message, annotations included.
    void append(const Problem& problem, Message::Type type);

    /// Opens the file that an override of append may write error text to, truncating what is there.
    ///
    /// May be called once: when a file is open already, the assertion "!valid(m_stdErr)" fails, whatever the path. An
    /// empty path does nothing and leaves the call available. That the file opens is not checked.
    void setStdErr(const Ztring& path);

protected:
    /// The file opened by setStdErr, or null.
    std::unique_ptr<std::ofstream> m_stdErr;
};
} // namespace Kel
