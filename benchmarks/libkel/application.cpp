// SPDX-License-Identifier: MIT
// libkel: benchmarks
#include "application.h"

#include <kel/dynamicfactory.h>
#include <kel/file_kel.h>
#include <kel/platform.h>

#include <filesystem>

namespace
{
/// Moves and deletes files; the rest is not needed here.
class FilePlatform : public Platform
{
public:
    void execute(const Ztring&, bool, bool) override {}
    void deleteFile(const Kel::File& file, bool) override { std::filesystem::remove(file.getPath().toUtf8()); }
    void moveFile(const Kel::File& from, const Kel::File& to, bool) override
    {
        std::filesystem::rename(from.getPath().toUtf8(), to.getPath().toUtf8());
    }
    void startTimer(Task*, unsigned) override {}
    std::string getOsName() override { return "linux"; }
    std::string getReleaseName() override { return "1"; }
    void postForm(const Ztring&, const Ztring&, const Ztring&, const Ztring&, FormDataPoster&, Ztring&) override {}
};
} // namespace

BenchmarkStatus::BenchmarkStatus()
{
    DynamicFactory::getSingleton().add(new FilePlatform);
}

void BenchmarkStatus::updateEvents(int percent)
{
    m_percent = percent;
}
