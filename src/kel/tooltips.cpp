// SPDX-License-Identifier: MIT
// libkel: Object model
#include <kel/tooltips.h>

#include <kel/bulletinkey.h>

ToolTips& ToolTips::getSingleton()
{
    static ToolTips singleton;
    return singleton;
}

void ToolTips::add(const BulletinKey& key, const Ztring& text)
{
    m_texts.try_emplace(key.getNumber(), text);
}

const Ztring& ToolTips::get(const BulletinKey& key) const
{
    const auto found = m_texts.find(key.getNumber());
    return found == m_texts.end() ? Ztring::emptyZtring : found->second;
}
