// SPDX-License-Identifier: MIT
// truss: platform
#include "truss/platform/linuxplatform.h"

#include "truss/document/replacement.h"
#include "truss/platform/commandline.h"
#include "truss/platform/durablemove.h"
#include "truss/platform/httppost.h"
#include "truss/platform/systemproblem.h"
#include "truss/text/text.h"

#include <kel/file_kel.h>
#include <kel/formdataposter.h>
#include <kel/problem.h>
#include <kel/task.h>
#include <kel/texthelper.h>
#include <kel/translator.h>

#include <sys/utsname.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <system_error>
#include <utility>

namespace truss
{
namespace
{
/// The value of a name in the description that every distribution has (os-release(5)); empty when it is not there.
std::string readRelease(const std::string& name)
{
    std::ifstream in("/etc/os-release");
    for (std::string line; std::getline(in, line);)
    {
        if (line.rfind(name + '=', 0) != 0)
            continue;
        line.erase(0, name.size() + 1);
        TextHelper::remove('"', line);
        return line;
    }
    return std::string();
}

std::string toBytes(const Ztring& text)
{
    std::string bytes;
    bytes.reserve(text.size());
    for (const wxUniChar character : text.wx())
    {
        if (character.GetValue() > 0xff)
            Problem::throwProblem(Translator::tr("A form holds a character that is no byte"));
        bytes += static_cast<char>(character.GetValue());
    }
    return bytes;
}
} // namespace

LinuxPlatform* LinuxPlatform::getSingleton()
{
    return dynamic_cast<LinuxPlatform*>(Platform::getSingleton());
}

void LinuxPlatform::execute(const Ztring& commandLine, bool wait, bool shell)
{
    const Redirection redirection = std::exchange(m_redirection, Redirection());
    std::erase_if(m_unattended, [](const ChildProcess& program) { return program.reapIfEnded(); });
    m_unattended.reserve(m_unattended.size() + 1); // no program is started that could not be noted
    const std::string text = commandLine.toUtf8();
    ChildProcess program(shell ? std::vector<std::string>{"/bin/sh", "-c", text} : CommandLine::split(text),
                         redirection);
    if (wait)
        program.wait(m_timers);
    else
        m_unattended.push_back(program);
}

void LinuxPlatform::runRedirected(const Ztring& commandLine, const Kel::File& file, const Redirection& redirection)
{
    m_redirection = redirection; // for execute(), which run() calls
    try
    {
        run(commandLine, Ztring(), file, true, false);
    }
    catch (...)
    {
        m_redirection = Redirection(); // not for another program where this one was not started
        throw;
    }
}

void LinuxPlatform::deleteFile(const Kel::File& file, bool quiet)
{
    if (Replacement::isOf(file))
        return; // there would be no file until the move
    std::error_code error;
    std::filesystem::remove(file.getPath().toUtf8(), error);
    if (error && !quiet)
        SystemProblem::throwProblem(error.value(), fill(Translator::tr("Failed to delete file: '%1'"), file.getPath()));
}

void LinuxPlatform::moveFile(const Kel::File& from, const Kel::File& to, bool quiet)
try
{
    DurableMove::perform(from, to);
}
catch (...)
{
    if (Replacement::isOf(to))
        deleteFile(from, true);
    if (!quiet)
        throw;
}

void LinuxPlatform::startTimer(Task* task, unsigned int intervalMs)
{
    m_timers.add(std::unique_ptr<Task>(task), intervalMs);
}

std::string LinuxPlatform::getOsName()
{
    utsname system{};
    uname(&system);
    std::string name(system.sysname);
    return TextHelper::toLowerCase(name);
}

std::string LinuxPlatform::getReleaseName()
{
    const std::string version = readRelease("VERSION_ID");
    return readRelease("ID") + (version.empty() ? version : '-' + version);
}

void LinuxPlatform::postForm(const Ztring& where, const Ztring& path, const Ztring& headerName,
                             const Ztring& headerValue, FormDataPoster& form, Ztring& response)
{
    HttpPost post(where.toUtf8() + path.toUtf8());
    post.setLimit(m_postLimit);
    post.addHeader(headerName.toUtf8(), headerValue.toUtf8());
    const std::string reply = post.send(toBytes(form.getBody()));
    response = fromUtf8(reply);
    if (response.empty())
        response.fromAscii(reply); // not UTF-8: byte by byte
}
} // namespace truss
