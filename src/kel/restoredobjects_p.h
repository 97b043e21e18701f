// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <kel/bulletin.h>
#include <kel/serializable.h>

#include "crosscast_p.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

/// The objects that a reader has made, by id, and which of them are fixed.
///
/// Ids are counted up from 1, and a million of them are no rarity: each takes one word. It is the address of the
/// Bulletin, which is what references are fixed to, without a look at the object; or of an object that is none. The low
/// bits of an address, which are free since objects with virtual operations are aligned, say the rest.
class RestoredObjects
{
public:
    /// Enters an object under the next id; null for one that was skipped.
    void add(Serializable* object)
    {
        m_entries.push_back(object ? toEntry(*object) : s_skipped);
        m_objectCount += static_cast<std::size_t>(object != nullptr);
    }

    void clear()
    {
        m_entries.clear();
        m_objectCount = 0;
    }

    /// The largest id.
    std::size_t size() const { return m_entries.size(); }
    /// Ids that do not stand for skipped objects.
    std::size_t getObjectCount() const { return m_objectCount; }

    /// The id 0, which is null, becomes the largest number.
    bool has(std::uint64_t id) const { return id - 1 < m_entries.size(); }

    /// Of an id that has an entry, here and below.
    bool isSkipped(std::uint64_t id) const { return get(id) == s_skipped; }
    bool isFixed(std::uint64_t id) const { return (get(id) & s_fixed) != 0; }
    void setFixed(std::uint64_t id) { m_entries[static_cast<std::size_t>(id - 1)] |= s_fixed; }

    /// The object as a Bulletin; null when it is none.
    Bulletin* getBulletin(std::uint64_t id) const
    {
        const std::uintptr_t entry = get(id);
        return (entry & s_noBulletin) != 0 ? nullptr : std::bit_cast<Bulletin*>(entry & s_address);
    }

    /// The object, which must not have been skipped.
    Serializable* getObject(std::uint64_t id)
    {
        if (Bulletin* const bulletin = getBulletin(id))
            return m_toSerializable(*bulletin);
        return std::bit_cast<Serializable*>(get(id) & s_address);
    }

private:
    static constexpr std::uintptr_t s_skipped = 0;
    static constexpr std::uintptr_t s_noBulletin = 1;
    static constexpr std::uintptr_t s_fixed = 2;
    static constexpr std::uintptr_t s_address = ~(s_noBulletin | s_fixed);
    static_assert(alignof(Bulletin) > 2 && alignof(Serializable) > 2);

    std::uintptr_t get(std::uint64_t id) const { return m_entries[static_cast<std::size_t>(id - 1)]; }

    std::uintptr_t toEntry(Serializable& object)
    {
        if (const Bulletin* const bulletin = m_toBulletin(object))
            return reinterpret_cast<std::uintptr_t>(bulletin);
        return reinterpret_cast<std::uintptr_t>(&object) | s_noBulletin;
    }

    std::vector<std::uintptr_t> m_entries;
    std::size_t m_objectCount = 0;
    CrossCast<Bulletin, Serializable> m_toBulletin;
    CrossCast<Serializable, Bulletin> m_toSerializable;
};
