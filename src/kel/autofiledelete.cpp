// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/autofiledelete.h>

#include <kel/platform.h>

AutoFileDelete::AutoFileDelete(const Kel::File& file) : m_file(file) {}

AutoFileDelete::~AutoFileDelete()
{
    if (m_file.empty())
        return;
    try
    {
        Platform::getSingleton()->deleteFile(m_file, true);
    }
    catch (...)
    {
        // The deletion was asked for quietly.
    }
}

Kel::File AutoFileDelete::release()
{
    Kel::File released(m_file);
    m_file.clear();
    return released;
}
