// SPDX-License-Identifier: MIT
// truss: shell
#include "truss/shell/linuxplatform.h"

#include "truss/model/text.h"

#include <kel/appversion.h>
#include <kel/file_kel.h>
#include <kel/problem.h>
#include <kel/task.h>
#include <kel/translator.h>
#include <kel/version.h>

#include <filesystem>
#include <memory>
#include <system_error>

namespace truss
{
namespace
{
std::filesystem::path toPath(const Kel::File& file)
{
    return file.getPath().toUtf8();
}

/// Fails with the message and the system's reason, unless all is well or nobody wants to know.
void report(const std::error_code& error, bool quiet, const Ztring& message)
{
    if (!error || quiet)
        return;
    Problem problem{Ztring(error.message())};
    problem.annotate(message);
    throw problem;
}

[[noreturn]] void throwNotAvailable(const Ztring& service)
{
    Problem::throwProblem(fill(Translator::tr("%1 is not available"), service));
}
} // namespace

void LinuxPlatform::execute(const Ztring&, bool, bool)
{
    throwNotAvailable(Translator::tr("Starting programs"));
}

void LinuxPlatform::deleteFile(const Kel::File& file, bool quiet)
{
    std::error_code error;
    std::filesystem::remove(toPath(file), error);
    report(error, quiet, fill(Translator::tr("Failed to delete file: '%1'"), file.getPath()));
}

void LinuxPlatform::moveFile(const Kel::File& from, const Kel::File& to, bool quiet)
{
    std::error_code error;
    std::filesystem::rename(toPath(from), toPath(to), error);
    report(error, quiet, fill(Translator::tr("Failed to move file: '%1'"), from.getPath()));
}

void LinuxPlatform::startTimer(Task* task, unsigned int)
{
    const std::unique_ptr<Task> owned(task);
    throwNotAvailable(Translator::tr("Running tasks on a timer"));
}

std::string LinuxPlatform::getOsName()
{
    return "linux";
}

std::string LinuxPlatform::getReleaseName()
{
    std::string release;
    AppVersion::getCurrent()->appendVersion(release);
    return release;
}

void LinuxPlatform::postForm(const Ztring&, const Ztring&, const Ztring&, const Ztring&, FormDataPoster&, Ztring&)
{
    throwNotAvailable(Translator::tr("Posting forms"));
}
} // namespace truss
