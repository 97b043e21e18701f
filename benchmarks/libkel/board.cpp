// SPDX-License-Identifier: MIT
// libkel: benchmarks
// Adding, finding, removing and walking the bulletins of a board.
#include "support/boardrows.h"

#include <kel/bulletinboard.h>

namespace
{
class Board
{
public:
    void add(Bulletin& bulletin) { m_board.add(&bulletin); }
    Bulletin* find(const BulletinKey& key) const { return m_board.getPtr(key); }
    void remove(Bulletin& bulletin) { m_board.remove(bulletin); }
    template <class F>
    void forEach(const F& f) const
    {
        for (const auto& [number, bulletin] : m_board)
            f(number, bulletin);
    }
    void clear() { m_board.clear(); }

private:
    BulletinBoard m_board;
};

const bool registered = bench::BoardRows<Board>::add("libkel");
} // namespace
