// SPDX-License-Identifier: MIT
// libkel: Object model
#pragma once

#include <kel/kelapi.h>
#include <kel/ztring.h>

#include <map>

class BulletinKey;

/// The tool tips of the process, one text per key, shared by all bulletins of that key.
class KEL_API ToolTips
{
public:
    ToolTips() = default;
    ToolTips(const ToolTips&) = delete;
    ToolTips& operator=(const ToolTips&) = delete;
    ~ToolTips() = default;

    /// Made on first use and destroyed at exit.
    static ToolTips& getSingleton();

    /// Registers the text of a key. The first text wins; later ones are ignored.
    void add(const BulletinKey& key, const Ztring& text);
    /// The text of a key, or the empty text. Lives as long as the registry.
    const Ztring& get(const BulletinKey& key) const;

private:
    std::map<unsigned, Ztring> m_texts;
};
