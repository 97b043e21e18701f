// SPDX-License-Identifier: MIT
// libkel: Application services
#include <kel/stdouterr.h>

#include <kel/platform.h>
#include <kel/problem.h>

namespace
{
void closeAndDelete(std::ifstream& stream, const Kel::File& file) noexcept
{
    try
    {
        if (file.empty())
            return;
        stream.close();
        Platform::getSingleton()->deleteFile(file, true);
    }
    catch (...)
    {
        // A temporary file that stays behind must not hide the failure that may be on its way up.
    }
}
} // namespace

StdOutErr::StdOutErr(const Ztring& outFile, const Ztring& errFile)
    : m_outFile(outFile),
      m_errFile(errFile),
      m_out(outFile.toUtf8())
{
}

StdOutErr::~StdOutErr()
{
    closeAndDelete(m_out, m_outFile);
    closeAndDelete(m_err, m_errFile);
}

bool StdOutErr::getMore(std::string& line)
{
    line.clear();
    if (std::getline(m_out, line))
        return true;
    if (m_out.bad())
        m_outFile.throwReadingCorrupt();
    checkError();
    return false;
}

void StdOutErr::checkError()
{
    m_err.open(m_errFile.getPath().toUtf8());
    std::string text;
    for (std::string line; std::getline(m_err, line);)
        text.append(line).append("\n");
    if (m_err.bad())
        m_errFile.throwReadingCorrupt();
    if (!text.empty())
        Problem::throwProblem(Ztring(text));
}
