// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

/// Numbers keys in the order in which they are first met. Keys are pointers or key numbers, but never 0.
///
/// Every reference that is written looks an object up here, therefore the entries stand in one open-addressed block
/// and not in the nodes of a standard map.
class NumberTable
{
public:
    struct Entry
    {
        std::uint64_t key = 0; // 0: free
        std::uint32_t number = 0;
        bool isQueued = false; // for the table's user
    };

    /// The first key met gets the number `first`.
    explicit NumberTable(std::uint32_t first) : m_next(first) {}

    /// The entry of a key, made with the next number if there is none. Valid until the next call.
    Entry& get(std::uint64_t key)
    {
        if (m_used * 2 >= m_entries.size())
            grow();
        Entry& entry = find(key);
        if (entry.key == 0)
        {
            entry = {key, m_next++};
            ++m_used;
        }
        return entry;
    }

    /// The number that the next key met will get.
    std::uint32_t getNext() const { return m_next; }

private:
    Entry& find(std::uint64_t key)
    {
        std::size_t slot = getHome(key);
        while (m_entries[slot].key != key && m_entries[slot].key != 0)
            slot = (slot + 1) & (m_entries.size() - 1);
        return m_entries[slot];
    }

    // The high bits of a multiplication by the golden ratio spread keys of any stride evenly.
    std::size_t getHome(std::uint64_t key) const
    {
        return static_cast<std::size_t>((key * 0x9E3779B97F4A7C15u) >> m_shift);
    }

    void grow()
    {
        std::vector<Entry> old(m_entries.empty() ? 16 : 2 * m_entries.size());
        old.swap(m_entries);
        m_shift = old.empty() ? 60 : m_shift - 1;
        for (const Entry& entry : old)
        {
            if (entry.key != 0)
                find(entry.key) = entry;
        }
    }

    std::vector<Entry> m_entries; // a power of two, at most half of them used
    std::size_t m_used = 0;
    unsigned m_shift = 64;
    std::uint32_t m_next;
};
