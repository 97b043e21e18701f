// SPDX-License-Identifier: MIT
// truss: shell
#pragma once

#include <kel/platform.h>

namespace truss
{
/// The operating system's services as the library asks for them.
class LinuxPlatform : public Platform
{
public:
    void execute(const Ztring& commandLine, bool flag1, bool flag2) override;
    /// The flag means quiet: a file that cannot be deleted is no Problem then.
    void deleteFile(const Kel::File& file, bool quiet) override;
    /// Replaces `to` if it exists. The flag means quiet.
    void moveFile(const Kel::File& from, const Kel::File& to, bool quiet) override;
    void startTimer(Task* task, unsigned int intervalMs) override;
    using Platform::startTimer;
    /// "linux".
    std::string getOsName() override;
    /// The release of this program.
    std::string getReleaseName() override;
    void postForm(const Ztring& where, const Ztring& path, const Ztring& headerName, const Ztring& headerValue,
                  FormDataPoster& form, Ztring& response) override;
};
} // namespace truss
