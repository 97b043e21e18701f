// SPDX-License-Identifier: MIT
// libkel: Object model
#pragma once

#include <kel/bulletin.h>
#include <kel/bulletinmap.h>
#include <kel/kelapi.h>

#include <cstddef>
#include <memory>
#include <string>
#include <utility>

/// Holds bulletins, one per key, and tells its observers when they are added or removed. Boards are the model of a
/// document, the registry of services (DynamicFactory) and the state kept along a stream.
///
///     BulletinBoard model;
///     model.add(new Bulletin("Load"));                        // the board owns it, observers hear added()
///     Bulletin* load = model.getPtr("Load");                  // null when absent
///     for (const auto& [number, bulletin] : model)            // in the order in which the keys were first made
///         bulletin->notifyChanged();
///     AutoDelete mine(model.removeByKey("Load"));             // observers hear removed(), the caller owns it
///
/// The board destroys what it holds when it dies (deleteAll). Its observers are told after the change is done and may
/// change the board, or destroy it: no operation touches the board after they were told, but for addOrReplace and
/// replace, which go on with it after `removed` and `deleted`, incrementUse and decrementUse, which go on with a
/// counter that they have added, and deleteAll. Nor may they destroy an object that an operation returns (adopt,
/// getOrCreate, removeByKey). What an observer throws passes through, and the board stays as it is at that moment.
class KEL_API BulletinBoard : public Bulletin
{
public:
    using value_type = BulletinMap::value_type;
    using const_iterator = BulletinMap::const_iterator;
    using iterator = const_iterator;

    BulletinBoard();
    explicit BulletinBoard(const BulletinKey& key);
    /// Has the same key and clones of all bulletins that can be cloned, each added with add(). Others are skipped.
    BulletinBoard(const BulletinBoard& other);
    BulletinBoard& operator=(const BulletinBoard&) = delete;
    /// Destroys all bulletins as the board's own deleteAll does. A bulletin whose observers throw is deleted all the
    /// same and the exception dropped.
    ~BulletinBoard() override;

    /// A board that is in use gives up one use and may be deleted when that was the last: a shared board is destroyed
    /// once by each of its users.
    bool canDelete() override;

    /// Adds a bulletin under its own key and takes ownership of it. Observers hear `added`.
    ///
    /// A taken key fails with the assertion "!hasKey(key)"; the board is unchanged and the caller keeps the object.
    /// When memory runs out, the board is unchanged, too, and destroys the object (not forced). If an observer throws,
    /// the object is on the board. The pointer must not be null; this is not checked, here and below.
    virtual void add(Bulletin* obj);
    /// Takes the bulletin under obj's key off the board; the caller owns it. Observers hear `removed`. An absent key
    /// fails with the assertion "hasKey(key)".
    virtual void remove(Bulletin& obj);
    /// As replace(), or as add() when the key is free.
    virtual void addOrReplace(Bulletin* obj);
    /// Removes the bulletin that has obj's key, destroys it (not forced: it may refuse and is off the board all the
    /// same) and adds obj. That the key is on the board is not checked.
    ///
    /// Replacing a bulletin by itself fails with the assertion "oldObj != *obj" after it was removed. When anything
    /// fails, the caller keeps obj unless it is on the board, and another one that was removed is destroyed; with
    /// std::bad_alloc obj is destroyed as well, unless it was to replace itself. When an observer destroys the board,
    /// obj is destroyed, too.
    virtual void replace(Bulletin* obj);
    /// Destroys every bulletin in key order, not forced, and ends with clear(). Each bulletin's own observers hear
    /// `deleted`, the board's hear nothing. A bulletin that refuses lives on but is off the board.
    ///
    /// An entry is on the board while its observers are told and off it right after its deletion. They may add and
    /// remove entries, and destroy the one they hear of or the board, which ends the walk. It goes on with the entry
    /// that came next, or the first behind that, and ends where there was none: what is added before that is dropped
    /// alive. If one throws, its bulletin (unless it is dead) and those not yet reached stay.
    virtual void deleteAll();
    /// Drops every entry; deletes nothing and tells nobody.
    virtual void clear();
    /// As add(), under any key; but the caller keeps the object whenever it does not get onto the board, so that a
    /// removal can be undone as often as it takes.
    virtual void addIgnoreKey(Bulletin& obj, const BulletinKey& key);
    /// Takes the bulletin under the key off the board without telling anybody; the caller owns it. An absent key fails
    /// with the assertion "hasKey(key)".
    virtual Bulletin* removeIgnoreKey(const BulletinKey& key);

    /// As add(), under another key than the bulletin's own.
    void add(const BulletinKey& key, Bulletin* obj);
    /// As add(), of a new bulletin, which is deleted if it does not get onto the board.
    template <class T>
    T& adopt(std::unique_ptr<T> obj);
    /// As remove() of the bulletin under the key. That the key is on the board is not checked. What goes is the entry
    /// under the bulletin's own key: one that was added under another is taken off with removeIgnoreKey.
    Bulletin* removeByKey(const BulletinKey& key);

    bool hasKey(const BulletinKey& key) const;
    /// The bulletin under the key, or null. The board goes on owning it. A key made here from a name registers that
    /// name for good.
    Bulletin* getPtr(const BulletinKey& key) const;
    /// The bulletin under the first of several names that is on the board, or null. Names are separated by "|"; every
    /// name tried becomes known to NamedKeys.
    Bulletin* getPtrByName(const std::string& names) const;
    /// The bulletin under T::getStaticKey() if it is a T, otherwise null.
    template <class T>
    T* getPtr() const;
    /// The same, but adds a new T when there is none. An entry of another type under the key fails with the assertion
    /// "!hasKey(key)".
    template <class T>
    T& getOrCreate();

    std::size_t size() const { return m_bulletins.size(); }
    bool empty() const { return m_bulletins.empty(); }
    /// The entries in increasing key number. The board may be changed during a walk, which goes on with the entry that
    /// has the next number by then.
    const_iterator begin() const { return m_bulletins.begin(); }
    const_iterator end() const { return m_bulletins.end(); }

    /// Counts the uses of this board in a Use bulletin that it keeps among its own entries.
    /// @return whether this is the first use.
    bool incrementUse();
    /// @return whether this was the last use. Giving up a use that nobody has is not checked: the count wraps.
    bool decrementUse();
    bool isInUse() const;

private:
    static void destroyUnlessLent(Bulletin& obj) noexcept;
    void adoptBulletin(std::unique_ptr<Bulletin> obj);
    void replaceEntry(Bulletin* obj);
    /// Calls `destroyEntry` on the bulletins in key order and drops those that died.
    /// @return whether the board is still there: an observer may have destroyed it, which ends the walk.
    bool destroyEach(void (*destroyEntry)(Bulletin& obj));

    BulletinMap m_bulletins;
};

template <class T>
T* BulletinBoard::getPtr() const
{
    return dynamic_cast<T*>(getPtr(T::getStaticKey()));
}

template <class T>
T& BulletinBoard::getOrCreate()
{
    if (T* const found = getPtr<T>())
        return *found;
    return adopt(std::make_unique<T>());
}

template <class T>
T& BulletinBoard::adopt(std::unique_ptr<T> obj)
{
    T& added = *obj;
    adoptBulletin(std::move(obj));
    return added;
}
