// SPDX-License-Identifier: MIT
// truss: platform
#include "truss/platform/temporaryfile.h"

#include "truss/platform/filedescriptor.h"
#include "truss/platform/systemproblem.h"
#include "truss/text/text.h"

#include <kel/translator.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>

namespace truss
{
namespace
{
Kel::File create()
{
    std::string path = (std::filesystem::temp_directory_path() / "truss-XXXXXX").string();
    const FileDescriptor file(mkstemp(path.data()));
    if (file.get() < 0)
        SystemProblem::throwProblem(errno, Translator::tr("Failed to make a temporary file"));
    return Kel::File(fromUtf8(path));
}
} // namespace

TemporaryFile::TemporaryFile() : m_file(create()), m_guard(m_file) {}
} // namespace truss
