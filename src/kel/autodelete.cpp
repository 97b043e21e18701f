// SPDX-License-Identifier: MIT
// libkel: Object model
#include <kel/autodelete.h>

#include <kel/bulletin.h>

AutoDelete::AutoDelete(Bulletin& bulletin) : AutoDelete(&bulletin) {}

AutoDelete::AutoDelete(Bulletin* bulletin) : m_bulletin(bulletin) {}

AutoDelete::~AutoDelete()
{
    if (m_bulletin != nullptr)
        Bulletin::destroyQuietly(*m_bulletin);
}

void AutoDelete::release()
{
    m_bulletin = nullptr;
}
