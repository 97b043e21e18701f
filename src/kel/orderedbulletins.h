// SPDX-License-Identifier: MIT
// libkel: Object model
#pragma once

#include <kel/bulletin.h>
#include <kel/bulletinvector.h>
#include <kel/kelapi.h>

/// A list of bulletins in the order of insertion, where the order of keys on a board does not serve. Owns none of them;
/// duplicates are allowed.
class KEL_API OrderedBulletins : public Bulletin
{
public:
    using value_type = Bulletin*;
    using const_iterator = Bulletin* const*;
    using iterator = const_iterator;

    /// Empty, with room for 5.
    explicit OrderedBulletins(const BulletinKey& key);
    /// Has the same key and the same list, with room for no more.
    OrderedBulletins(const OrderedBulletins& other);
    /// Takes over the list; the key stays.
    OrderedBulletins& operator=(const OrderedBulletins& other);
    ~OrderedBulletins() override;

    /// The key "OrderedBulletins".
    static const BulletinKey& getStaticKey();

    /// Appends one bulletin, or null. A full list doubles its room.
    void append(Bulletin* bulletin);
    /// Appends another list. Too little room becomes exactly enough.
    void add(const OrderedBulletins& other);

    /// The first bulletin that has the key, or null. Takes time in proportion to the length of the list.
    Bulletin* getBulletin(const BulletinKey& key) const;
    unsigned size() const { return m_list.size(); }
    unsigned capacity() const { return m_list.capacity(); }
    bool empty() const { return m_list.empty(); }
    /// The index is not checked.
    Bulletin* operator[](unsigned index) const { return m_list[index]; }
    const_iterator begin() const { return m_list.begin(); }
    const_iterator end() const { return m_list.end(); }

    /// Drops all bulletins and destroys none.
    void clear();
    /// Destroys all bulletins from the front, not forced, and drops them, also those that refuse. If an observer
    /// throws, its bulletin and those behind it stay in the list. An observer that destroys the list ends this. That no
    /// bulletin is listed twice is not checked.
    void cleanOut();

private:
    void dropFront(unsigned count);

    BulletinVector m_list;
};
