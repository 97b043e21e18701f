// SPDX-License-Identifier: MIT
// truss: exchange
#include "truss/exchange/outputfile.h"

#include <kel/platform.h>

namespace truss
{
namespace
{
Kel::File openTemporary(const Kel::File& temporary, std::ofstream& out)
{
    temporary.open(out);
    return temporary;
}
} // namespace

OutputFile::OutputFile(const Kel::File& target)
    : m_target(target),
      m_temporary(Ztring(target.getPath()).append(".tmp")),
      m_guard(openTemporary(m_temporary, m_out))
{
}

void OutputFile::close()
{
    m_out.close(); // flushes; a disk that is full shows here
    if (!m_out)
        m_target.throwWritingCorrupt();
    Platform::getSingleton()->moveFile(m_temporary, m_target, false);
    m_guard.release();
}
} // namespace truss
