// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

/// Numbers keys in the order in which they are first met. Keys are addresses or key numbers, but never 0.
///
/// Every reference that is written looks an object up here, therefore the entries stand in one open-addressed block and
/// not in the nodes of a standard map. Keys that are close to each other, as those of objects made one after the other,
/// have their entries close to each other: a walk through the objects is a walk through the block. Keys for which
/// that makes the entries crowd somewhere are noticed, and all are then scattered.
template <class Key>
class NumberTable
{
public:
    struct Result
    {
        std::uint32_t number;
        bool isNew;
    };

    /// The first key met gets the number `first`. Keys are mostly 2 to the `spacing` or more apart.
    NumberTable(std::uint32_t first, unsigned spacing) : m_spacing(spacing), m_first(first) {}

    /// The number of a key, which is the next one if the key is met for the first time.
    Result get(Key key)
    {
        if (m_entries.empty())
            rebuild(s_smallest);
        std::size_t slot = find(key);
        if (!m_entries[slot].isFree())
            return {m_entries[slot].number, false};
        slot = makeRoom(key, slot);
        m_entries[slot] = Entry(key, getNext());
        ++m_count;
        return {m_entries[slot].number, true};
    }

    /// The number that the next key met will get.
    std::uint32_t getNext() const { return m_first + m_count; }

    /// Makes room for so many keys more.
    void reserve(std::size_t count)
    {
        std::size_t size = s_smallest;
        while (!hasRoom(m_count + count, size))
            size *= 2;
        if (size > m_entries.size())
            rebuild(size);
    }

private:
    /// A key and its number without a gap between two entries.
    class Entry
    {
    public:
        Entry() = default;
        Entry(Key key, std::uint32_t itsNumber) : number(itsNumber) { std::memcpy(m_key.data(), &key, sizeof(key)); }

        Key getKey() const
        {
            Key key;
            std::memcpy(&key, m_key.data(), sizeof(key));
            return key;
        }
        bool isFree() const { return getKey() == 0; }

    private:
        std::array<std::uint32_t, sizeof(Key) / 4> m_key{};

    public:
        std::uint32_t number = 0;
    };

    static constexpr std::size_t s_smallest = 16;

    /// Entries looked at for one key before the keys are scattered.
    static constexpr std::size_t s_crowd = 64;

    static bool hasRoom(std::size_t count, std::size_t size) { return count <= size / 4 * 3; }

    std::size_t getHome(Key key) const
    {
        // The high bits of a multiplication by the golden ratio scatter keys of any kind.
        return m_isScattered ? static_cast<std::size_t>((key * std::uint64_t(0x9E3779B97F4A7C15)) >> m_shift)
                             : static_cast<std::size_t>(key >> m_spacing) & (m_entries.size() - 1);
    }

    /// Where the key is, or the free slot where it belongs.
    std::size_t find(Key key) const
    {
        std::size_t slot = getHome(key);
        while (m_entries[slot].getKey() != key && !m_entries[slot].isFree())
            slot = (slot + 1) & (m_entries.size() - 1);
        return slot;
    }

    /// Where a new key belongs, for which this slot was found.
    std::size_t makeRoom(Key key, std::size_t slot)
    {
        if (!hasRoom(m_count + 1, m_entries.size()))
        {
            rebuild(2 * m_entries.size());
            slot = find(key);
        }
        if (m_isScattered || ((slot - getHome(key)) & (m_entries.size() - 1)) <= s_crowd)
            return slot;
        m_isScattered = true;
        rebuild(m_entries.size());
        return find(key);
    }

    void rebuild(std::size_t size)
    {
        std::vector<Entry> old(size);
        old.swap(m_entries);
        m_shift = 64;
        for (std::size_t rest = size; rest > 1; rest /= 2)
            --m_shift;
        for (const Entry& entry : old)
        {
            if (!entry.isFree())
                m_entries[find(entry.getKey())] = entry;
        }
    }

    std::vector<Entry> m_entries; // a power of two, at most three quarters of them used
    std::uint32_t m_count = 0;
    unsigned m_spacing;
    unsigned m_shift = 64;
    bool m_isScattered = false;
    std::uint32_t m_first;
};
