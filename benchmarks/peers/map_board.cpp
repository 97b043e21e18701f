// SPDX-License-Identifier: MIT
// libkel: benchmarks
// A std::map from key numbers to bulletins, which tells nobody and tests nothing.
#include "support/boardrows.h"

#include <map>

namespace
{
class Board
{
public:
    void add(Bulletin& bulletin) { m_map.emplace(bulletin.getKey().getNumber(), &bulletin); }
    Bulletin* find(const BulletinKey& key) const
    {
        const auto found = m_map.find(key.getNumber());
        return found == m_map.end() ? nullptr : found->second;
    }
    void remove(Bulletin& bulletin) { m_map.erase(bulletin.getKey().getNumber()); }
    template <class F>
    void forEach(const F& f) const
    {
        for (const auto& [number, bulletin] : m_map)
            f(number, bulletin);
    }
    void clear() { m_map.clear(); }

private:
    std::map<unsigned, Bulletin*> m_map;
};

const bool registered = bench::BoardRows<Board>::add("std_map");
} // namespace
