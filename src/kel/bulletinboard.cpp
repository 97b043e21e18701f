// SPDX-License-Identifier: MIT
// libkel: Object model
#include <kel/bulletinboard.h>

#include <kel/addednotifier.h>
#include <kel/removednotifier.h>
#include <kel/stringtokenizer.h>
#include <kel/use.h>
#include <kel/zassert.h>

#include "lending_p.h"
#include "lifewatch_p.h"

#include <new>

namespace
{
/// Takes the entry of a bulletin that dies in this scope off a board, should the board outlive the scope.
class DeadEntryGuard
{
public:
    DeadEntryGuard(const LifeWatch& board, BulletinMap& entries, const BulletinMap::Entry& entry)
        : m_board(board),
          m_entries(entries),
          m_entry(entry),
          m_bulletin(*entry.second)
    {
    }
    DeadEntryGuard(const DeadEntryGuard&) = delete;
    DeadEntryGuard& operator=(const DeadEntryGuard&) = delete;
    ~DeadEntryGuard()
    {
        // The entry may be gone already, or be another's: observers change boards.
        if (m_board.isAlive() && !m_bulletin.isAlive() && m_entries.find(m_entry.first) == m_entry.second)
            m_entries.erase(m_entry.first);
    }

private:
    const LifeWatch& m_board;
    BulletinMap& m_entries;
    const BulletinMap::Entry m_entry;
    const LifeWatch m_bulletin;
};
} // namespace

BulletinBoard::BulletinBoard() = default;

BulletinBoard::BulletinBoard(const BulletinKey& key) : Bulletin(key) {}

// Delegates, so that the clones made so far are destroyed when a later one fails.
BulletinBoard::BulletinBoard(const BulletinBoard& other) : BulletinBoard(other.getKey())
{
    for (const auto& [number, obj] : other)
    {
        if (obj->canClone())
            adoptBulletin(std::unique_ptr<Bulletin>(obj->clone()));
    }
}

BulletinBoard::~BulletinBoard()
{
    destroyEach(&Bulletin::destroyQuietly);
}

bool BulletinBoard::canDelete()
{
    return !isInUse() || decrementUse();
}

void BulletinBoard::add(Bulletin* obj)
{
    add(obj->getKey(), obj);
}

void BulletinBoard::remove(Bulletin& obj)
{
    const bool wasHeld = m_bulletins.erase(obj.getKey().getNumber()) != nullptr;
    KEL_ASSERT(wasHeld, "hasKey(key)");
    RemovedNotifier notifier(*this, obj);
    notifyObservers(notifier);
}

void BulletinBoard::addOrReplace(Bulletin* obj)
{
    if (hasKey(obj->getKey()))
        replaceEntry(obj);
    else
        add(obj);
}

void BulletinBoard::replace(Bulletin* obj)
{
    replaceEntry(obj);
}

void BulletinBoard::deleteAll()
{
    if (destroyEach([](Bulletin& obj) { tryDestroy(obj, false); }))
        clear();
}

void BulletinBoard::clear()
{
    m_bulletins.clear();
}

void BulletinBoard::addIgnoreKey(Bulletin& obj, const BulletinKey& key)
{
    const Lending lending(obj);
    add(key, &obj);
}

Bulletin* BulletinBoard::removeIgnoreKey(const BulletinKey& key)
{
    Bulletin* const obj = m_bulletins.erase(key.getNumber());
    KEL_ASSERT(obj != nullptr, "hasKey(key)");
    return obj;
}

void BulletinBoard::add(const BulletinKey& key, Bulletin* obj)
{
    bool isNew = false;
    try
    {
        isNew = m_bulletins.insert(key.getNumber(), obj);
    }
    catch (...)
    {
        destroyUnlessLent(*obj);
        throw;
    }
    KEL_ASSERT(isNew, "!hasKey(key)");
    Lending::end(*obj);
    AddedNotifier notifier(*this, *obj);
    notifyObservers(notifier);
}

Bulletin* BulletinBoard::removeByKey(const BulletinKey& key)
{
    Bulletin* const obj = getPtr(key);
    remove(*obj);
    return obj;
}

bool BulletinBoard::hasKey(const BulletinKey& key) const
{
    return getPtr(key) != nullptr;
}

Bulletin* BulletinBoard::getPtr(const BulletinKey& key) const
{
    return m_bulletins.find(key.getNumber());
}

Bulletin* BulletinBoard::getPtrByName(const std::string& names) const
{
    StringTokenizer alternatives(names, '|');
    while (alternatives.hasNext())
    {
        if (Bulletin* const found = getPtr(BulletinKey(alternatives.m_token)))
            return found;
    }
    return nullptr;
}

bool BulletinBoard::incrementUse()
{
    return Use::incrementFor(*this, Use::getStaticKey());
}

bool BulletinBoard::decrementUse()
{
    return Use::decrementFor(*this, Use::getStaticKey());
}

bool BulletinBoard::isInUse() const
{
    return Use::inUseFor(*this, Use::getStaticKey());
}

void BulletinBoard::destroyUnlessLent(Bulletin& obj) noexcept
{
    if (!Lending::isLent(obj))
        destroyQuietly(obj);
}

void BulletinBoard::adoptBulletin(std::unique_ptr<Bulletin> obj)
{
    const Lending lending(*obj);
    try
    {
        add(obj.get());
    }
    catch (...)
    {
        // What observers do to the bulletin or to the board, throwing included, is no business of this call.
        if (lending.isOver())
            static_cast<void>(obj.release());
        throw;
    }
    // An override of add() may have kept it without passing it on to this class.
    static_cast<void>(obj.release());
}

void BulletinBoard::replaceEntry(Bulletin* obj)
{
    const BulletinKey key = obj->getKey();
    Bulletin* const oldObj = getPtr(key);
    const LifeWatch board(*this);
    const LifeWatch old(*oldObj);
    const LifeWatch taken(*obj);
    // What is off the board although an observer has thrown is destroyed: nobody else would.
    const auto destroyUnlessHeld = [&](const LifeWatch& watch, Bulletin& bulletin)
    {
        if (watch.isAlive() && !(board.isAlive() && getPtr(key) == &bulletin))
            destroyUnlessLent(bulletin);
    };
    try
    {
        remove(*oldObj);
        // Only now, deliberately: an object that is replaced by itself ends up off the board.
        KEL_ASSERT(oldObj != obj, "oldObj != *obj");
        if (old.isAlive())
            destroy(oldObj, false);
    }
    catch (const std::bad_alloc&)
    {
        if (oldObj != obj)
        {
            destroyUnlessHeld(old, *oldObj);
            destroyUnlessHeld(taken, *obj);
        }
        throw;
    }
    catch (...)
    {
        if (oldObj != obj)
            destroyUnlessHeld(old, *oldObj);
        throw;
    }
    if (board.isAlive())
    {
        add(obj);
        return;
    }
    // As if it had still been added: it goes with the board.
    Lending::end(*obj);
    destroyQuietly(*obj);
}

bool BulletinBoard::destroyEach(void (*destroyEntry)(Bulletin& obj))
{
    const LifeWatch board(*this);
    for (const_iterator next = begin(); next != end();)
    {
        const BulletinMap::Entry entry = *next;
        const bool isLast = ++next == end();
        const unsigned nextNumber = next->first;
        {
            const DeadEntryGuard guard(board, m_bulletins, entry);
            destroyEntry(*entry.second);
        }
        if (!board.isAlive())
            return false;
        next = isLast ? end() : m_bulletins.after(nextNumber - 1);
    }
    return true;
}
