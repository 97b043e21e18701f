// SPDX-License-Identifier: MIT
// truss: platform
#include "truss/platform/capturedprogram.h"

#include "truss/platform/linuxplatform.h"
#include "truss/platform/temporaryfile.h"

#include <kel/file_kel.h>
#include <kel/interrupted.h>

namespace truss
{
void CapturedProgram::setInput(const Kel::File& file)
{
    m_input = file.getPath().toUtf8();
}

void CapturedProgram::run(const Ztring& commandLine, const Kel::File& file)
{
    Redirection redirection;
    if (!m_input.empty())
        redirection.in = m_input;
    TemporaryFile out;
    TemporaryFile err;
    redirection.out = out.getFile().getPath().toUtf8();
    redirection.err = err.getFile().getPath().toUtf8();
    m_output = std::make_unique<StdOutErr>(out.release(), err.release()); // deletes both from now on

    try
    {
        LinuxPlatform::getSingleton()->runRedirected(commandLine, file, redirection);
    }
    catch (const Interrupted&)
    {
        throw;
    }
    catch (const Problem&)
    {
        m_output->checkError(); // its own words say more than its exit status
        throw;
    }
}
} // namespace truss
