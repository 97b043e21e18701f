// SPDX-License-Identifier: MIT
// libkel: Object model
#include <kel/use.h>

#include <kel/bulletinboard.h>

namespace
{
Use* findUse(const BulletinBoard& board, const BulletinKey& key)
{
    return dynamic_cast<Use*>(board.getPtr(key));
}
} // namespace

Use::Use(const BulletinKey& key) : Bulletin(key) {}

const BulletinKey& Use::getStaticKey()
{
    static const BulletinKey key("Use");
    return key;
}

bool Use::inUseFor(const BulletinBoard& board, const BulletinKey& key)
{
    const Use* const use = findUse(board, key);
    return use != nullptr && use->m_counter.getCount() != 0;
}

Use& Use::getFor(BulletinBoard& board, const BulletinKey& key)
{
    if (Use* const found = findUse(board, key))
        return *found;
    return board.adopt(std::make_unique<Use>(key));
}

bool Use::incrementFor(BulletinBoard& board, const BulletinKey& key)
{
    return getFor(board, key).m_counter.incrementUse();
}

bool Use::decrementFor(BulletinBoard& board, const BulletinKey& key)
{
    return getFor(board, key).m_counter.decrementUse();
}

bool Use::canClone() const
{
    return false;
}
